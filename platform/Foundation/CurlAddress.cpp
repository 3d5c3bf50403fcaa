#include "platform/Foundation/CurlAddress.h"

#include <initializer_list>
#include <memory>

#include <arpa/inet.h>
#include <curl/curl.h>

namespace zuvi {

namespace {

using Address = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

std::string part(const Address& address, CURLUPart which, unsigned flags = 0) {
  char* text = nullptr;
  if (curl_url_get(address.get(), which, &text, flags) != CURLUE_OK) return {};
  std::string result = text;
  curl_free(text);
  return result;
}

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() &&
         curl_strequal(text.c_str() + text.size() - end.size(), end.c_str()) != 0;
}

/// Read one after the other, each from where the one before leads.
std::optional<CurlAddress> read(std::initializer_list<const char*> texts) {
  const Address address(curl_url(), &curl_url_cleanup);
  constexpr unsigned flags = CURLU_PATH_AS_IS | CURLU_URLENCODE | CURLU_NON_SUPPORT_SCHEME;
  for (const char* text : texts)
    if (!address || curl_url_set(address.get(), CURLUPART_URL, text, flags) != CURLUE_OK)
      return std::nullopt;
  CurlAddress result;
  result.text = part(address, CURLUPART_URL);
  result.scheme = part(address, CURLUPART_SCHEME);
  result.host = part(address, CURLUPART_HOST);
  result.port = part(address, CURLUPART_PORT, CURLU_DEFAULT_PORT);
  return result;
}

} // namespace

std::optional<CurlAddress> CurlAddress::parse(const std::string& address) {
  return read({address.c_str()});
}

std::optional<CurlAddress> CurlAddress::resolve(const std::string& reference) const {
  return read({text.c_str(), reference.c_str()});
}

bool CurlAddress::isLoopback() const {
  std::string name = host;
  if (name.size() > 2 && name.front() == '[') name = name.substr(1, name.size() - 2);
  if (!name.empty() && name.back() == '.') name.pop_back();
  in_addr v4 = {};
  if (inet_pton(AF_INET, name.c_str(), &v4) == 1) return ntohl(v4.s_addr) >> 24 == 127;
  in6_addr v6 = {};
  if (inet_pton(AF_INET6, name.c_str(), &v6) == 1) return IN6_IS_ADDR_LOOPBACK(&v6);
  return curl_strequal(name.c_str(), "localhost") != 0 || endsWith(name, ".localhost");
}

bool CurlAddress::mayConfideIn(const CurlAddress& other) const {
  if (curl_strequal(host.c_str(), other.host.c_str()) == 0) return false;
  if (scheme == other.scheme && port == other.port) return true;
  // The usual step from the plain port to the protected one of the same host.
  return scheme == "http" && port == "80" && other.scheme == "https" && other.port == "443";
}

} // namespace zuvi
