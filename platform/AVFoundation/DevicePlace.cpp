#include "platform/AVFoundation/DevicePlace.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zuvi {

namespace {

namespace fs = std::filesystem;
using Position = AVCaptureDevicePosition;

std::string firstWord(const fs::path& file) {
  std::string word;
  std::ifstream(file) >> word;
  return word;
}

Position positionNamed(const std::string& panel) {
  if (panel == "front") return Position::Front;
  return panel == "back" ? Position::Back : Position::Unspecified;
}

/// By the control that drivers of phones' and tablets' sensors have.
Position askDriver(const std::string& device) {
  const int file = ::open(device.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return Position::Unspecified;
  v4l2_control control{};
  control.id = V4L2_CID_CAMERA_ORIENTATION;
  const bool known = ::ioctl(file, VIDIOC_G_CTRL, &control) == 0;
  ::close(file);
  if (known && control.value == V4L2_CAMERA_ORIENTATION_FRONT) return Position::Front;
  if (known && control.value == V4L2_CAMERA_ORIENTATION_BACK) return Position::Back;
  return Position::Unspecified;
}

} // namespace

DevicePlace placeOf(const std::string& device, const std::string& sysfs) {
  DevicePlace place;
  std::error_code error;
  const auto file = fs::canonical(device, error);
  const auto name = error ? fs::path(device).filename() : file.filename();
  const auto root = fs::canonical(fs::path(sysfs) / "devices", error);
  auto folder = fs::canonical(fs::path(sysfs) / "class/video4linux" / name / "device", error);
  if (!error) {
    const bool onUsb = folder.string().find("/usb") != std::string::npos;
    const bool isVirtual = folder.string().starts_with((root / "virtual").string());
    if (!onUsb) place.builtIn = !isVirtual;
    // The camera is an interface of a device. Further up come its socket and hubs, whose place is
    // not the camera's.
    std::string panel, removable;
    for (; folder != root && folder.has_relative_path(); folder = folder.parent_path()) {
      if (panel.empty()) panel = firstWord(folder / "physical_location/panel");
      removable = firstWord(folder / "removable");
      if (!removable.empty()) break;
    }
    if (onUsb && (removable == "fixed" || removable == "removable"))
      place.builtIn = removable == "fixed";
    if (place.builtIn == true) place.position = positionNamed(panel);
  }
  if (place.position == Position::Unspecified) place.position = askDriver(device);
  return place;
}

} // namespace zuvi
