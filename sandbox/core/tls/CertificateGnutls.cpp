#include "sandbox/core/tls/CertificateGnutls.h"

#include <array>
#include <gnutls/crypto.h>
#include <netinet/in.h>
#include <string_view>

namespace zuvi::sandbox {
namespace {

constexpr std::time_t day = 24L * 3600;
constexpr std::time_t authorityDays = 3650;
// No longer: clients refuse server certificates that live for more than about 13 months.
constexpr std::time_t serverDays = 390;

/// The first failure of a row of calls; those behind it are not made.
class Steps {
public:
  template <typename Call> Steps& then(Call call) {
    if (code_ >= 0) code_ = call();
    return *this;
  }
  bool failed() const { return code_ < 0; }
  Error error() const { return {std::string("certificate: ") + gnutls_strerror(code_)}; }

private:
  int code_ = 0;
};

gnutls_datum_t datum(const std::string& text) {
  auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
  return {bytes, static_cast<unsigned>(text.size())};
}

KeyPair emptyPair() {
  gnutls_x509_crt_t certificate = nullptr;
  gnutls_x509_privkey_t key = nullptr;
  gnutls_x509_crt_init(&certificate);
  gnutls_x509_privkey_init(&key);
  KeyPair pair;
  pair.certificate.reset(certificate);
  pair.key.reset(key);
  return pair;
}

using KeyId = std::array<unsigned char, 20>;

int certificateKeyId(gnutls_x509_crt_t certificate, KeyId& id) {
  std::size_t size = id.size();
  return gnutls_x509_crt_get_key_id(certificate, 0, id.data(), &size);
}

int privateKeyId(gnutls_x509_privkey_t key, KeyId& id) {
  std::size_t size = id.size();
  return gnutls_x509_privkey_get_key_id(key, 0, id.data(), &size);
}

int setSerial(gnutls_x509_crt_t certificate) {
  std::array<unsigned char, 16> serial{};
  const int code = gnutls_rnd(GNUTLS_RND_NONCE, serial.data(), serial.size());
  if (code < 0) return code;
  // A serial number is positive.
  serial[0] = static_cast<unsigned char>((serial[0] & 0x7f) | 0x40);
  return gnutls_x509_crt_set_serial(certificate, serial.data(), serial.size());
}

int setName(gnutls_x509_crt_t certificate, std::string_view name) {
  return gnutls_x509_crt_set_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, name.data(),
                                       static_cast<unsigned>(name.size()));
}

/// What both kinds of certificate have in common: key, name, serial number, validity.
Steps begin(KeyPair& pair, std::string_view name, std::time_t now, std::time_t days) {
  auto* certificate = pair.certificate.get();
  const auto bits = GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1);
  KeyId id{};
  Steps steps;
  steps.then([&] { return gnutls_x509_privkey_generate(pair.key.get(), GNUTLS_PK_ECDSA, bits, 0); })
      .then([&] { return gnutls_x509_crt_set_version(certificate, 3); })
      .then([&] { return gnutls_x509_crt_set_key(certificate, pair.key.get()); })
      .then([&] { return setSerial(certificate); })
      .then([&] { return setName(certificate, name); })
      // From yesterday, for clients whose clock is behind.
      .then([&] { return gnutls_x509_crt_set_activation_time(certificate, now - day); })
      .then([&] { return gnutls_x509_crt_set_expiration_time(certificate, now + days * day); })
      .then([&] { return certificateKeyId(certificate, id); })
      .then([&] { return gnutls_x509_crt_set_subject_key_id(certificate, id.data(), id.size()); });
  return steps;
}

int setLoopbackNames(gnutls_x509_crt_t certificate) {
  static constexpr std::string_view host = "localhost";
  const in_addr_t four = htonl(INADDR_LOOPBACK);
  const in6_addr six = in6addr_loopback;
  const auto add = [&](gnutls_x509_subject_alt_name_t type, const void* data, std::size_t size) {
    return gnutls_x509_crt_set_subject_alt_name(certificate, type, data,
                                                static_cast<unsigned>(size), GNUTLS_FSAN_APPEND);
  };
  int code = add(GNUTLS_SAN_DNSNAME, host.data(), host.size());
  if (code >= 0) code = add(GNUTLS_SAN_IPADDRESS, &four, sizeof four);
  if (code >= 0) code = add(GNUTLS_SAN_IPADDRESS, &six, sizeof six);
  return code;
}

template <typename Export> Result<std::string> exportText(Export call) {
  gnutls_datum_t bytes{nullptr, 0};
  Steps steps;
  steps.then([&] { return call(&bytes); });
  if (steps.failed()) return steps.error();
  std::string text(reinterpret_cast<const char*>(bytes.data), bytes.size);
  gnutls_free(bytes.data);
  return text;
}

} // namespace

Result<KeyPair> readKeyPair(const std::string& keyPem, const std::string& certificatePem) {
  KeyPair pair = emptyPair();
  const auto key = datum(keyPem);
  const auto certificate = datum(certificatePem);
  KeyId ofKey{};
  KeyId ofCertificate{};
  Steps steps;
  steps.then([&] { return gnutls_x509_privkey_import(pair.key.get(), &key, GNUTLS_X509_FMT_PEM); })
      .then([&] {
        return gnutls_x509_crt_import(pair.certificate.get(), &certificate, GNUTLS_X509_FMT_PEM);
      })
      .then([&] { return privateKeyId(pair.key.get(), ofKey); })
      .then([&] { return certificateKeyId(pair.certificate.get(), ofCertificate); });
  if (steps.failed()) return steps.error();
  if (ofKey != ofCertificate) return Error{"certificate: the key is that of another one"};
  return pair;
}

Result<KeyPair> makeAuthority(std::time_t now) {
  KeyPair pair = emptyPair();
  auto* certificate = pair.certificate.get();
  const unsigned usage = GNUTLS_KEY_KEY_CERT_SIGN | GNUTLS_KEY_CRL_SIGN;
  Steps steps = begin(pair, "zuvi-sandbox local authority", now, authorityDays);
  steps.then([&] { return gnutls_x509_crt_set_basic_constraints(certificate, 1, 0); })
      .then([&] { return gnutls_x509_crt_set_key_usage(certificate, usage); })
      .then([&] {
        return gnutls_x509_crt_sign2(certificate, certificate, pair.key.get(), GNUTLS_DIG_SHA256,
                                     0);
      });
  if (steps.failed()) return steps.error();
  return pair;
}

Result<KeyPair> makeServerPair(const KeyPair& authority, std::time_t now) {
  KeyPair pair = emptyPair();
  auto* certificate = pair.certificate.get();
  KeyId issuer{};
  Steps steps = begin(pair, "localhost", now, serverDays);
  steps.then([&] { return gnutls_x509_crt_set_basic_constraints(certificate, 0, -1); })
      .then(
          [&] { return gnutls_x509_crt_set_key_usage(certificate, GNUTLS_KEY_DIGITAL_SIGNATURE); })
      .then([&] {
        return gnutls_x509_crt_set_key_purpose_oid(certificate, GNUTLS_KP_TLS_WWW_SERVER, 0);
      })
      .then([&] { return setLoopbackNames(certificate); })
      .then([&] { return certificateKeyId(authority.certificate.get(), issuer); })
      .then([&] {
        return gnutls_x509_crt_set_authority_key_id(certificate, issuer.data(), issuer.size());
      })
      .then([&] {
        return gnutls_x509_crt_sign2(certificate, authority.certificate.get(), authority.key.get(),
                                     GNUTLS_DIG_SHA256, 0);
      });
  if (steps.failed()) return steps.error();
  return pair;
}

bool isIssuedBy(const KeyPair& pair, const KeyPair& authority) {
  auto* issuer = authority.certificate.get();
  unsigned verdict = 0;
  return gnutls_x509_crt_verify(pair.certificate.get(), &issuer, 1,
                                GNUTLS_VERIFY_DISABLE_TIME_CHECKS, &verdict) >= 0 &&
         verdict == 0;
}

std::time_t endOf(const KeyPair& pair) {
  return gnutls_x509_crt_get_expiration_time(pair.certificate.get());
}

Result<std::string> keyText(const KeyPair& pair) {
  return exportText([&](gnutls_datum_t* bytes) {
    return gnutls_x509_privkey_export2_pkcs8(pair.key.get(), GNUTLS_X509_FMT_PEM, nullptr,
                                             GNUTLS_PKCS_PLAIN, bytes);
  });
}

Result<std::string> certificateText(const KeyPair& pair) {
  return exportText([&](gnutls_datum_t* bytes) {
    return gnutls_x509_crt_export2(pair.certificate.get(), GNUTLS_X509_FMT_PEM, bytes);
  });
}

} // namespace zuvi::sandbox
