#pragma once

#include <ZuviSDK/Foundation/Error.h>

#include <glib.h>

namespace zuvi {

/// Of a load. What has no code of ours keeps the engine's.
Error errorOfLoad(const GError& error);
/// Of a script that was run for its result.
Error errorOfScript(const GError& error);

} // namespace zuvi
