#include "platform/WebKitGtk/ErrorsGtk.h"

#include <optional>

#include <webkit/webkit.h>

namespace zuvi {

namespace {

std::optional<NSURLErrorCode> networkCode(const GError& error) {
  if (error.domain == WEBKIT_NETWORK_ERROR) {
    if (error.code == WEBKIT_NETWORK_ERROR_CANCELLED) return NSURLErrorCancelled;
    if (error.code == WEBKIT_NETWORK_ERROR_UNKNOWN_PROTOCOL) return NSURLErrorUnsupportedURL;
    if (error.code == WEBKIT_NETWORK_ERROR_TRANSPORT) return NSURLErrorNetworkConnectionLost;
    return NSURLErrorUnknown;
  }
  if (error.domain == G_RESOLVER_ERROR) return NSURLErrorCannotFindHost;
  if (error.domain == G_TLS_ERROR) return NSURLErrorSecureConnectionFailed;
  if (error.domain == G_IO_ERROR) switch (error.code) {
    case G_IO_ERROR_CANCELLED:
      return NSURLErrorCancelled;
    case G_IO_ERROR_TIMED_OUT:
      return NSURLErrorTimedOut;
    case G_IO_ERROR_HOST_NOT_FOUND:
      return NSURLErrorCannotFindHost;
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_HOST_UNREACHABLE:
    case G_IO_ERROR_NETWORK_UNREACHABLE:
      return NSURLErrorCannotConnectToHost;
    default:
      return NSURLErrorNetworkConnectionLost;
    }
  return std::nullopt;
}

} // namespace

Error errorOfLoad(const GError& error) {
  if (const auto code = networkCode(error)) return {NSURLErrorDomain, *code, error.message};
  if (error.domain == WEBKIT_POLICY_ERROR) return {"WebKitErrorDomain", error.code, error.message};
  return {g_quark_to_string(error.domain), error.code, error.message};
}

Error errorOfScript(const GError& error) {
  enum Code { unknown = 1, thrown = 4, resultWithoutForm = 5 };
  Code code = unknown;
  if (error.domain == WEBKIT_JAVASCRIPT_ERROR)
    code = error.code == WEBKIT_JAVASCRIPT_ERROR_SCRIPT_FAILED ? thrown : resultWithoutForm;
  return {"WKErrorDomain", code, error.message};
}

} // namespace zuvi
