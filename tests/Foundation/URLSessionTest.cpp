#include "platform/Foundation/URLSession.h"
#include "sandbox/core/http/LoopbackSocket.h"
#include "testing/backend/SessionFixture.h"

#include <latch>

#include <gio/gio.h>

#include <sys/socket.h>
#include <unistd.h>

namespace zuvi {
namespace {

using test::LoopbackServer;
using test::Reply;
using test::Request;
using Mode = Reply::Mode;

class URLSessionTest : public SessionFixture {
protected:
  std::latch arrived{1}; ///< what waits for an answer that never comes
  const LoopbackServer patient{[this](const Request& request) {
    if (request.path != "/wait") return Reply{};
    arrived.count_down();
    return Reply{200, {}, "", Mode::NeverAnswer};
  }};
};

Reply echo(const Request& request) {
  return {200, {{"X-Answer", "one"}, {"x-answer", "two"}}, request.body};
}

TEST_F(URLSessionTest, CarriesMethodHeadersQueryAndBody) {
  std::atomic<int> connections = 0;
  const LoopbackServer server([&](const Request& request) {
    static thread_local bool known = false; // each connection has a thread
    if (!std::exchange(known, true)) ++connections;
    return echo(request);
  });
  for (const char* method : {"POST", "PUT", "PATCH", "DELETE"}) {
    auto request = to(server.url("/a//b/../c%20d?x=%0D%0A&y=é"));
    request.httpMethod = method;
    request.allHTTPHeaderFields = {
        {"Content-Type", "application/json"}, {"X-Empty", ""}, {"Content-Length", "3"}};
    request.httpBody = HTTPBody{Data(std::string("{\"a")), Data(), Data(std::string("\":\0}", 4))};
    const auto outcome = send(request);
    ASSERT_TRUE(outcome.data) << outcome.text();
    EXPECT_EQ(outcome.data->string(), std::string("{\"a\":\0}", 7));
    EXPECT_EQ(outcome.response->statusCode, 200);
    EXPECT_EQ(outcome.response->headers.at("x-answer"), "one, two");
    EXPECT_NE(outcome.thread, std::this_thread::get_id());
    const auto seen = server.requests().back();
    EXPECT_EQ(seen.method, method);
    EXPECT_EQ(seen.path, "/a//b/../c%20d");
    EXPECT_EQ(seen.query, "x=%0D%0A&y=%c3%a9");
    EXPECT_EQ(seen.headers.at("x-empty"), "");
  }
  EXPECT_EQ(connections, 1); // kept
}

TEST_F(URLSessionTest, NoHeaderCanBeInjected) {
  const LoopbackServer server(echo);
  using Fields = std::map<std::string, std::string>;
  const std::string evil = "\r\nX-Evil: 1";
  for (const Fields& fields : {Fields{{"A", "x" + evil}}, Fields{{"B", "x\nX-Evil: 1"}},
                               Fields{{"C", std::string("x\0y", 3)}}, Fields{{"D" + evil, "x"}}}) {
    auto request = to(server.url("/"));
    request.allHTTPHeaderFields = fields;
    EXPECT_NE(send(request).code(), 0) << fields.begin()->first;
  }
  EXPECT_EQ(send(to("http:///path")).code(), NSURLErrorBadURL);
  auto request = to(server.url("/"));
  request.httpMethod = "GET / HTTP/1.1" + evil + "\r\n\r\nGET";
  EXPECT_NE(send(request).code(), 0);
  EXPECT_TRUE(server.requests().empty());
}

std::string gzipped(const std::string& bytes) {
  const std::unique_ptr<GZlibCompressor, decltype(&g_object_unref)> compressor(
      g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, 9), g_object_unref);
  std::string room(bytes.size() + 100, '\0');
  gsize read = 0, written = 0;
  g_converter_convert(G_CONVERTER(compressor.get()), bytes.data(), bytes.size(), room.data(),
                      room.size(), G_CONVERTER_INPUT_AT_END, &read, &written, nullptr);
  return room.substr(0, written);
}

TEST_F(URLSessionTest, AnswersAreBoundedUncompressed) {
  const std::string most(1000, 'a'), tooMuch(1001, 'a'), kilobytes(90 << 10, 'a');
  const std::map<std::string, std::string> zipped{{"Content-Encoding", "gzip"}},
      moved{{"Location", "/"}}, longHead{{"A", kilobytes}, {"B", kilobytes}, {"C", kilobytes}};
  const std::pair<Reply, bool> rows[] = {{{200, {}, most}, true},
                                         {{200, {}, tooMuch}, false},
                                         {{200, zipped, gzipped(most)}, true},
                                         {{200, zipped, gzipped(std::string(1 << 20, 'a'))}, false},
                                         {{302, moved, tooMuch}, false},
                                         {{200, longHead, most}, false}};
  for (const auto& [reply, taken] : rows) {
    const LoopbackServer server([&answer = reply](const Request&) { return answer; });
    auto request = to(server.url("/"));
    request.longestAnswer = most.size();
    const auto outcome = send(request);
    EXPECT_EQ(outcome.code(), taken ? 0 : NSURLErrorDataLengthExceedsMaximum) << outcome.text();
    EXPECT_EQ(outcome.data.value_or(Data()).string(), taken ? most : "");
  }
}

TEST_F(URLSessionTest, CookiesGoBackToTheirHostInAllSessions) {
  const LoopbackServer server([](const Request& request) {
    const auto sent = request.headers.find("cookie");
    return Reply{200,
                 {{"Set-Cookie", "a=1; Path=/kept"}},
                 sent == request.headers.end() ? "" : sent->second};
  });
  const auto cookieFor = [](URLSession& session, const std::string& address) {
    Pending pending;
    session.dataTask(to(address), pending.completion())->resume();
    return pending.outcome().data.value_or(Data()).string();
  };
  URLSession other{URLSessionConfiguration()};
  EXPECT_EQ(cookieFor(session(), server.url("/kept")), "");
  EXPECT_EQ(cookieFor(other, server.url("/kept")), "a=1");
  EXPECT_EQ(cookieFor(other, server.url("/other")), "");
  EXPECT_EQ(cookieFor(other, server.url("/kept", "localhost")), "");
  EXPECT_TRUE(server.requests()[0].headers.at("user-agent").starts_with("test_Foundation "));
}

TEST_F(URLSessionTest, AnUploadIsNotSentTwiceWhenAKeptConnectionDies) {
  const LoopbackServer server([](const Request& request) {
    return Reply{200, {}, "ok", request.path == "/drop" ? Mode::DropConnection : Mode::Normal};
  });
  EXPECT_EQ(send(to(server.url("/first"))).code(), 0);
  auto request = to(server.url("/drop"));
  request.httpMethod = "POST";
  request.httpBody = HTTPBody{Data(std::string("once"))};
  EXPECT_EQ(send(request).code(), NSURLErrorNetworkConnectionLost);
  EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(URLSessionTest, SilenceTimesOutAndProgressDoesNot) {
  using std::chrono::steady_clock;
  auto request = to(patient.url("/wait"));
  request.timeoutInterval = 0.5;
  const auto start = steady_clock::now();
  EXPECT_EQ(send(request).code(), NSURLErrorTimedOut);
  const std::chrono::duration<double> took = steady_clock::now() - start;
  EXPECT_GE(took.count(), 0.5);
  EXPECT_LT(took.count(), 1.5);

  const auto socket = *sandbox::listenOnLoopback(0);
  std::jthread source([&] {
    const int peer = ::accept(socket.descriptor, nullptr, nullptr);
    char asked[1024];
    EXPECT_GT(::read(peer, asked, sizeof asked), 0);
    std::string part = "HTTP/1.1 200 OK\r\n\r\n";
    for (int left = 8; left >= 0; left--) {
      EXPECT_EQ(::write(peer, part.data(), part.size()), std::ssize(part));
      std::this_thread::sleep_for(std::chrono::milliseconds(100)); // the slow source itself
      part = "x";
    }
    ::close(peer);
    ::close(socket.descriptor);
  });
  request = to("http://127.0.0.1:" + std::to_string(socket.port) + "/");
  request.timeoutInterval = 0.5; // the whole takes longer
  const auto slow = send(request);
  ASSERT_EQ(slow.code(), 0) << slow.text();
  EXPECT_EQ(slow.data->string(), "xxxxxxxx");
}

TEST_F(URLSessionTest, CancellingCompletesOnceInEveryState) {
  Pending waiting, unstarted, done;
  auto task = session().dataTask(to(patient.url("/wait")), waiting.completion());
  EXPECT_EQ(task->state(), URLSessionTaskState::Suspended);
  task->resume();
  task->resume();
  arrived.wait();
  EXPECT_EQ(task->state(), URLSessionTaskState::Running);
  task->cancel();
  EXPECT_NE(task->state(), URLSessionTaskState::Running);
  task->cancel();
  EXPECT_EQ(waiting.outcome().code(), NSURLErrorCancelled);
  task = session().dataTask(to(patient.url("/")), unstarted.completion());
  task->cancel();
  task->resume();
  EXPECT_EQ(unstarted.outcome().code(), NSURLErrorCancelled);
  task = session().dataTask(to(patient.url("/")), done.completion());
  task->resume();
  EXPECT_EQ(done.outcome().code(), 0);
  task->cancel();
  EXPECT_EQ(task->state(), URLSessionTaskState::Completed);
  EXPECT_EQ(send(to(patient.url("/"))).code(), 0); // later orders have been obeyed
  EXPECT_EQ(waiting.calls() + unstarted.calls() + done.calls(), 3);
  EXPECT_EQ(patient.requests().size(), 3U);
}

TEST_F(URLSessionTest, ASessionMayEndMeanwhileAndWithinItsCompletion) {
  const auto held = std::make_shared<int>();
  auto own = std::make_unique<URLSession>(URLSessionConfiguration());
  const auto task =
      own->dataTask(to(patient.url("/wait")), [held](auto...) { FAIL() << "it is silenced"; });
  task->resume();
  arrived.wait();
  own.reset();
  task->cancel();
  task->resume();

  own = std::make_unique<URLSession>(URLSessionConfiguration());
  Pending pending;
  const auto completion = pending.completion();
  own->dataTask(to(patient.url("/")),
                [&](auto... outcome) {
                  own.reset();
                  completion(outcome...);
                })
      ->resume();
  EXPECT_EQ(pending.outcome().code(), 0);
  EXPECT_EQ(own, nullptr);
}

} // namespace
} // namespace zuvi
