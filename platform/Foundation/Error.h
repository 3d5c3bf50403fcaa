#pragma once

#include <string>

namespace zuvi {

/// What went wrong, as a value: whose code it is, the code, and one line for a reader.
struct Error {
  std::string domain;
  int code = 0;
  std::string description;
};

/// The domain of `URLSession`'s errors. Codes:
inline constexpr const char* NSURLErrorDomain = "NSURLErrorDomain";
enum NSURLErrorCode : int {
  NSURLErrorUnknown = -1,
  NSURLErrorCancelled = -999,
  NSURLErrorBadURL = -1000,
  NSURLErrorTimedOut = -1001,
  NSURLErrorUnsupportedURL = -1002,
  NSURLErrorCannotFindHost = -1003,
  NSURLErrorCannotConnectToHost = -1004,
  NSURLErrorNetworkConnectionLost = -1005,
  NSURLErrorHTTPTooManyRedirects = -1007,
  NSURLErrorDataLengthExceedsMaximum = -1103,
  NSURLErrorSecureConnectionFailed = -1200,
  NSURLErrorServerCertificateUntrusted = -1202,
};

} // namespace zuvi
