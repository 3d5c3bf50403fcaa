#include "platform/Foundation/CurlTransfer.h"

#include "platform/Foundation/CurlCookies.h"
#include "platform/Foundation/CurlErrors.h"
#include "platform/Foundation/CurlRedirect.h"
#include "platform/Foundation/CurlTrust.h"
#include "platform/Foundation/HeaderText.h"
#include "platform/Foundation/ProcessInfo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <functional>
#include <string_view>
#include <utility>

#include <curl/curl.h>

namespace zuvi {

namespace {

constexpr int mostRedirects = 10;
constexpr long longestIdle = 1;           // seconds, before an upload
constexpr long uploadBuffer = 512L << 10; // films are long; the usual 64 KiB cost a third more time

// These belong to the transport; a caller's value would contradict what is really sent.
constexpr std::array reservedHeaders = {"connection", "content-length", "expect", "host",
                                        "transfer-encoding"};

std::chrono::milliseconds usableTimeout(double seconds) {
  constexpr double usual = 60;
  constexpr double longest = 2e6; // what still fits the library's milliseconds
  if (!(seconds > 0)) seconds = usual;
  return std::chrono::milliseconds(static_cast<long>(std::ceil(std::min(seconds, longest) * 1000)));
}

/// The program's name, the library's and the system's.
const std::string& userAgent() {
  static const std::string text = [] {
    std::string name = ProcessInfo::processName();
    std::replace_if(name.begin(), name.end(), std::not_fn(isTokenCharacter), '_');
    return name + " libcurl/" + curl_version_info(CURLVERSION_NOW)->version + " Linux";
  }();
  return text;
}

template <class Value> void set(void* easy, CURLoption option, Value value) {
  curl_easy_setopt(easy, option, value);
}

} // namespace

// What the library calls while it works. Nothing may be thrown through it.
struct CurlTransfer::Callbacks {
  static std::size_t write(char* bytes, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.tooLong_ = size > transfer.request_.longestAnswer - transfer.body_.size();
    if (transfer.tooLong_) return CURL_WRITEFUNC_ERROR;
    try {
      transfer.body_.append(bytes, size); // grows by doubling
      return size;
    } catch (const std::exception&) {
      return CURL_WRITEFUNC_ERROR;
    }
  }

  /// Fills `buffer` with what comes next of the body's pieces.
  static std::size_t read(char* buffer, std::size_t, std::size_t room, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    std::size_t filled = 0;
    auto skip = static_cast<std::size_t>(transfer.sent_);
    for (const Data& piece : *transfer.request_.httpBody) {
      const std::string_view rest = piece.view().substr(std::min(skip, piece.size()));
      skip -= piece.size() - rest.size();
      filled += rest.copy(buffer + filled, room - filled);
    }
    transfer.sent_ += static_cast<long long>(filled);
    return filled;
  }

  /// The library starts over when a kept connection was dead before it took anything.
  static int seek(void* self, curl_off_t offset, int origin) {
    if (origin != SEEK_SET) return CURL_SEEKFUNC_CANTSEEK;
    static_cast<CurlTransfer*>(self)->sent_ = offset;
    return CURL_SEEKFUNC_OK;
  }

  static std::size_t header(char* bytes, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.lastProgress_ = std::chrono::steady_clock::now();
    try {
      transfer.tooLong_ = !transfer.head_.add({bytes, size});
      return transfer.tooLong_ ? CURL_WRITEFUNC_ERROR : size;
    } catch (const std::exception&) {
      return CURL_WRITEFUNC_ERROR;
    }
  }

  static int progress(void* self, curl_off_t, curl_off_t received, curl_off_t, curl_off_t sent) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    if (std::exchange(transfer.transferred_, received + sent) != received + sent)
      transfer.lastProgress_ = std::chrono::steady_clock::now();
    return 0;
  }

  // The library sends a request again when a kept connection turns out to be dead. The peer may
  // have acted on the first one already.
  static int aboutToSend(void* self, char*, char*, int, int) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.replayRefused_ = transfer.sendings_++ > 0 && !transfer.isSafe();
    return transfer.replayRefused_ ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
  }
};

void CurlTransfer::Cleanup::operator()(void* easy) const {
  curl_easy_cleanup(easy);
}

void CurlTransfer::FreeList::operator()(void* list) const {
  curl_slist_free_all(static_cast<curl_slist*>(list));
}

CurlTransfer::CurlTransfer(URLRequest request, double timeout, URLSession::Completion completion)
    : request_(std::move(request)), timeout_(usableTimeout(timeout)),
      completion_(std::move(completion)) {}

CurlTransfer::~CurlTransfer() = default;

std::optional<Error> CurlTransfer::start() {
  state_ = State::Running;
  if (auto error = refusal(request_)) return error;
  address_ = CurlAddress::parse(request_.url.absoluteString());
  easy_.reset(curl_easy_init());
  if (!easy_) return urlError(NSURLErrorUnknown, "out of memory");
  setHeaders();
  setOptions();
  setMethod();
  setAddress();
  return std::nullopt;
}

std::optional<Error> CurlTransfer::refusal(const URLRequest& request) {
  const std::string scheme = request.url.scheme();
  if (scheme != "http" && scheme != "https")
    return urlError(NSURLErrorUnsupportedURL, "neither http nor https");
  // Without a host the library would take the first part of the path for one.
  if (request.url.host().empty() || !CurlAddress::parse(request.url.absoluteString()))
    return urlError(NSURLErrorBadURL, "the address cannot be used");
  if (!isToken(request.httpMethod)) return urlError(NSURLErrorUnknown, "the method is no token");
  for (const auto& [name, value] : request.allHTTPHeaderFields)
    if (!isToken(name) || !isHeaderValue(value))
      return urlError(NSURLErrorUnknown, "the header " + lowerCase(name) + " cannot be sent");
  return std::nullopt;
}

void CurlTransfer::setHeaders() {
  curl_slist* list = curl_slist_append(nullptr, "Expect:");
  headers_.reset(list);
  bool hasType = false;
  for (const auto& [name, value] : request_.allHTTPHeaderFields) {
    const std::string lower = lowerCase(name);
    if (std::find(reservedHeaders.begin(), reservedHeaders.end(), lower) != reservedHeaders.end())
      continue;
    hasType = hasType || lower == "content-type";
    std::string line = name;
    line += trimmed(value).empty() ? ";" : ": "; // the library's way to send an empty one
    line += value;
    curl_slist_append(list, line.c_str());
  }
  if (!hasType) curl_slist_append(list, "Content-Type:"); // the library would make one up
  set(easy_.get(), CURLOPT_HTTPHEADER, list);
}

void CurlTransfer::setMethod() {
  void* easy = easy_.get();
  const std::string& method = request_.httpMethod;
  const bool expectsBody = method == "POST" || method == "PUT" || method == "PATCH";
  set(easy, CURLOPT_HTTPGET, 1L); // a redirect may have made it one
  set(easy, CURLOPT_CUSTOMREQUEST, static_cast<const char*>(nullptr));
  if (request_.httpBody || expectsBody) {
    if (!request_.httpBody) request_.httpBody.emplace();
    curl_off_t size = 0;
    for (const Data& piece : *request_.httpBody)
      size += static_cast<curl_off_t>(piece.size());
    set(easy, CURLOPT_UPLOAD_BUFFERSIZE, uploadBuffer);
    set(easy, CURLOPT_POST, 1L);
    set(easy, CURLOPT_POSTFIELDSIZE_LARGE, size);
    set(easy, CURLOPT_READFUNCTION, &Callbacks::read);
    set(easy, CURLOPT_READDATA, this);
    set(easy, CURLOPT_SEEKFUNCTION, &Callbacks::seek);
    set(easy, CURLOPT_SEEKDATA, this);
    // A server closes idle connections. The library may notice that over TLS only when it has sent
    // something, and then an upload may have arrived and isn't sent again.
    set(easy, CURLOPT_MAXAGE_CONN, longestIdle);
    if (method != "POST") set(easy, CURLOPT_CUSTOMREQUEST, method.c_str());
  } else if (method == "HEAD") {
    set(easy, CURLOPT_NOBODY, 1L);
  } else if (method != "GET") {
    set(easy, CURLOPT_CUSTOMREQUEST, method.c_str());
  }
}

void CurlTransfer::setOptions() {
  void* easy = easy_.get();
  errorText_.assign(CURL_ERROR_SIZE, '\0');
  set(easy, CURLOPT_ERRORBUFFER, errorText_.data());
  set(easy, CURLOPT_NOSIGNAL, 1L);
  set(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  set(easy, CURLOPT_PATH_AS_IS, 1L);
  set(easy, CURLOPT_FOLLOWLOCATION, 0L);
  set(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_2TLS);
  set(easy, CURLOPT_USERAGENT, userAgent().c_str());
  set(easy, CURLOPT_ACCEPT_ENCODING, ""); // all that the library can undo
  set(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(easy, CURLOPT_TCP_NODELAY, 1L);
  set(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  set(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(timeout_.count()));
  // Cancelling must not wait for a name server.
  set(easy, CURLOPT_QUICK_EXIT, 1L);
  set(easy, CURLOPT_WRITEFUNCTION, &Callbacks::write);
  set(easy, CURLOPT_WRITEDATA, this);
  set(easy, CURLOPT_HEADERFUNCTION, &Callbacks::header);
  set(easy, CURLOPT_HEADERDATA, this);
  set(easy, CURLOPT_XFERINFOFUNCTION, &Callbacks::progress);
  set(easy, CURLOPT_XFERINFODATA, this);
  set(easy, CURLOPT_NOPROGRESS, 0L);
  set(easy, CURLOPT_PREREQFUNCTION, &Callbacks::aboutToSend);
  set(easy, CURLOPT_PREREQDATA, this);
  CurlCookies::apply(easy);
  CurlTrust::apply(easy);
}

void CurlTransfer::setAddress() {
  set(easy_.get(), CURLOPT_URL, address_->text.c_str());
  // An absent proxy leaves it to the environment, an empty one is none.
  set(easy_.get(), CURLOPT_PROXY, address_->isLoopback() ? "" : static_cast<const char*>(nullptr));
  head_ = {};
  body_.clear();
  sendings_ = 0;
  sent_ = 0;
  transferred_ = 0;
  lastProgress_ = std::chrono::steady_clock::now();
}

bool CurlTransfer::isSafe() const {
  return request_.httpMethod == "GET" || request_.httpMethod == "HEAD";
}

Error CurlTransfer::errorOf(int result) const {
  if (tooLong_) return urlError(NSURLErrorDataLengthExceedsMaximum, "the answer is too long");
  if (replayRefused_) return urlError(NSURLErrorNetworkConnectionLost, "the connection was lost");
  return errorFromCurl(result, errorText_.c_str());
}

bool CurlTransfer::follows(int result) {
  if (result != CURLE_OK) {
    fail(errorOf(result));
    return false;
  }
  URLResponse& response = head_.response;
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  response.statusCode = static_cast<int>(status);

  const auto location = response.headers.find("location");
  const auto target =
      location == response.headers.end()
          ? std::nullopt
          : followRedirect(*address_, response.statusCode, location->second, request_);
  if (!target) {
    complete(Data(std::move(body_)), std::move(response), std::nullopt);
    return false;
  }
  if (!target->isHttp()) {
    fail(urlError(NSURLErrorUnsupportedURL, "redirected to neither http nor https"));
    return false;
  }
  if (++redirects_ > mostRedirects) {
    fail(urlError(NSURLErrorHTTPTooManyRedirects, "too many redirects"));
    return false;
  }
  address_ = target;
  setHeaders();
  setMethod();
  setAddress();
  return true;
}

void CurlTransfer::fail(Error error) {
  complete(std::nullopt, std::nullopt, std::move(error));
}

void CurlTransfer::complete(std::optional<Data> data, std::optional<URLResponse> response,
                            std::optional<Error> error) {
  state_ = State::Finished;
  easy_.reset();
  // What the completion holds goes with it, also when the caller keeps the task.
  if (const auto completion = std::exchange(completion_, nullptr))
    completion(std::move(data), std::move(response), std::move(error));
}

} // namespace zuvi
