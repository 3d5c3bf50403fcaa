#include <ZuviSDK/AVFoundation/HostCameraProvider.h>

#include <array>
#include <fstream>
#include <string_view>
#include <sys/stat.h>

namespace zuvi {

namespace {

bool isPicture(const std::string& path) {
  std::array<char, 4> head{};
  std::ifstream(path, std::ios::binary).read(head.data(), head.size());
  const std::string_view text(head.data(), head.size());
  return text == "\x89PNG" || text.starts_with("\xff\xd8\xff");
}

} // namespace

std::optional<CameraSourceDescription> parseCameraSource(const std::string& text,
                                                         std::string& problem) {
  using Kind = CameraSourceDescription::Kind;
  if (text == "none") return CameraSourceDescription{Kind::None, {}};
  if (text == "simulated") return CameraSourceDescription{Kind::Simulated, {}};

  struct stat status {};
  if (text.empty() || ::stat(text.c_str(), &status) != 0) {
    problem = "No camera source '" + text +
              "': give none, simulated, or a device, picture or film that exists.";
    return std::nullopt;
  }
  if (S_ISCHR(status.st_mode)) return CameraSourceDescription{Kind::Device, text};
  if (!S_ISREG(status.st_mode) || status.st_size == 0) {
    problem = "The camera source '" + text + "' holds no picture or film.";
    return std::nullopt;
  }
  return CameraSourceDescription{isPicture(text) ? Kind::Picture : Kind::Film, text};
}

} // namespace zuvi
