#pragma once

#include <ZuviSDK/Export.h>

#include <functional>
#include <string>

namespace zuvi {

/// Writes one line to the console. Any thread.
ZUVI_API void print(const std::string& line);

/// Also hands every printed line to `listener`, on the printing thread; null ends it.
void setPrintListener(std::function<void(const std::string&)> listener);

} // namespace zuvi
