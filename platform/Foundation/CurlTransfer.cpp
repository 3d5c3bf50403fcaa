#include "platform/Foundation/CurlTransfer.h"

#include "platform/Foundation/CurlAuthorities.h"
#include "platform/Foundation/CurlErrors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <string_view>
#include <utility>

#include <curl/curl.h>

namespace zuvi {

namespace {

constexpr int mostRedirects = 10;
constexpr long longestIdle = 1; // seconds, before an upload
constexpr long uploadBuffer = 512L << 10; // films are long; the usual 64 KiB cost a third more time
constexpr std::size_t longestBody = std::size_t{256} << 20; // an endless answer must end somewhere

// These belong to the transport; a caller's value would contradict what is really sent.
constexpr std::array reservedHeaders = {"connection", "content-length", "expect", "host",
                                        "transfer-encoding"};

std::chrono::milliseconds usableTimeout(double seconds) {
  constexpr double usual = 60;
  constexpr double longest = 2e6; // what still fits the library's milliseconds
  if (!(seconds > 0)) seconds = usual;
  return std::chrono::milliseconds(static_cast<long>(std::ceil(std::min(seconds, longest) * 1000)));
}

char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    c = lowerCase(c);
  return result;
}

// What a method and the name of a header are made of.
bool isToken(std::string_view text) {
  constexpr std::string_view others = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::all_of(text.begin(), text.end(), [&](char c) {
    const char lower = lowerCase(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') ||
           others.find(c) != std::string_view::npos;
  });
}

bool isHeaderValue(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <class Value> void set(void* easy, CURLoption option, Value value) {
  curl_easy_setopt(easy, option, value);
}

} // namespace

// What the library calls while it works. Nothing may be thrown through it.
struct CurlTransfer::Callbacks {
  static std::size_t write(char* bytes, std::size_t, std::size_t size, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.bodyTooLong_ = size > longestBody - transfer.body_.size();
    if (transfer.bodyTooLong_) return CURL_WRITEFUNC_ERROR;
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
    try {
      static_cast<CurlTransfer*>(self)->receiveHeader({bytes, size});
      return size;
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
  const std::string scheme = request_.url.scheme();
  if (scheme != "http" && scheme != "https")
    return urlError(NSURLErrorUnsupportedURL, "neither http nor https");
  // Without a host the library would take the first part of the path for one.
  if (!request_.url.host().empty()) address_ = CurlAddress::parse(request_.url.absoluteString());
  if (!address_) return urlError(NSURLErrorBadURL, "the address cannot be used");
  if (!isToken(request_.httpMethod)) return urlError(NSURLErrorUnknown, "the method is no token");
  easy_.reset(curl_easy_init());
  if (!easy_) return urlError(NSURLErrorUnknown, "out of memory");
  if (auto error = setHeaders()) return error;
  setOptions();
  setMethod();
  setAddress();
  return std::nullopt;
}

std::optional<Error> CurlTransfer::setHeaders() {
  curl_slist* list = curl_slist_append(nullptr, "Expect:");
  headers_.reset(list);
  bool hasType = false;
  for (const auto& [name, value] : request_.allHTTPHeaderFields) {
    if (!isToken(name) || !isHeaderValue(value))
      return urlError(NSURLErrorUnknown, "the header " + lowerCase(name) + " cannot be sent");
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
  return std::nullopt;
}

void CurlTransfer::setMethod() {
  void* easy = easy_.get();
  const std::string& method = request_.httpMethod;
  const bool expectsBody = method == "POST" || method == "PUT" || method == "PATCH";
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
  set(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  set(easy, CURLOPT_SSL_VERIFYHOST, 2L);
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
  CurlAuthorities::apply(easy);
}

void CurlTransfer::setAddress() {
  set(easy_.get(), CURLOPT_URL, address_->text.c_str());
  // An absent proxy leaves it to the environment, an empty one is none.
  set(easy_.get(), CURLOPT_PROXY, address_->isLoopback() ? "" : static_cast<const char*>(nullptr));
  response_ = {};
  body_.clear();
  sendings_ = 0;
  sent_ = 0;
  transferred_ = 0;
  lastProgress_ = std::chrono::steady_clock::now();
}

void CurlTransfer::receiveHeader(std::string_view line) {
  lastProgress_ = std::chrono::steady_clock::now();
  if (line.starts_with("HTTP/")) { // an interim answer may have come before
    response_.headers.clear();
    return;
  }
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return;
  std::string& value = response_.headers[lowerCase(trimmed(line.substr(0, colon)))];
  if (!value.empty()) value += ", ";
  value += trimmed(line.substr(colon + 1));
}

bool CurlTransfer::isSafe() const {
  return request_.httpMethod == "GET" || request_.httpMethod == "HEAD";
}

std::optional<CurlAddress> CurlTransfer::redirectTarget() const {
  constexpr std::array statuses = {301, 302, 303, 307, 308};
  if (!isSafe() || request_.httpBody ||
      std::find(statuses.begin(), statuses.end(), response_.statusCode) == statuses.end())
    return std::nullopt;
  const char* target = nullptr;
  curl_easy_getinfo(easy_.get(), CURLINFO_REDIRECT_URL, &target);
  return target ? CurlAddress::parse(target) : std::nullopt;
}

bool CurlTransfer::follows(int result) {
  if (result != CURLE_OK) {
    if (bodyTooLong_)
      fail(urlError(NSURLErrorDataLengthExceedsMaximum, "the answer is too long"));
    else if (replayRefused_)
      fail(urlError(NSURLErrorNetworkConnectionLost, "the connection was lost"));
    else
      fail(errorFromCurl(result, errorText_.c_str()));
    return false;
  }
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  response_.statusCode = static_cast<int>(status);

  const auto target = redirectTarget();
  if (!target) {
    complete(Data(std::move(body_)), std::move(response_), std::nullopt);
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
  if (!address_->mayConfideIn(*target)) {
    std::erase_if(request_.allHTTPHeaderFields, [](const auto& field) {
      const std::string name = lowerCase(field.first);
      return name == "authorization" || name == "cookie";
    });
    setHeaders();
  }
  address_ = target;
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
