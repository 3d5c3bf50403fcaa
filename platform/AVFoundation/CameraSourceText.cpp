#include <ZuviSDK/AVFoundation/HostCameraProvider.h>

#include "platform/AVFoundation/AVError.h"

#include <array>
#include <fstream>
#include <string_view>
#include <sys/stat.h>

namespace zuvi {

namespace {

Error sourceError(const std::string& line) {
  return {AVFoundationErrorDomain, AVErrorInvalidSetting, line};
}

bool isPicture(const std::string& path) {
  std::array<char, 4> head{};
  std::ifstream(path, std::ios::binary).read(head.data(), head.size());
  const std::string_view text(head.data(), head.size());
  return text == "\x89PNG" || text.starts_with("\xff\xd8\xff");
}

} // namespace

std::variant<CameraSourceDescription, Error> parseCameraSource(const std::string& text) {
  using Kind = CameraSourceDescription::Kind;
  if (text == "none") return CameraSourceDescription{Kind::None, {}};
  if (text == "simulated") return CameraSourceDescription{Kind::Simulated, {}};

  struct stat status {};
  if (text.empty() || ::stat(text.c_str(), &status) != 0)
    return sourceError("No camera source '" + text +
                       "': give none, simulated, or a device, picture or film that exists.");
  if (S_ISCHR(status.st_mode)) return CameraSourceDescription{Kind::Device, text};
  if (!S_ISREG(status.st_mode) || status.st_size == 0)
    return sourceError("The camera source '" + text + "' holds no picture or film.");
  return CameraSourceDescription{isPicture(text) ? Kind::Picture : Kind::Film, text};
}

std::variant<CameraPermission, Error> parseCameraPermission(const std::string& text) {
  constexpr std::pair<const char*, CameraPermission> names[] = {
      {"authorized", CameraPermission::Authorized}, {"denied", CameraPermission::Denied},
      {"restricted", CameraPermission::Restricted}, {"grant", CameraPermission::Grant},
      {"refuse", CameraPermission::Refuse},
  };
  for (const auto& [name, permission] : names)
    if (text == name) return permission;
  return sourceError("No camera permission '" + text +
                     "': give authorized, denied, restricted, grant or refuse.");
}

} // namespace zuvi
