// The head of an answer, line by line, behind a byte that chooses the request that it answers; then
// the redirects that it asks for.

#include "fuzz/Json.h"
#include "platform/Foundation/CurlHead.h"
#include "platform/Foundation/CurlRedirect.h"

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  std::string_view rest = fuzz::textOf(bytes + 1, size - 1);
  CurlHead head;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n') + 1);
    if (!head.add(line.empty() ? rest : line)) return 0;
    rest.remove_prefix(line.empty() ? rest.size() : line.size());
  }
  const auto location = head.response.headers.find("location");
  if (location == head.response.headers.end()) return 0;

  static const char* const methods[] = {"GET", "POST", "PUT", "PATCH"};
  static const int statuses[] = {301, 302, 303, 307, 308, 200, 304, 300};
  static const auto from = CurlAddress::parse("https://host.example:8443/v1/a?b#c");
  URLRequest request(URL::fromString("https://host.example:8443/v1/a?b#c").value());
  request.httpMethod = methods[bytes[0] % 4];
  request.allHTTPHeaderFields = {
      {"Authorization", "Bearer secret"}, {"Cookie", "a=b"}, {"Content-Type", "image/jpeg"}};
  const bool uploads = request.httpMethod != "GET";
  if (uploads) request.httpBody = HTTPBody{Data(std::string("picture"))};
  const int status = statuses[bytes[0] / 4 % 8];
  const auto target = followRedirect(*from, status, location->second, request);
  if (!target) return 0;
  fuzz::expect(status > 300 && status != 304);
  // Nothing that is meant for one server goes to another, whatever the address looks like.
  const bool same =
      target->scheme == "https" && target->port == "8443" && target->host.size() == 12;
  if (!same) {
    fuzz::expect(!request.httpBody && !request.allHTTPHeaderFields.contains("Authorization") &&
                 !request.allHTTPHeaderFields.contains("Cookie"));
  }
  fuzz::expect(request.httpBody.has_value() ==
                   request.allHTTPHeaderFields.contains("Content-Type") ||
               !uploads);
  fuzz::expect(target->text.find_first_of("\r\n") == std::string::npos);
  return 0;
}
