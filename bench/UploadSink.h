#pragma once

#include "sandbox/core/http/HttpServer.h"

#include <microhttpd.h>

#include <optional>
#include <string>

namespace zuvi::bench {

/// A loopback server that swallows bodies and answers with an id.
class UploadSink {
public:
  explicit UploadSink(const std::optional<sandbox::TlsCredentials>& identity = std::nullopt) {
    const unsigned flags =
        MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_AUTO | (identity ? unsigned(MHD_USE_TLS) : 0U);
    if (identity)
      daemon_ = MHD_start_daemon(flags, 0, nullptr, nullptr, answer, nullptr,
                                 MHD_OPTION_CONNECTION_MEMORY_LIMIT, size_t(1) << 20,
                                 MHD_OPTION_HTTPS_MEM_CERT, identity->certificate.c_str(),
                                 MHD_OPTION_HTTPS_MEM_KEY, identity->key.c_str(), MHD_OPTION_END);
    else
      daemon_ =
          MHD_start_daemon(flags, 0, nullptr, nullptr, answer, nullptr,
                           MHD_OPTION_CONNECTION_MEMORY_LIMIT, size_t(1) << 20, MHD_OPTION_END);
    const auto port = MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_BIND_PORT)->port;
    address_ = std::string(identity ? "https" : "http") + "://127.0.0.1:" + std::to_string(port);
  }
  ~UploadSink() { MHD_stop_daemon(daemon_); }
  UploadSink(const UploadSink&) = delete;

  const std::string& address() const { return address_; }

private:
  static MHD_Result answer(void*, MHD_Connection* connection, const char*, const char*, const char*,
                           const char*, size_t* size, void** state) {
    static int seen;
    if (!*state) { // the head alone
      *state = &seen;
      return MHD_YES;
    }
    if (*size > 0) {
      *size = 0;
      return MHD_YES;
    }
    static char body[] = "{\"id\":\"1\"}";
    MHD_Response* response =
        MHD_create_response_from_buffer(sizeof body - 1, body, MHD_RESPMEM_PERSISTENT);
    const MHD_Result queued = MHD_queue_response(connection, 200, response);
    MHD_destroy_response(response);
    return queued;
  }

  MHD_Daemon* daemon_ = nullptr;
  std::string address_;
};

} // namespace zuvi::bench
