#pragma once

#include "sandbox/core/http/BodyFile.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// One request, whole: the handler runs once its last byte is here.
struct Request {
  std::string method;
  std::string path;  ///< as it was sent, still percent-encoded
  std::string query; ///< likewise, without the question mark
  std::map<std::string, std::string, std::less<>> headers; ///< names in lower case
  std::string body; ///< empty when it is long: then it lies in `bodyFile`
  std::shared_ptr<BodyFile> bodyFile;
  std::uint64_t bodySize = 0; ///< of all that came, also when a body that is too long was let go
  std::chrono::steady_clock::time_point started = std::chrono::steady_clock::now();

  /// Lets time pass on the connection's own thread. False when the client left or the server
  /// stops before it is over; without a duration only that ends it.
  std::function<bool(std::optional<std::chrono::milliseconds>)> wait;

  /// The body, wherever it lies.
  std::string_view content() const { return bodyFile ? bodyFile->bytes() : body; }

  std::optional<std::string_view> header(std::string_view lowerCaseName) const {
    const auto found = headers.find(lowerCaseName);
    if (found == headers.end()) return std::nullopt;
    return found->second;
  }
};

} // namespace zuvi::sandbox
