#pragma once

#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

/// Hands an address to the desktop, and waits for nothing. False when nothing there takes it.
bool openWithDesktop(const URL& url);

/// Whether a program of the desktop has signed up for addresses of this scheme.
bool desktopCanOpen(const URL& url);

} // namespace zuvi
