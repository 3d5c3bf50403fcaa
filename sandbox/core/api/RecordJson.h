#pragma once

#include "sandbox/core/store/Records.h"
#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {

/// A document as its operations answer it: `fields` are there once they are known.
Json documentJson(const Document& document);

/// All that is stored, for scripts that look at it.
Json arrivalsJson(const Arrivals& arrivals);

} // namespace zuvi::sandbox
