#pragma once

#include "sandbox/core/Result.h"

#include <ctime>
#include <gnutls/x509.h>
#include <memory>
#include <string>
#include <type_traits>

namespace zuvi::sandbox {

using Certificate =
    std::unique_ptr<std::remove_pointer_t<gnutls_x509_crt_t>, decltype(&gnutls_x509_crt_deinit)>;
using PrivateKey = std::unique_ptr<std::remove_pointer_t<gnutls_x509_privkey_t>,
                                   decltype(&gnutls_x509_privkey_deinit)>;

/// A certificate and the key that belongs to it; never one of another.
struct KeyPair {
  PrivateKey key{nullptr, gnutls_x509_privkey_deinit};
  Certificate certificate{nullptr, gnutls_x509_crt_deinit};
};

Result<KeyPair> readKeyPair(const std::string& keyPem, const std::string& certificatePem);
Result<KeyPair> makeAuthority(std::time_t now);
/// For 127.0.0.1, ::1 and localhost.
Result<KeyPair> makeServerPair(const KeyPair& authority, std::time_t now);

bool isIssuedBy(const KeyPair& pair, const KeyPair& authority);
std::time_t endOf(const KeyPair& pair);

Result<std::string> keyText(const KeyPair& pair);
Result<std::string> certificateText(const KeyPair& pair);

} // namespace zuvi::sandbox
