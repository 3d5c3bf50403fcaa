#include "tests/support/Certificates.h"

#include <ctime>
#include <stdexcept>
#include <string_view>

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

namespace zuvi::test {

namespace {

constexpr long day = 24L * 60 * 60;

void check(int result) {
  if (result < 0) throw std::runtime_error(gnutls_strerror(result));
}

struct Key {
  gnutls_x509_privkey_t handle = nullptr;
  Key() {
    check(gnutls_x509_privkey_init(&handle));
    check(gnutls_x509_privkey_generate(handle, GNUTLS_PK_ECDSA,
                                       GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0));
  }
  Key(const Key&) = delete;
  ~Key() { gnutls_x509_privkey_deinit(handle); }
};

unsigned char nextNumber() {
  static unsigned char number = 0;
  return ++number;
}

struct Certificate {
  gnutls_x509_crt_t handle = nullptr;
  Certificate(const char* name, const Key& key, long from, long to) {
    const unsigned char serial = nextNumber();
    check(gnutls_x509_crt_init(&handle));
    check(gnutls_x509_crt_set_version(handle, 3));
    check(gnutls_x509_crt_set_serial(handle, &serial, 1));
    check(gnutls_x509_crt_set_dn(handle, name, nullptr));
    check(gnutls_x509_crt_set_key(handle, key.handle));
    check(gnutls_x509_crt_set_activation_time(handle, std::time(nullptr) + from));
    check(gnutls_x509_crt_set_expiration_time(handle, std::time(nullptr) + to));
  }
  Certificate(const Certificate&) = delete;
  ~Certificate() { gnutls_x509_crt_deinit(handle); }

  void addName(gnutls_x509_subject_alt_name_t type, std::string_view name) const {
    check(gnutls_x509_crt_set_subject_alt_name(
        handle, type, name.data(), static_cast<unsigned>(name.size()), GNUTLS_FSAN_APPEND));
  }
};

template <class Export> std::string pem(Export exportTo) {
  gnutls_datum_t text = {};
  check(exportTo(&text));
  std::string result(reinterpret_cast<const char*>(text.data), text.size);
  gnutls_free(text.data);
  return result;
}

std::string pem(const Certificate& certificate) {
  return pem([&](gnutls_datum_t* text) {
    return gnutls_x509_crt_export2(certificate.handle, GNUTLS_X509_FMT_PEM, text);
  });
}

std::string pem(const Key& key) {
  return pem([&](gnutls_datum_t* text) {
    return gnutls_x509_privkey_export2(key.handle, GNUTLS_X509_FMT_PEM, text);
  });
}

void sign(const Certificate& certificate, const Certificate& issuer, const Key& key) {
  check(gnutls_x509_crt_sign2(certificate.handle, issuer.handle, key.handle, GNUTLS_DIG_SHA256, 0));
}

} // namespace

struct Authority::Keys {
  Key key;
  Certificate certificate{("CN=Test Authority " + std::to_string(nextNumber())).c_str(), key,
                          -10 * day, 10 * day};

  Identity issue(bool local, long from, long to) const {
    const Key own;
    const Certificate issued("CN=Test Server", own, from, to);
    if (local) {
      issued.addName(GNUTLS_SAN_DNSNAME, "localhost");
      issued.addName(GNUTLS_SAN_IPADDRESS, {"\x7f\0\0\1", 4});
    } else {
      issued.addName(GNUTLS_SAN_DNSNAME, "elsewhere.invalid");
    }
    sign(issued, certificate, key);
    return {pem(issued), pem(own)};
  }
};

Authority::Authority() : keys_(std::make_unique<Keys>()) {
  const auto& own = keys_->certificate;
  check(gnutls_x509_crt_set_basic_constraints(own.handle, 1, -1));
  check(gnutls_x509_crt_set_key_usage(own.handle, GNUTLS_KEY_KEY_CERT_SIGN));
  sign(own, own, keys_->key);
  certificate_ = pem(own);
}

Authority::~Authority() = default;

Identity Authority::good() const {
  return keys_->issue(true, -day, day);
}
Identity Authority::forAnotherHost() const {
  return keys_->issue(false, -day, day);
}
Identity Authority::expired() const {
  return keys_->issue(true, -3 * day, -2 * day);
}

} // namespace zuvi::test
