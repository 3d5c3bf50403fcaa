#include "demo/core/Options.h"

#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/URL.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>

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

Reader camera(std::optional<CameraSourceDescription> Options::*field) {
  return [field](Options& options, const std::string& value) -> std::string {
    auto parsed = parseCameraSource(value);
    if (const auto* error = std::get_if<Error>(&parsed)) return error->description;
    options.*field = std::get<CameraSourceDescription>(parsed);
    return {};
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

std::string readPermission(Options& options, const std::string& value) {
  auto parsed = parseCameraPermission(value);
  if (const auto* error = std::get_if<Error>(&parsed)) return error->description;
  options.permission = std::get<CameraPermission>(parsed);
  return {};
}

std::string readReadableFile(std::optional<std::string> Options::*field, Options& options,
                             const std::string& value) {
  options.*field = value;
  return FileManager::contents(value) ? "" : "can't be read";
}

/// WxH or WxH@SCALE.
std::string readScreen(Options& options, const std::string& value) {
  const auto number = [&](std::size_t from, std::size_t to) {
    const std::string digits = value.substr(from, to - from);
    char* end = nullptr;
    const double parsed = std::strtod(digits.c_str(), &end);
    return digits.empty() || *end || !std::isfinite(parsed) ? 0.0 : parsed;
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
  char* end = nullptr;
  const double scale = std::strtod(value.c_str(), &end);
  options.textScale = scale;
  const bool sensible = !value.empty() && !*end && scale >= 0.5 && scale <= 4;
  return sensible ? "" : "is no number from 0.5 to 4";
}

const std::map<std::string, Reader>& readers() {
  static const std::map<std::string, Reader> known{
      {"--client-id", text(&Options::clientId)},
      {"--metadata", readMetadata},
      {"--identity", text(&Options::identity)},
      {"--server", readServer},
      {"--tracking", address(&Options::tracking)},
      {"--chat-template", address(&Options::chatTemplate)},
      {"--chat-license", text(&Options::chatLicense)},
      {"--chat-group", text(&Options::chatGroup)},
      {"--chat-name", text(&Options::chatName)},
      {"--chat-email", text(&Options::chatEmail)},
      {"--ca", [](Options& o,
                  const std::string& v) { return readReadableFile(&Options::authorities, o, v); }},
      {"--front-camera", camera(&Options::frontCamera)},
      {"--back-camera", camera(&Options::backCamera)},
      {"--camera-permission", readPermission},
      {"--screen", readScreen},
      {"--show", readScreenName},
      {"--picture",
       [](Options& o, const std::string& v) { return readReadableFile(&Options::picture, o, v); }},
      {"--text-scale", readTextScale},
      {"--drive",
       [](Options& o, const std::string& v) { return readReadableFile(&Options::drive, o, v); }},
      {"--pictures", text(&Options::pictures)},
      {"--events", text(&Options::events)},
  };
  return known;
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
    const auto reader = readers().find(name);
    if (reader == readers().end()) return "there is no option " + name;
    if (i + 1 == arguments.size()) return name + " lacks its value";
    const std::string& value = arguments[++i];
    if (const std::string problem = reader->second(options, value); !problem.empty())
      return name + " " + value + ": " + problem;
  }
  if (options.showsCardReview != options.picture.has_value())
    return "--show card-review and --picture FILE need each other";
  return options;
}

} // namespace zuvi::demo
