#pragma once

#include <ZuviSDK/Export.h>

#include <cstddef>

namespace zuvi {

/// How many layers there are in the process, whoever holds them: what leaks shows here.
ZUVI_API std::size_t liveLayers();

} // namespace zuvi
