#include "sandbox/core/Server.h"

#include "sandbox/core/FailedAnswer.h"
#include "sandbox/core/File.h"
#include "sandbox/core/api/Api.h"
#include "sandbox/core/api/Tracking.h"
#include "sandbox/core/chat/ChatRoutes.h"
#include "sandbox/core/http/HttpServer.h"
#include "sandbox/core/page/PageRoutes.h"
#include "sandbox/core/store/Store.h"
#include "sandbox/core/text/Json.h"
#include "sandbox/core/tls/ServerCredentials.h"

#include <deque>
#include <mutex>

namespace zuvi::sandbox {
namespace {

constexpr std::size_t keptRequests = 1000;

/// Only names of this machine: a page of the web that points its own name here reads nothing.
bool isLoopbackHost(std::string_view host) {
  const auto colon = host.rfind(':');
  if (colon != std::string_view::npos && !host.ends_with(']')) host = host.substr(0, colon);
  return host == "127.0.0.1" || host == "localhost" || host == "[::1]";
}

/// Pages of this server alone may have scripts ask: another server of this machine is not it.
bool isForeignOrigin(const Request& request, std::string_view host) {
  const auto origin = request.header("origin");
  if (!origin) return false;
  const std::string end = "://" + std::string(host);
  return *origin != "http" + end && *origin != "https" + end;
}

std::string printable(std::string_view text) {
  std::string plain;
  for (const char c : text)
    plain.push_back(c > ' ' && c < '\x7f' ? c : '?');
  return plain;
}

Response unknownPath(const std::string& allowed) {
  if (allowed.empty()) return messageResponse(404, "there is nothing under this path");
  Response response = messageResponse(405, "this path is not for that method");
  response.headers.emplace_back("Allow", allowed);
  return response;
}

std::string faultOf(const Response& response) {
  if (response.status < 400) return {};
  return stringMember(parseJson(response.body).value_or(Json()), "message").value_or("");
}

} // namespace

struct Server::State {
  ServerOptions options;
  std::unique_ptr<Store> store;
  std::unique_ptr<Api> api;
  Router router;
  ChatRoom chatRoom;
  FailPlan plan;
  std::string address;
  mutable std::mutex mutex; ///< guards the requests and the log
  std::deque<RequestRecord> requests;
  std::unique_ptr<HttpServer> http; ///< last, so that it ends before what its handler uses

  std::optional<Response> refusal(const Request& request) const {
    const auto host = request.header("host").value_or("");
    if (!isLoopbackHost(host)) return messageResponse(403, "Host is no loopback name");
    if (isForeignOrigin(request, host)) return messageResponse(403, "Origin is another server's");
    const auto match = router.match(request.method, request.path);
    if (match.route == nullptr) return unknownPath(match.allowed);
    return match.route->admission ? match.route->admission(request) : std::nullopt;
  }

  /// By the request's head, so that no body is taken in vain.
  std::optional<Response> admit(const Request& request) {
    auto refused = refusal(request);
    if (refused) {
      const auto match = router.match(request.method, request.path);
      record(request, *refused, match.route == nullptr ? "" : match.route->operation);
    }
    return refused;
  }

  Response answer(const Request& request, std::string& operation) {
    const auto match = router.match(request.method, request.path);
    operation = match.route->operation;
    const auto perform = [&] { return match.route->handler(request, match.arguments); };
    if (operation.empty()) return perform();
    return answerUnderRules(plan.nextCall(operation), request, perform);
  }

  void record(const Request& request, const Response& response, const std::string& operation) {
    using namespace std::chrono;
    const bool dropped = response.delivery == Delivery::dropped;
    RequestRecord record{
        request.method,   request.path, operation, request.bodySize, dropped ? 0 : response.status,
        faultOf(response)};
    const auto passed = duration_cast<milliseconds>(steady_clock::now() - request.started);
    const std::lock_guard lock(mutex);
    if (options.log)
      options.log(printable(record.method) + " " + printable(record.path) + " " +
                  std::to_string(record.bodySize) + " bytes, " +
                  (dropped ? "dropped" : std::to_string(record.status)) + ", " +
                  std::to_string(passed.count()) + " ms");
    if (requests.size() == keptRequests) requests.pop_front();
    requests.push_back(std::move(record));
  }

  Response handle(const Request& request) {
    std::string operation;
    Response response = answer(request, operation);
    record(request, response, operation);
    return response;
  }
};

Server::Server(std::unique_ptr<State> state) : state_(std::move(state)) {}

Server::~Server() {
  stop();
}

Result<std::unique_ptr<Server>> Server::start(ServerOptions options) {
  auto store = Store::open(options.dataFolder, OpenMode::createIfAbsent);
  if (!store) return store.error();
  HttpOptions http;
  http.port = options.port;
  http.bodyLimit = options.bodyLimit;
  http.bodyFolder = options.dataFolder / "files";
  if (!options.tlsFolder.empty()) {
    auto credentials = serverCredentials(options.tlsFolder);
    if (!credentials) return credentials.error();
    http.tls = std::move(*credentials);
  }

  auto state = std::make_unique<State>();
  state->store = std::move(*store);
  state->plan.reset(std::move(options.failRules));
  http.closeConnections = state->plan.dropsConnections();
  State& shared = *state;
  state->api = std::make_unique<Api>(*state->store, std::move(options.merchants),
                                     [&shared] { return shared.address; });
  state->api->addRoutes(state->router);
  addTrackingRoutes(state->router, *state->store);
  addChatRoutes(state->router, state->chatRoom, [&shared] { return shared.address; });
  addPageRoutes(state->router, *state->store);
  state->options = std::move(options);

  auto listening = HttpServer::listen(std::move(http));
  if (!listening) return listening.error();
  state->http = std::move(*listening);
  state->address = (state->options.tlsFolder.empty() ? "http" : "https") +
                   std::string("://127.0.0.1:") + std::to_string(state->http->port());
  if (auto served =
          state->http->serve([&shared](const Request& request) { return shared.handle(request); },
                             [&shared](const Request& request) { return shared.admit(request); });
      !served)
    return served.error();
  return std::unique_ptr<Server>(new Server(std::move(state)));
}

void Server::stop() {
  state_->http->stop();
}

std::uint16_t Server::port() const {
  return state_->http->port();
}

std::string Server::address() const {
  return state_->address;
}

std::filesystem::path Server::certificateAuthority() const {
  const auto& folder = state_->options.tlsFolder;
  return folder.empty() ? folder : folder / "ca.pem";
}

void Server::setFailRules(std::vector<FailRule> rules) {
  state_->plan.reset(std::move(rules));
  state_->http->closeConnections(state_->plan.dropsConnections());
}

Result<Arrivals> Server::arrivals() const {
  return state_->store->arrivals();
}

Result<std::string> Server::file(const StoredFile& file) const {
  const auto path = state_->store->file(file.name);
  if (!path) return Error{"there is no such file"};
  return readFile(*path);
}

std::vector<RequestRecord> Server::requests() const {
  const std::lock_guard lock(state_->mutex);
  return {state_->requests.begin(), state_->requests.end()};
}

} // namespace zuvi::sandbox
