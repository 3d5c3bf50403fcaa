#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// An http or https address, taken apart by the transfer library's own parser, so that what is
/// checked here and what is connected to are the same.
struct CurlAddress {
  std::string text; // as it is sent: nothing normalised, bytes beyond ASCII escaped
  std::string scheme;
  std::string host;
  std::string port; // the scheme's own when the address names none

  static std::optional<CurlAddress> parse(const std::string& text);
  /// An address that may leave out what it has in common with this one.
  std::optional<CurlAddress> resolve(const std::string& reference) const;

  bool isHttp() const { return scheme == "http" || scheme == "https"; }
  bool isLoopback() const;
  /// Whether what may be said to this address in confidence may be said to `other` too.
  bool mayConfideIn(const CurlAddress& other) const;
};

} // namespace zuvi
