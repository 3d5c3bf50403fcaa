#include <ZuviSDK/Foundation/Date.h>

#include <chrono>

namespace zuvi {

Date Date::now() {
  return {
      std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count()};
}

} // namespace zuvi
