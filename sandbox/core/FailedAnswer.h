#pragma once

#include "sandbox/core/FailRules.h"
#include "sandbox/core/http/Request.h"
#include "sandbox/core/http/Response.h"

#include <functional>
#include <vector>

namespace zuvi::sandbox {

/// Answers a request as its rules demand. A delay, a cut and a truncation let the operation happen
/// and spoil how its answer arrives; everything else stands in its place, and nothing is stored.
/// Where several rules meet, delays add up, the first other action counts, and a status is put on
/// whatever body there is.
Response answerUnderRules(const std::vector<FailRule>& rules, const Request& request,
                          const std::function<Response()>& operation);

} // namespace zuvi::sandbox
