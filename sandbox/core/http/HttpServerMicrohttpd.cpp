#include "sandbox/core/http/HttpServer.h"

#include "sandbox/core/http/LoopbackSocket.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <charconv>
#include <exception>
#include <fcntl.h>
#include <microhttpd.h>
#include <poll.h>
#include <unistd.h>

namespace zuvi::sandbox {

struct HttpServer::State {
  HttpOptions options;
  Handler handler;
  Admission admission;
  MHD_Daemon* daemon = nullptr;
  ListeningSocket socket;
  std::atomic<bool> stopping = false;
  std::atomic<bool> closeConnections = false;
};

namespace {

constexpr unsigned mostConnections = 64;
constexpr std::size_t longBody = 64 << 10; // bytes, from where on it waits on the disk
// Bytes of a refused request that are read all the same: a client that is still sending would find
// the connection broken before it reads why.
constexpr std::uint64_t mostRefused = 1 << 20;
// Large enough that a film does not arrive in crumbs.
constexpr std::size_t connectionMemory = 512 << 10;

struct Exchange {
  Request request;
  bool begun = false;
  bool tooLong = false;
  bool unstored = false;
  std::optional<Response> refusal;
};

/// The URI is taken here as it was sent: the library's own decoding would turn a plus sign into
/// a space.
void* beginExchange(void*, const char* uri, MHD_Connection*) {
  auto exchange = std::make_unique<Exchange>();
  const std::string_view text(uri);
  const auto mark = text.find('?');
  exchange->request.path = text.substr(0, mark);
  if (mark != std::string_view::npos) exchange->request.query = text.substr(mark + 1);
  return exchange.release();
}

void endExchange(void*, MHD_Connection*, void** context, MHD_RequestTerminationCode) {
  delete static_cast<Exchange*>(*context);
  *context = nullptr;
}

MHD_Result keepHeader(void* context, MHD_ValueKind, const char* name, const char* value) {
  std::string key(name);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  auto& headers = static_cast<Request*>(context)->headers;
  const auto [place, fresh] = headers.try_emplace(key, value == nullptr ? "" : value);
  if (!fresh) place->second += std::string(", ") + (value == nullptr ? "" : value);
  return MHD_YES;
}

bool peerLeft(MHD_Connection* connection, int milliseconds) {
  const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
  if (info == nullptr) return true;
  pollfd watched{info->connect_fd, POLLRDHUP, 0};
  return poll(&watched, 1, milliseconds) > 0 &&
         (watched.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

bool waitWhileOpen(MHD_Connection* connection, const std::atomic<bool>& stopping,
                   std::optional<std::chrono::milliseconds> duration) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds slice(50);
  // The library would otherwise end the connection as idle right behind the wait.
  MHD_set_connection_option(connection, MHD_CONNECTION_OPTION_TIMEOUT, 0U);
  const auto start = Clock::now();
  while (!stopping) {
    auto left = slice;
    if (duration) {
      const auto passed =
          std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
      if (passed >= *duration) return true;
      left = std::min(slice, *duration - passed);
    }
    if (peerLeft(connection, static_cast<int>(left.count()))) return false;
  }
  return false;
}

struct HalfBody {
  std::string bytes;
};

ssize_t readHalf(void* context, std::uint64_t position, char* buffer, std::size_t room) {
  const std::string& bytes = static_cast<HalfBody*>(context)->bytes;
  if (position >= bytes.size()) return MHD_CONTENT_READER_END_WITH_ERROR;
  const auto count = std::min<std::size_t>(room, bytes.size() - position);
  return static_cast<ssize_t>(bytes.copy(buffer, count, position));
}

MHD_Response* makeBody(const Response& response) {
  if (response.file) {
    const int descriptor = open(response.file->path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    return MHD_create_response_from_fd_at_offset64(response.file->length, descriptor,
                                                   response.file->offset);
  }
  const std::string& body = response.body;
  if (response.delivery == Delivery::cutInBody) {
    auto* half = new HalfBody{body.substr(0, body.size() / 2)};
    return MHD_create_response_from_callback(body.size(), 4096, readHalf, half, [](void* context) {
      delete static_cast<HalfBody*>(context);
    });
  }
  return MHD_create_response_from_buffer(body.size(), const_cast<char*>(body.data()),
                                         MHD_RESPMEM_MUST_COPY);
}

MHD_Result send(MHD_Connection* connection, const Response& response, bool close) {
  if (response.delivery == Delivery::dropped) return MHD_NO;
  MHD_Response* answer = makeBody(response);
  if (answer == nullptr) return MHD_NO;
  if (!response.contentType.empty())
    MHD_add_response_header(answer, "Content-Type", response.contentType.c_str());
  // What arrives here is personal: no cache keeps it, no page of another origin embeds it.
  MHD_add_response_header(answer, "Cache-Control", "no-store");
  MHD_add_response_header(answer, "X-Content-Type-Options", "nosniff");
  MHD_add_response_header(answer, "Cross-Origin-Resource-Policy", "same-origin");
  MHD_add_response_header(answer, "Referrer-Policy", "no-referrer");
  if (close) MHD_add_response_header(answer, "Connection", "close");
  for (const auto& [name, value] : response.headers)
    MHD_add_response_header(answer, name.c_str(), value.c_str());
  const auto result =
      MHD_queue_response(connection, static_cast<unsigned>(response.status), answer);
  MHD_destroy_response(answer);
  return result;
}

std::optional<std::uint64_t> declaredLength(const Request& request) {
  const auto text = request.header("content-length");
  std::uint64_t length = 0;
  if (!text) return std::nullopt;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), length);
  if (error != std::errc()) return std::nullopt;
  return length;
}

Response tooLongResponse(std::uint64_t limit) {
  return messageResponse(413, "the body is longer than " + std::to_string(limit) + " bytes");
}

void takeBytes(Exchange& exchange, std::string_view bytes, const HttpOptions& options) {
  Request& request = exchange.request;
  request.bodySize += bytes.size();
  exchange.tooLong = request.bodySize > options.bodyLimit;
  if (exchange.tooLong || exchange.unstored || exchange.refusal) {
    std::string().swap(request.body);
    request.bodyFile.reset();
    return;
  }
  if (!request.bodyFile && request.bodySize > longBody && !options.bodyFolder.empty()) {
    request.bodyFile = BodyFile::make(options.bodyFolder);
    exchange.unstored = !request.bodyFile || !request.bodyFile->add(request.body);
    std::string().swap(request.body);
  }
  if (request.bodyFile)
    exchange.unstored = exchange.unstored || !request.bodyFile->add(bytes);
  else
    request.body += bytes;
}

template <typename State>
MHD_Result access(State& server, MHD_Connection* connection, const char* method, const char* bytes,
                  std::size_t* size, Exchange& exchange) {
  Request& request = exchange.request;
  const std::uint64_t limit = server.options.bodyLimit;
  if (!exchange.begun) {
    exchange.begun = true;
    request.method = method;
    MHD_get_connection_values(connection, MHD_HEADER_KIND, keepHeader, &request);
    const auto length = declaredLength(request).value_or(0);
    if (length > limit) return send(connection, tooLongResponse(limit), true);
    if (server.admission) exchange.refusal = server.admission(request);
    if (exchange.refusal && length > mostRefused) return send(connection, *exchange.refusal, true);
    return MHD_YES;
  }
  if (*size > 0) {
    takeBytes(exchange, {bytes, *size}, server.options);
    *size = 0;
    return MHD_YES;
  }
  if (exchange.refusal) return send(connection, *exchange.refusal, server.closeConnections);
  if (exchange.tooLong) return send(connection, tooLongResponse(limit), true);
  if (exchange.unstored)
    return send(connection, messageResponse(507, "the disk cannot take the body"), true);
  request.wait = [&server, connection](std::optional<std::chrono::milliseconds> duration) {
    return waitWhileOpen(connection, server.stopping, duration);
  };
  return send(connection, server.handler(request), server.closeConnections);
}

/// Nothing may be thrown through the library, which is C.
template <typename State>
MHD_Result onAccess(void* context, MHD_Connection* connection, const char*, const char* method,
                    const char*, const char* bytes, std::size_t* size, void** exchange) {
  if (*exchange == nullptr) return MHD_NO;
  try {
    return access(*static_cast<State*>(context), connection, method, bytes, size,
                  *static_cast<Exchange*>(*exchange));
  } catch (const std::exception&) {
    return MHD_NO;
  }
}

} // namespace

HttpServer::HttpServer(std::unique_ptr<State> state) : state_(std::move(state)) {}

HttpServer::~HttpServer() {
  stop();
}

Result<std::unique_ptr<HttpServer>> HttpServer::listen(HttpOptions options) {
  auto socket = listenOnLoopback(options.port);
  if (!socket) return socket.error();
  auto state = std::make_unique<State>();
  state->closeConnections = options.closeConnections;
  state->options = std::move(options);
  state->socket = *socket;
  return std::unique_ptr<HttpServer>(new HttpServer(std::move(state)));
}

Result<Done> HttpServer::serve(Handler handler, Admission admission) {
  State& state = *state_;
  state.handler = std::move(handler);
  state.admission = std::move(admission);
  unsigned flags = MHD_USE_THREAD_PER_CONNECTION | MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_POLL;
  std::vector<MHD_OptionItem> tls;
  if (state.options.tls) {
    flags |= MHD_USE_TLS;
    tls.push_back({MHD_OPTION_HTTPS_MEM_KEY, 0, state.options.tls->key.data()});
    tls.push_back({MHD_OPTION_HTTPS_MEM_CERT, 0, state.options.tls->certificate.data()});
  }
  tls.push_back({MHD_OPTION_END, 0, nullptr});
  state.daemon = MHD_start_daemon(flags, 0, nullptr, nullptr, &onAccess<State>, &state,     //
                                  MHD_OPTION_LISTEN_SOCKET, state.socket.descriptor,        //
                                  MHD_OPTION_URI_LOG_CALLBACK, &beginExchange, nullptr,     //
                                  MHD_OPTION_NOTIFY_COMPLETED, &endExchange, nullptr,       //
                                  MHD_OPTION_CONNECTION_TIMEOUT, state.options.idleSeconds, //
                                  MHD_OPTION_CONNECTION_LIMIT, mostConnections,             //
                                  MHD_OPTION_CONNECTION_MEMORY_LIMIT, connectionMemory,     //
                                  MHD_OPTION_ARRAY, tls.data(), MHD_OPTION_END);
  if (state.daemon == nullptr) return Error{"cannot start the HTTP server"};
  // The library closes it from here on.
  state.socket.descriptor = -1;
  return Done{};
}

std::uint16_t HttpServer::port() const {
  return state_->socket.port;
}

void HttpServer::closeConnections(bool close) {
  state_->closeConnections = close;
}

void HttpServer::stop() {
  state_->stopping = true;
  if (state_->daemon != nullptr) MHD_stop_daemon(state_->daemon);
  state_->daemon = nullptr;
  if (state_->socket.descriptor >= 0) close(state_->socket.descriptor);
  state_->socket.descriptor = -1;
}

} // namespace zuvi::sandbox
