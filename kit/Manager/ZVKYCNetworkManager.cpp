#include "kit/Manager/ZVKYCNetworkManager.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "platform/Foundation/Ascii.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/UUID.h"

#include <utility>
#include <vector>

namespace zuvi {

namespace {

// Uploading a film over a slow connection takes long.
constexpr double requestTimeout = 10000; // seconds

// The back end's answers are short: the data of a person or a merchant.
constexpr std::size_t longestAnswer = std::size_t{1} << 20; // bytes
constexpr JSONSerialization::Limits answerLimits{.depth = 64, .values = 100'000};

} // namespace

ZVKYCNetworkManager::ZVKYCNetworkManager()
    : serverURL(ZVEndpoints::serverURL()),
      authorization(std::nullopt,
                    [this] {
                      if (*authorization)
                        headers_["Authorization"] = **authorization;
                      else
                        headers_.erase("Authorization");
                    }),
      session(URLSessionConfiguration{requestTimeout}), headers_{
                                                            {"Content-Type", "application/json"}} {}

std::optional<URLRequest> ZVKYCNetworkManager::request(const std::string& path,
                                                       const Completion& completion) const {
  const auto url = URL::fromString(serverURL + path);
  if (!url) {
    DispatchQueue::main().async([completion] {
      completion(std::nullopt, Error{NSURLErrorDomain, NSURLErrorBadURL, "not an address"});
    });
    return std::nullopt;
  }
  URLRequest request(*url);
  request.allHTTPHeaderFields = headers_;
  request.longestAnswer = longestAnswer;
  return request;
}

std::optional<Error> ZVKYCNetworkManager::refusal() const {
  const auto url = URL::fromString(serverURL);
  if (!url) return Error{NSURLErrorDomain, NSURLErrorBadURL, "the address cannot be used"};
  URLRequest request(*url);
  request.allHTTPHeaderFields = headers_;
  return URLSession::refusal(request);
}

void ZVKYCNetworkManager::get(const std::string& path, Completion completion) {
  if (const auto made = request(path, completion)) send(*made, std::move(completion));
}

void ZVKYCNetworkManager::postImage(const std::string& path, const Data& image,
                                    const std::string& name, const Parameters& parameters,
                                    Completion completion) {
  upload("POST", path, image, name, parameters, FileKind::Image, std::move(completion));
}

void ZVKYCNetworkManager::postVideo(const std::string& path, const Data& video,
                                    const std::string& name, const Parameters& parameters,
                                    Completion completion) {
  upload("POST", path, video, name, parameters, FileKind::Video, std::move(completion));
}

void ZVKYCNetworkManager::put(const std::string& path, const Data& image, const std::string& name,
                              const Parameters& parameters, Completion completion) {
  upload("PUT", path, image, name, parameters, FileKind::Image, std::move(completion));
}

void ZVKYCNetworkManager::patch(const std::string& path, const std::optional<Value>& parameters,
                                Completion completion) {
  auto made = request(path, completion);
  if (!made) return;
  if (parameters && parameters->string())
    made->httpBody = HTTPBody{Data(asciiLossy(*parameters->string()))};
  else if (parameters)
    if (const auto json = JSONSerialization::data(*parameters)) made->httpBody = HTTPBody{*json};
  made->httpMethod = "PATCH";
  send(*made, std::move(completion));
}

void ZVKYCNetworkManager::upload(const std::string& method, const std::string& path,
                                 const Data& file, const std::string& name,
                                 const Parameters& parameters, FileKind kind,
                                 Completion completion) {
  auto made = request(path, completion);
  if (!made) return;
  const std::string boundary = "Boundary-" + uuidString();
  made->allHTTPHeaderFields["Content-Type"] = "multipart/form-data; boundary=" + boundary;
  made->httpMethod = method;
  made->httpBody = createBodyWithParameters(name, file, parameters, boundary, kind);
  send(*made, std::move(completion));
}

HTTPBody ZVKYCNetworkManager::createBodyWithParameters(const std::string& filePathKey,
                                                       const Data& file,
                                                       const Parameters& parameters,
                                                       const std::string& boundary, FileKind kind) {
  const bool video = kind == FileKind::Video;
  const std::string fileName = video ? "liveness.mov" : "user-profile.jpg";
  const std::string mimeType = video ? "video/quicktime" : "image/jpeg";
  std::string head;
  if (parameters)
    for (const auto& [key, value] : *parameters)
      head += "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + key + "\"\r\n\r\n" +
              value.description() + "\r\n";
  head += "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + filePathKey +
          "\"; filename=\"" + fileName + "\"\r\nContent-Type: " + mimeType + "\r\n\r\n";
  return {Data(std::move(head)), file, Data("\r\n--" + boundary + "--\r\n")};
}

void ZVKYCNetworkManager::send(const URLRequest& request, Completion completion) {
  // Moved, not copied: a screen that it holds must not be destroyed on the session's queue.
  const auto handed = std::make_shared<Completion>(std::move(completion));
  const auto handleResponse = [handed](const std::optional<Data>& data,
                                       const std::optional<URLResponse>&,
                                       std::optional<Error> error) {
    // Not on a session's queue, so that decoding does not delay other requests.
    DispatchQueue::global().async([handed, data, error = std::move(error)] {
      std::optional<Value> result;
      if (data)
        result = JSONSerialization::jsonObject(data->view(), JSONSerialization::Fragments::Allow,
                                               answerLimits);
      DispatchQueue::main().async(
          [completion = std::move(*handed), result = std::move(result), error]() mutable {
            completion(std::move(result), std::move(error));
          });
    });
  };
  session.dataTask(request, handleResponse)->resume();
}

} // namespace zuvi
