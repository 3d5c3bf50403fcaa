#include "platform/WebKitGtk/TrustGtk.h"

#include "platform/WebKitGtk/PointerGtk.h"

namespace zuvi {

bool isTrusted(GTlsCertificate* certificate, const std::string& host,
               const std::string& authorities) {
  constexpr const char* begin = "-----BEGIN CERTIFICATE-----";
  const ObjectPointer<GSocketConnectable> identity(g_network_address_new(host.c_str(), 0));
  for (auto at = authorities.find(begin); at != std::string::npos;) {
    const auto next = authorities.find(begin, at + 1);
    const std::string pem = authorities.substr(at, next == std::string::npos ? next : next - at);
    at = next;
    const ObjectPointer<GTlsCertificate> authority(
        g_tls_certificate_new_from_pem(pem.c_str(), -1, nullptr));
    if (authority && !g_tls_certificate_verify(certificate, identity.get(), authority.get()))
      return true;
  }
  return false;
}

} // namespace zuvi
