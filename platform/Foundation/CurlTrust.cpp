#include "platform/Foundation/CurlTrust.h"

#include "platform/Foundation/FileManager.h"

#include <mutex>
#include <string_view>

#include <curl/curl.h>

namespace zuvi {

namespace {

// Of TLS 1.2; later ones have no others. Each connection has keys of its own, whatever becomes of
// the server's; the level refuses certificates and keys of less than 112 bits.
constexpr const char* ciphers = "ECDHE+AESGCM:ECDHE+CHACHA20:ECDHE+AES:@SECLEVEL=2";

std::mutex mutex;
Data added;

std::string systemFile(CURL* easy, CURLINFO which) {
  const char* path = nullptr;
  curl_easy_getinfo(easy, which, &path);
  return path ? path : "";
}

} // namespace

void CurlTrust::setAdditional(const std::string& pemFile) {
  auto bytes = pemFile.empty() ? std::nullopt : FileManager::contents(pemFile);
  const std::lock_guard lock(mutex);
  added = bytes.value_or(Data());
}

Data CurlTrust::additional() {
  const std::lock_guard lock(mutex);
  return added;
}

void CurlTrust::apply(void* easy) {
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(easy, CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
  if (std::string_view(curl_version_info(CURLVERSION_NOW)->ssl_version).starts_with("OpenSSL"))
    curl_easy_setopt(easy, CURLOPT_SSL_CIPHER_LIST, ciphers);
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
