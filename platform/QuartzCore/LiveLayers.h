#pragma once

#include <cstddef>

namespace zuvi {

/// How many layers there are in the process, whoever holds them: what leaks shows here.
std::size_t liveLayers();

} // namespace zuvi
