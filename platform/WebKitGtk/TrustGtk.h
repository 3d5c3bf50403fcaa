#pragma once

#include <string>

#include <gio/gio.h>

namespace zuvi {

/// Whether one of `authorities` (certificates in PEM) vouches for the certificate and all else
/// about it is right: host name and dates.
bool isTrusted(GTlsCertificate* certificate, const std::string& host,
               const std::string& authorities);

} // namespace zuvi
