#pragma once

#include "demo/core/Options.h"

namespace zuvi::demo {

/// Puts what the command line names in the place of the machine's cameras. Where it asks for real
/// ones and there are none, drawn ones come a moment later, and a line says so.
void installCameras(const Options& options);

} // namespace zuvi::demo
