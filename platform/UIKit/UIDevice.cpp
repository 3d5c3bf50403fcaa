#include "platform/UIKit/UIDevice.h"

#include <sys/utsname.h>

namespace zuvi {

std::string UIDevice::systemVersion() const {
  utsname name{};
  return uname(&name) == 0 ? name.release : "";
}

} // namespace zuvi
