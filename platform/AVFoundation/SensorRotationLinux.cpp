#include "platform/AVFoundation/SensorRotation.h"

#include <fcntl.h>
#include <linux/v4l2-controls.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zuvi {

std::optional<int> sensorRotationFrom(const std::string& text) {
  for (const int degrees : {0, 90, 180, 270})
    if (text == std::to_string(degrees)) return degrees;
  return std::nullopt;
}

int sensorRotation(const std::string& path) {
  const int device = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (device < 0) return 0;
  v4l2_control control{};
  control.id = V4L2_CID_CAMERA_SENSOR_ROTATION;
  const bool told = ::ioctl(device, VIDIOC_G_CTRL, &control) == 0;
  ::close(device);
  return told ? sensorRotationFrom(std::to_string(control.value)).value_or(0) : 0;
}

} // namespace zuvi
