#include "demo/core/Options.h"

#include <ZuviSDK/Foundation/URL.h>
#include "platform/Foundation/Decimal.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"

#include <algorithm>
#include <cstdio>
#include <functional>

namespace zuvi::demo {

namespace {

constexpr std::size_t largestInput = 1 << 20; // bytes

/// Each reader stores the value and gives an empty text, or says what is wrong with it.
using Reader = std::function<std::string(Options&, const std::string&)>;

std::string isAddress(const std::string& text) {
  const auto url = URL::fromString(text);
  if (!url || (url->scheme() != "http" && url->scheme() != "https") || url->host().empty())
    return "is no http or https address";
  return {};
}

Reader address(std::optional<std::string> Options::*field) {
  return [field](Options& options, const std::string& text) {
    options.*field = text;
    return isAddress(text);
  };
}

Reader text(std::optional<std::string> Options::*field) {
  return [field](Options& options, const std::string& value) -> std::string {
    options.*field = value;
    return value.empty() ? "is empty" : "";
  };
}

Reader readableFile(std::optional<std::string> Options::*field) {
  return [field](Options& options, const std::string& value) -> std::string {
    options.*field = value;
    return FileManager::contents(value) ? "" : "can't be read";
  };
}

Reader camera(std::optional<CameraSourceDescription> Options::*field) {
  return [field](Options& options, const std::string& value) -> std::string {
    std::string problem;
    options.*field = parseCameraSource(value, problem);
    return problem;
  };
}

std::string readServer(Options& options, const std::string& value) {
  options.server = value;
  if (!value.ends_with('/')) return "does not end in /";
  return isAddress(value);
}

std::string readMetadata(Options& options, const std::string& value) {
  const auto equals = value.find('=');
  if (equals == std::string::npos || equals == 0) return "is not KEY=VALUE";
  options.metadata[value.substr(0, equals)] = value.substr(equals + 1);
  return {};
}

std::string readCameras(Options& options, const std::string& value) {
  options.cameras = value == "drawn" ? Cameras::Drawn : Cameras::Real;
  return value == "drawn" || value == "real" ? "" : "is neither real nor drawn";
}

std::string readStyle(Options& options, const std::string& value) {
  options.style = value == "dark" ? UIUserInterfaceStyle::Dark : UIUserInterfaceStyle::Light;
  return value == "dark" || value == "light" ? "" : "is neither light nor dark";
}

std::string readPermission(Options& options, const std::string& value) {
  constexpr std::pair<const char*, CameraPermission> names[] = {
      {"authorized", CameraPermission::Authorized}, {"denied", CameraPermission::Denied},
      {"restricted", CameraPermission::Restricted}, {"grant", CameraPermission::Grant},
      {"refuse", CameraPermission::Refuse},
  };
  for (const auto& [name, permission] : names)
    if (value == name) {
      options.permission = permission;
      return {};
    }
  return "is none of authorized, denied, restricted, grant and refuse";
}

/// WxH or WxH@SCALE.
std::string readScreen(Options& options, const std::string& value) {
  const auto number = [&](std::size_t from, std::size_t to) {
    return decimalNumber(std::string_view(value).substr(from, to - from)).value_or(0);
  };
  const auto times = value.find('x');
  const auto at = std::min(value.find('@'), value.size());
  if (times == std::string::npos || times > at) return "is not WxH@SCALE";
  options.screen = {number(0, times), number(times + 1, at)};
  if (at < value.size()) options.scale = number(at + 1, value.size());
  if (options.screen.width < 100 || options.screen.height < 100 || options.screen.width > 8192 ||
      options.screen.height > 8192 || options.scale < 0.5 || options.scale > 4)
    return "is not WxH@SCALE of a sensible size";
  return {};
}

std::string readScreenName(Options& options, const std::string& value) {
  options.showsCardReview = value == "card-review";
  return options.showsCardReview ? "" : "is no screen; there is card-review";
}

std::string readTextScale(Options& options, const std::string& value) {
  options.textScale = decimalNumber(value);
  const double scale = options.textScale.value_or(0);
  return scale >= 0.5 && scale <= 4 ? "" : "is no number from 0.5 to 4";
}

std::string readInput(Options& options, const std::string& value);

struct Known {
  std::string name, value;
  Reader read;
  std::string help;
  bool onlyDemo = false;
};

const std::vector<Known>& known() {
  static const std::vector<Known> options{
      {"--client-id", "ID", text(&Options::clientId), "register with it"},
      {"--metadata", "KEY=VALUE", readMetadata, "an entry of the identity, may be repeated"},
      {"--identity", "ID", text(&Options::identity), "an identity made before"},
      {"--input", "FILE", readInput,
       "options as a JSON object, e.g. {\"client-id\": \"ID\"}; - reads standard input"},
      {"--server", "ADDRESS", readServer, "of the back end; ends in /"},
      {"--tracking", "ADDRESS", address(&Options::tracking), "where events go"},
      {"--ca", "FILE", readableFile(&Options::authorities), "further authorities to trust"},
      {"--chat-template", "ADDRESS", address(&Options::chatTemplate), "of the chat's template"},
      {"--chat-domain", "NAME", text(&Options::chatDomain), "whose data belongs to the chat too"},
      {"--chat-license", "ID", text(&Options::chatLicense), "of the chat"},
      {"--chat-group", "ID", text(&Options::chatGroup), "whom the visitor reaches"},
      {"--chat-name", "NAME", text(&Options::chatName), "of the visitor"},
      {"--chat-email", "ADDRESS", text(&Options::chatEmail), "of the visitor"},
      {"--texts", "FILE", readableFile(&Options::texts), "a property list with the host's texts"},
      {"--language", "CODE", text(&Options::language), "of the screens (the merchant's)"},
      {"--style", "light|dark", readStyle, "colours of the screens (the desktop's)"},
      {"--host-version", "TEXT", text(&Options::hostVersion), "of the host, for the events"},
      {"--host-build", "TEXT", text(&Options::hostBuild), "the same"},
      {"--cameras", "real|drawn", readCameras,
       "this machine's (the demo draws some where there are none), or drawn ones"},
      {"--front-camera", "SOURCE", camera(&Options::frontCamera),
       "none, simulated, or a device, picture or film"},
      {"--back-camera", "SOURCE", camera(&Options::backCamera), "the same"},
      {"--camera-permission", "STATE", readPermission,
       "authorized, denied, restricted, grant or refuse"},
      {"--screen", "WxH@SCALE", readScreen, "its size in points (375x812@2)"},
      {"--text-scale", "NUMBER", readTextScale, "of the desktop's text"},
      {"--show", "card-review", readScreenName, "the review of --picture", true},
      {"--picture", "FILE", readableFile(&Options::picture), "of a document", true},
      {"--drive", "FILE", readableFile(&Options::drive), "a script that taps through the flow"},
      {"--pictures", "DIR", text(&Options::pictures), "where the script's pictures go"},
      {"--events", "FILE", text(&Options::events), "what happens, a JSON object a line", true},
  };
  return options;
}

const Known* find(const std::string& name, Program program) {
  const auto option = std::ranges::find(known(), name, &Known::name);
  const bool found = option != known().end() && (program == Program::Demo || !option->onlyDemo);
  return found ? &*option : nullptr;
}

std::optional<std::string> contentsOf(const std::string& file) {
  if (file != "-") {
    const auto data = FileManager::contents(file);
    return data ? std::optional(data->string()) : std::nullopt;
  }
  std::string text;
  for (int byte = 0; text.size() <= largestInput && (byte = std::getchar()) != EOF;)
    text += char(byte);
  return text;
}

/// Problems name an option, not its value, which may be personal.
std::string readInput(Options& options, const std::string& file) {
  const auto text = contentsOf(file);
  if (!text || text->size() > largestInput) return "can't be read";
  const auto json = JSONSerialization::jsonObject(*text);
  if (!json || !json->dictionary()) return "is no JSON object";
  for (const auto& [name, value] : *json->dictionary()) {
    if (name == "metadata" && value.dictionary()) {
      for (const auto& [key, entry] : *value.dictionary())
        options.metadata[key] = entry;
      continue;
    }
    const Known* option = find("--" + name, options.program);
    if (!option || option->name == "--input") return "there is no option " + name;
    if (!value.string()) return name + " is no text";
    if (const std::string problem = option->read(options, *value.string()); !problem.empty())
      return name + " " + problem;
  }
  return {};
}

/// Options without a value.
bool Options::*flag(const std::string& name) {
  if (name == "--offscreen") return &Options::offscreen;
  if (name == "--full-screen") return &Options::fullScreen;
  return nullptr;
}

} // namespace

std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments,
                                                Program program) {
  Options options;
  options.program = program;
  for (std::size_t i = 0; i < arguments.size(); i++) {
    const std::string& name = arguments[i];
    if (const auto field = flag(name)) {
      options.*field = true;
      continue;
    }
    if (name == "--help") {
      options.help = true;
      return options;
    }
    const Known* option = find(name, program);
    if (!option) return "there is no option " + name + "; --help lists them";
    if (i + 1 == arguments.size()) return name + " lacks its value";
    const std::string& value = arguments[++i];
    if (const std::string problem = option->read(options, value); !problem.empty())
      return name + " " + value + ": " + problem;
  }
  if (options.showsCardReview != options.picture.has_value())
    return "--show card-review and --picture FILE need each other";
  return options;
}

std::string usage(Program program) {
  std::string text = program == Program::Demo
                         ? "zuvi-demo: a host of the kit to try it with\n\n"
                         : "zuvi-verify: runs one verification and prints what happens, a JSON "
                           "object a line\n\n"
                           "Exit status: 0 verified, 3 cancelled, 1 failed, 2 wrong use\n\n";
  const auto add = [&text](std::string name, const std::string& help) {
    name.resize(27, ' ');
    text += "  " + name + help + "\n";
  };
  for (const Known& option : known())
    if (find(option.name, program)) add(option.name + " " + option.value, option.help);
  add("--full-screen", "the window fills the display");
  add("--offscreen", "no window: the script looks at pictures in memory");
  return text;
}

} // namespace zuvi::demo
