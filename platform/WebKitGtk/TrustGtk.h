#pragma once

#include <string>

#include <gio/gio.h>

namespace zuvi {

/// Whether one of `authorities` (certificates in PEM) vouches for the certificate and all else
/// about it is right: host name, dates, purpose, and the strength of each key and signature.
bool isTrusted(GTlsCertificate* certificate, const std::string& host,
               const std::string& authorities);

/// Whether a certificate that the system's authorities vouch for is one of a server, with a key
/// that is strong enough.
bool isFitForServer(GTlsCertificate* certificate);

} // namespace zuvi
