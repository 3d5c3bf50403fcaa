#pragma once

#include "platform/Foundation/URL.h"

namespace zuvi {

/// Hands an address to the desktop. False when nothing there takes it.
bool openWithDesktop(const URL& url);

} // namespace zuvi
