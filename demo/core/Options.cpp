#include "demo/core/Options.h"

#include <ZuviSDK/Foundation/URL.h>
#include "platform/Foundation/Decimal.h"
#include "platform/Foundation/FileManager.h"

#include <algorithm>
#include <functional>

namespace zuvi::demo {

namespace {

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

struct Known {
  std::string name, value;
  Reader read;
  std::string help;
};

const std::vector<Known>& known() {
  static const std::vector<Known> options{
      {"--client-id", "ID", text(&Options::clientId), "register with it"},
      {"--metadata", "KEY=VALUE", readMetadata, "an entry of the identity, may be repeated"},
      {"--identity", "ID", text(&Options::identity), "an identity made before"},
      {"--server", "ADDRESS", readServer, "of the back end; ends in /"},
      {"--tracking", "ADDRESS", address(&Options::tracking), "where events go"},
      {"--ca", "FILE", readableFile(&Options::authorities), "further authorities to trust"},
      {"--chat-template", "ADDRESS", address(&Options::chatTemplate), "of the chat's template"},
      {"--chat-license", "ID", text(&Options::chatLicense), "of the chat"},
      {"--chat-group", "ID", text(&Options::chatGroup), "whom the visitor reaches"},
      {"--chat-name", "NAME", text(&Options::chatName), "of the visitor"},
      {"--chat-email", "ADDRESS", text(&Options::chatEmail), "of the visitor"},
      {"--cameras", "real|drawn", readCameras,
       "this machine's (drawn ones where it has none), or drawn ones"},
      {"--front-camera", "SOURCE", camera(&Options::frontCamera),
       "none, simulated, or a device, picture or film"},
      {"--back-camera", "SOURCE", camera(&Options::backCamera), "the same"},
      {"--camera-permission", "STATE", readPermission,
       "authorized, denied, restricted, grant or refuse"},
      {"--screen", "WxH@SCALE", readScreen, "its size in points (375x812@2)"},
      {"--text-scale", "NUMBER", readTextScale, "of the desktop's text"},
      {"--show", "card-review", readScreenName, "the review of --picture"},
      {"--picture", "FILE", readableFile(&Options::picture), "of a document"},
      {"--drive", "FILE", readableFile(&Options::drive), "a script that taps through the flow"},
      {"--pictures", "DIR", text(&Options::pictures), "where the script's pictures go"},
      {"--events", "FILE", text(&Options::events), "what happens, a JSON object a line"},
  };
  return options;
}

} // namespace

std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); i++) {
    const std::string& name = arguments[i];
    if (name == "--offscreen") {
      options.offscreen = true;
      continue;
    }
    if (name == "--help") {
      options.help = true;
      return options;
    }
    const auto option = std::ranges::find(known(), name, &Known::name);
    if (option == known().end()) return "there is no option " + name + "; --help lists them";
    if (i + 1 == arguments.size()) return name + " lacks its value";
    const std::string& value = arguments[++i];
    if (const std::string problem = option->read(options, value); !problem.empty())
      return name + " " + value + ": " + problem;
  }
  if (options.showsCardReview != options.picture.has_value())
    return "--show card-review and --picture FILE need each other";
  return options;
}

std::string usage() {
  std::string text = "zuvi-demo: a host of the kit to try it with\n\n";
  const auto add = [&text](std::string name, const std::string& help) {
    name.resize(27, ' ');
    text += "  " + name + help + "\n";
  };
  for (const Known& option : known())
    add(option.name + " " + option.value, option.help);
  add("--offscreen", "no window: the script looks at pictures in memory");
  return text;
}

} // namespace zuvi::demo
