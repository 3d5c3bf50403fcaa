#include <ZuviSDK/ZVEndpoints.h>

#include "platform/Foundation/URLSession.h"

namespace zuvi {

std::string& ZVEndpoints::serverURL() {
  static std::string url = "https://api.zuvisdk.example/";
  return url;
}

std::string& ZVEndpoints::trackingURL() {
  static std::string url = "http://track.zuvisdk.example/track/";
  return url;
}

std::string& ZVEndpoints::chatTemplateURL() {
  static std::string url = "https://cdn.zuvichat.example/app/mobile/urls.json";
  return url;
}

std::string& ZVEndpoints::chatDomain() {
  static std::string domain = "zuvichat.example";
  return domain;
}

static std::string authorities;

const std::string& ZVEndpoints::additionalAuthorities() {
  return authorities;
}

void ZVEndpoints::setAdditionalAuthorities(const std::string& pemFile) {
  authorities = pemFile;
  URLSession::setAdditionalAuthorities(pemFile);
}

} // namespace zuvi
