#include "tests/sandbox/HttpClient.h"

#include <algorithm>
#include <curl/curl.h>

namespace zuvi::sandbox::test {
namespace {

std::size_t keepBody(char* bytes, std::size_t, std::size_t count, void* context) {
  static_cast<Answer*>(context)->body.append(bytes, count);
  return count;
}

std::size_t keepHeader(char* bytes, std::size_t, std::size_t count, void* context) {
  const std::string line(bytes, count);
  const auto colon = line.find(": ");
  if (colon == std::string::npos) return count;
  std::string name = line.substr(0, colon);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return std::tolower(c); });
  static_cast<Answer*>(context)->headers[name] = line.substr(colon + 2, line.size() - colon - 4);
  return count;
}

} // namespace

HttpClient::HttpClient(std::string authority)
    : handle_(curl_easy_init()), authority_(std::move(authority)) {}

HttpClient::~HttpClient() {
  curl_easy_cleanup(handle_);
}

Answer HttpClient::ask(const std::string& method, const std::string& url,
                       const std::vector<std::string>& headers, const std::string& body) {
  CURL* curl = handle_;
  curl_easy_reset(curl);
  Answer answer;
  curl_slist* list = nullptr;
  for (const auto& header : headers)
    list = curl_slist_append(list, header.c_str());
  curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, timeoutMilliseconds);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, keepBody);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &answer);
  curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, keepHeader);
  curl_easy_setopt(curl, CURLOPT_HEADERDATA, &answer);
  if (!authority_.empty()) curl_easy_setopt(curl, CURLOPT_CAINFO, authority_.c_str());
  if (method != "GET") {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, body.data());
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, method.c_str());
  }
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, list);
  answer.error = curl_easy_perform(curl);
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &answer.status);
  curl_slist_free_all(list);
  return answer;
}

} // namespace zuvi::sandbox::test
