#pragma once

#include <map>
#include <string>
#include <vector>

namespace zuvi::sandbox::test {

struct Answer {
  int error = 0; ///< of the transport; 0 when an answer came whole
  long status = 0;
  std::map<std::string, std::string> headers; ///< names in lower case
  std::string body;
};

/// Asks servers of the tests, over one connection as long as it stays open.
class HttpClient {
public:
  explicit HttpClient(std::string authority = {});
  ~HttpClient();
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;

  long timeoutMilliseconds = 20000;
  /// Without a body of a method that has one, an empty body is sent.
  Answer ask(const std::string& method, const std::string& url,
             const std::vector<std::string>& headers = {}, const std::string& body = {});

private:
  void* handle_;
  std::string authority_;
};

} // namespace zuvi::sandbox::test
