#include "tests/support/LoopbackServer.h"

#include <algorithm>
#include <cctype>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <stdexcept>

#include <arpa/inet.h>
#include <microhttpd.h>

namespace zuvi::test {

namespace {

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// A body that is given out in parts or breaks off.
struct Source {
  std::string bytes;
  std::size_t end;
  std::function<std::string()> nextPart;

  static ssize_t read(void* self, std::uint64_t position, char* buffer, std::size_t room) {
    auto& source = *static_cast<Source*>(self);
    if (source.nextPart) {
      if (source.bytes.empty()) source.bytes = source.nextPart();
      if (source.bytes.empty()) return MHD_CONTENT_READER_END_OF_STREAM;
      const std::size_t count = source.bytes.copy(buffer, room);
      source.bytes.erase(0, count);
      return static_cast<ssize_t>(count);
    }
    if (position >= source.end) return MHD_CONTENT_READER_END_WITH_ERROR;
    return static_cast<ssize_t>(
        source.bytes.copy(buffer, std::min<std::size_t>(room, source.end - position), position));
  }
  static void free(void* self) { delete static_cast<Source*>(self); }
};

MHD_Response* makeResponse(Reply& reply) {
  const bool cut = reply.mode == Reply::Mode::CutBody;
  MHD_Response* response = nullptr;
  if (cut || reply.nextPart) {
    const std::uint64_t size = cut ? reply.body.size() : MHD_SIZE_UNKNOWN;
    auto* source = new Source{cut ? reply.body : "", reply.body.size() / 2, reply.nextPart};
    response = MHD_create_response_from_callback(size, 4096, &Source::read, source, &Source::free);
  } else {
    response = MHD_create_response_from_buffer(reply.body.size(), reply.body.data(),
                                               MHD_RESPMEM_MUST_COPY);
  }
  for (const auto& [name, value] : reply.headers)
    MHD_add_response_header(response, name.c_str(), value.c_str());
  return response;
}

} // namespace

struct LoopbackServer::Daemon {
  Handler handler;
  MHD_Daemon* daemon = nullptr;
  bool secure = false;
  mutable std::mutex mutex;
  std::condition_variable ended;
  bool ending = false;
  int connections = 0;
  std::vector<Request> requests;

  // One request on its way in; made when its first line has come.
  static void* begin(void*, const char* uri, MHD_Connection*) {
    auto* request = new Request;
    const std::string text = uri;
    const auto mark = text.find('?');
    request->path = text.substr(0, mark);
    if (mark != std::string::npos) request->query = text.substr(mark + 1);
    return request;
  }

  static void end(void*, MHD_Connection*, void** context, MHD_RequestTerminationCode) {
    delete static_cast<Request*>(*context);
    *context = nullptr;
  }

  static void notify(void* self, MHD_Connection*, void**, MHD_ConnectionNotificationCode code) {
    auto& daemon = *static_cast<Daemon*>(self);
    const std::lock_guard lock(daemon.mutex);
    if (code == MHD_CONNECTION_NOTIFY_STARTED) ++daemon.connections;
  }

  static MHD_Result addHeader(void* request, MHD_ValueKind, const char* name, const char* value) {
    static_cast<Request*>(request)->headers[lowerCase(name)] = value ? value : "";
    return MHD_YES;
  }

  static MHD_Result receive(void* self, MHD_Connection* connection, const char*, const char* method,
                            const char*, const char* bytes, std::size_t* size, void** context) {
    auto& request = *static_cast<Request*>(*context);
    if (request.method.empty()) { // the first of several calls; the body comes later
      request.method = method;
      MHD_get_connection_values(connection, MHD_HEADER_KIND, &addHeader, &request);
      return MHD_YES;
    }
    if (*size > 0) {
      request.body.append(bytes, *size);
      *size = 0;
      return MHD_YES;
    }
    return static_cast<Daemon*>(self)->answer(connection, request);
  }

  MHD_Result answer(MHD_Connection* connection, const Request& request) {
    {
      const std::lock_guard lock(mutex);
      requests.push_back(request);
    }
    Reply reply = handler(request);
    if (reply.mode == Reply::Mode::NeverAnswer) {
      std::unique_lock lock(mutex);
      ended.wait(lock, [this] { return ending; });
    }
    if (reply.mode == Reply::Mode::NeverAnswer || reply.mode == Reply::Mode::DropConnection)
      return MHD_NO;
    MHD_Response* response = makeResponse(reply);
    const auto result =
        MHD_queue_response(connection, static_cast<unsigned>(reply.status), response);
    MHD_destroy_response(response);
    return result;
  }
};

LoopbackServer::LoopbackServer(Handler handler, const std::optional<Identity>& identity)
    : daemon_(std::make_unique<Daemon>()) {
  daemon_->handler = std::move(handler);
  daemon_->secure = identity.has_value();
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  std::vector<MHD_OptionItem> secrets;
  if (identity) {
    secrets.push_back(
        {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(identity->certificate.c_str())});
    secrets.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(identity->key.c_str())});
  }
  secrets.push_back({MHD_OPTION_END, 0, nullptr});
  const unsigned flags = MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION |
                         MHD_USE_POLL | (identity ? unsigned{MHD_USE_TLS} : 0U);
  daemon_->daemon = MHD_start_daemon(
      flags, 0, nullptr, nullptr, &Daemon::receive, daemon_.get(), MHD_OPTION_SOCK_ADDR, &address,
      MHD_OPTION_URI_LOG_CALLBACK, &Daemon::begin, nullptr, MHD_OPTION_NOTIFY_COMPLETED,
      &Daemon::end, nullptr, MHD_OPTION_NOTIFY_CONNECTION, &Daemon::notify, daemon_.get(),
      MHD_OPTION_CONNECTION_MEMORY_LIMIT, std::size_t{256} << 10, MHD_OPTION_ARRAY, secrets.data(),
      MHD_OPTION_END);
  if (!daemon_->daemon) throw std::runtime_error("the loopback server does not start");
}

LoopbackServer::~LoopbackServer() {
  {
    const std::lock_guard lock(daemon_->mutex);
    daemon_->ending = true;
  }
  daemon_->ended.notify_all();
  MHD_stop_daemon(daemon_->daemon);
}

std::uint16_t LoopbackServer::port() const {
  return MHD_get_daemon_info(daemon_->daemon, MHD_DAEMON_INFO_BIND_PORT)->port;
}

std::string LoopbackServer::url(const std::string& path, const std::string& host) const {
  return (daemon_->secure ? "https://" : "http://") + host + ':' + std::to_string(port()) + path;
}

std::vector<Request> LoopbackServer::requests() const {
  const std::lock_guard lock(daemon_->mutex);
  return daemon_->requests;
}

int LoopbackServer::connectionCount() const {
  const std::lock_guard lock(daemon_->mutex);
  return daemon_->connections;
}

} // namespace zuvi::test
