#include "platform/WebKitGtk/TrustGtk.h"

#include <memory>
#include <vector>

#include <gnutls/x509.h>

namespace zuvi {

namespace {

/// RSA with 2048 bits and what is as strong.
constexpr auto strength = GNUTLS_SEC_PARAM_MEDIUM;
constexpr unsigned profile = GNUTLS_PROFILE_TO_VFLAGS(GNUTLS_PROFILE_MEDIUM);

struct CertificateFree {
  void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};
using CertificatePointer = std::unique_ptr<gnutls_x509_crt_int, CertificateFree>;

gnutls_datum_t datum(const std::string& text) {
  auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
  return {bytes, unsigned(text.size())};
}

/// The certificate first, then who issued it, as far as the server has sent them.
std::vector<CertificatePointer> chainOf(GTlsCertificate* certificate) {
  std::vector<CertificatePointer> chain;
  for (; certificate; certificate = g_tls_certificate_get_issuer(certificate)) {
    GByteArray* bytes = nullptr;
    g_object_get(certificate, "certificate", &bytes, nullptr);
    if (!bytes) break;
    const gnutls_datum_t der{bytes->data, bytes->len};
    gnutls_x509_crt_t made = nullptr;
    gnutls_x509_crt_init(&made);
    chain.emplace_back(made);
    const bool read = gnutls_x509_crt_import(made, &der, GNUTLS_X509_FMT_DER) >= 0;
    g_byte_array_unref(bytes);
    if (!read) return {};
  }
  return chain;
}

} // namespace

bool isTrusted(GTlsCertificate* certificate, const std::string& host,
               const std::string& authorities) {
  const auto chain = chainOf(certificate);
  if (chain.empty() || authorities.empty()) return false;
  std::vector<gnutls_x509_crt_t> certificates;
  certificates.reserve(chain.size());
  for (const auto& link : chain)
    certificates.push_back(link.get());
  gnutls_x509_trust_list_t trust = nullptr;
  gnutls_x509_trust_list_init(&trust, 0);
  const gnutls_datum_t text = datum(authorities);
  gnutls_x509_trust_list_add_trust_mem(trust, &text, nullptr, GNUTLS_X509_FMT_PEM, 0, 0);
  std::string purpose = GNUTLS_KP_TLS_WWW_SERVER;
  std::string name = host;
  gnutls_typed_vdata_st wanted[] = {
      {GNUTLS_DT_DNS_HOSTNAME, reinterpret_cast<unsigned char*>(name.data()), 0},
      {GNUTLS_DT_KEY_PURPOSE_OID, reinterpret_cast<unsigned char*>(purpose.data()), 0}};
  unsigned problems = GNUTLS_CERT_INVALID;
  const int answered =
      gnutls_x509_trust_list_verify_crt2(trust, certificates.data(), unsigned(certificates.size()),
                                         wanted, 2, profile, &problems, nullptr);
  gnutls_x509_trust_list_deinit(trust, 1);
  return answered >= 0 && problems == 0;
}

bool isFitForServer(GTlsCertificate* certificate) {
  const auto chain = chainOf(certificate);
  if (chain.empty()) return false;
  unsigned bits = 0;
  const int algorithm = gnutls_x509_crt_get_pk_algorithm(chain[0].get(), &bits);
  return algorithm >= 0 &&
         gnutls_pk_bits_to_sec_param(gnutls_pk_algorithm_t(algorithm), bits) >= strength &&
         gnutls_x509_crt_check_key_purpose(chain[0].get(), GNUTLS_KP_TLS_WWW_SERVER, 0) != 0;
}

} // namespace zuvi
