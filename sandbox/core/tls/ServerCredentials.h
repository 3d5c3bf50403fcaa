#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/http/HttpServer.h"

#include <ctime>
#include <filesystem>

namespace zuvi::sandbox {

/// Key and certificate for the loopback names, from a folder. On the first call there it makes a
/// certificate authority (ca.pem, ca-key.pem) that a client must be told to trust; later calls use
/// it again. The server's certificate (server.pem, server-key.pem) is renewed when it nears its
/// end.
Result<TlsCredentials> serverCredentials(const std::filesystem::path& folder,
                                         std::time_t now = std::time(nullptr));

} // namespace zuvi::sandbox
