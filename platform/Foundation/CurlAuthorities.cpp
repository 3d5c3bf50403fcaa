#include "platform/Foundation/CurlAuthorities.h"

#include "platform/Foundation/FileManager.h"

#include <mutex>

#include <curl/curl.h>

namespace zuvi {

namespace {

std::mutex mutex;
Data added;

std::string systemFile(CURL* easy, CURLINFO which) {
  const char* path = nullptr;
  curl_easy_getinfo(easy, which, &path);
  return path ? path : "";
}

} // namespace

void CurlAuthorities::setAdditional(const std::string& pemFile) {
  auto bytes = pemFile.empty() ? std::nullopt : FileManager::contents(pemFile);
  const std::lock_guard lock(mutex);
  added = bytes.value_or(Data());
}

Data CurlAuthorities::additional() {
  const std::lock_guard lock(mutex);
  return added;
}

void CurlAuthorities::apply(void* easy) {
  const std::lock_guard lock(mutex);
  if (added.empty()) return;
  // The blob takes the place of the system's bundle, though not of its folder of authorities.
  std::string pem = added.string();
  if (systemFile(easy, CURLINFO_CAPATH).empty())
    if (const auto bundle = FileManager::contents(systemFile(easy, CURLINFO_CAINFO)))
      pem += '\n' + bundle->string();
  curl_blob blob = {pem.data(), pem.size(), CURL_BLOB_COPY};
  curl_easy_setopt(easy, CURLOPT_CAINFO_BLOB, &blob);
}

} // namespace zuvi
