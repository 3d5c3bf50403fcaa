#pragma once

#include <string>

namespace zuvi {

/// What went wrong, as a value: whose code it is, the code, and one line for a reader.
struct Error {
  std::string domain;      ///< whose codes they are
  int code = 0;            ///< means something only within its domain
  std::string description; ///< for a log, in English, not for the person
};

/// The domain of the errors of `URLSession` and of web pages.
inline constexpr const char* NSURLErrorDomain = "NSURLErrorDomain";
/// The codes of `NSURLErrorDomain`.
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
