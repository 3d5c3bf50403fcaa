#pragma once

#include <ZuviSDK/Foundation/Error.h>

#include <string>

namespace zuvi {

Error urlError(NSURLErrorCode code, std::string description);

/// The error for a result code of the transfer library; `detail` may be empty.
Error errorFromCurl(int result, const std::string& detail);

} // namespace zuvi
