#include "platform/Foundation/CurlErrors.h"

#include <utility>

#include <curl/curl.h>

namespace zuvi {

namespace {

NSURLErrorCode errorCode(CURLcode result) {
  switch (result) {
  case CURLE_URL_MALFORMAT:
    return NSURLErrorBadURL;
  case CURLE_UNSUPPORTED_PROTOCOL:
    return NSURLErrorUnsupportedURL;
  case CURLE_OPERATION_TIMEDOUT:
    return NSURLErrorTimedOut;
  case CURLE_COULDNT_RESOLVE_HOST:
  case CURLE_COULDNT_RESOLVE_PROXY:
    return NSURLErrorCannotFindHost;
  case CURLE_COULDNT_CONNECT:
  case CURLE_PROXY:
    return NSURLErrorCannotConnectToHost;
  case CURLE_PEER_FAILED_VERIFICATION:
  case CURLE_SSL_ISSUER_ERROR:
  case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    return NSURLErrorServerCertificateUntrusted;
  case CURLE_SSL_CONNECT_ERROR:
  case CURLE_SSL_CERTPROBLEM:
  case CURLE_SSL_CIPHER:
  case CURLE_SSL_CACERT_BADFILE:
  case CURLE_USE_SSL_FAILED:
    return NSURLErrorSecureConnectionFailed;
  case CURLE_SEND_ERROR:
  case CURLE_RECV_ERROR:
  case CURLE_GOT_NOTHING:
  case CURLE_PARTIAL_FILE:
  case CURLE_WEIRD_SERVER_REPLY:
  case CURLE_HTTP2:
  case CURLE_HTTP2_STREAM:
    return NSURLErrorNetworkConnectionLost;
  default:
    return NSURLErrorUnknown;
  }
}

} // namespace

Error urlError(NSURLErrorCode code, std::string description) {
  return {NSURLErrorDomain, code, std::move(description)};
}

Error errorFromCurl(int result, const std::string& detail) {
  const auto code = static_cast<CURLcode>(result);
  return urlError(errorCode(code), detail.empty() ? curl_easy_strerror(code) : detail);
}

} // namespace zuvi
