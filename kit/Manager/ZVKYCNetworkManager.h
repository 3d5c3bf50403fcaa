#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/Foundation/Value.h>
#include "platform/Foundation/URLSession.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace zuvi {

/// The transport to the back end: builds requests and multipart bodies, and calls one completion on
/// the main queue for every answer. It does not interpret the data and reads no status code.
class ZVKYCNetworkManager {
public:
  /// Called once with the decoded JSON, absent when there was none, and the transport's error.
  using Completion = std::function<void(std::optional<Value> json, std::optional<Error> error)>;
  using Parameters = std::optional<Value::Dictionary>;

  ZVKYCNetworkManager();

  /// Every path is appended to it unchanged. Each registration copies it from `ZVEndpoints`.
  std::string serverURL;
  /// The `Authorization` header; absent: no such header.
  Observed<std::optional<std::string>> authorization;
  URLSession session;

  void get(const std::string& path, Completion completion);
  // Multipart: the parameters as form fields, then the file as the field `name`. A film and a
  // picture are sent with different file names and types.
  void postImage(const std::string& path, const Data& image, const std::string& name,
                 const Parameters& parameters, Completion completion);
  void postVideo(const std::string& path, const Data& video, const std::string& name,
                 const Parameters& parameters, Completion completion);
  void put(const std::string& path, const Data& image, const std::string& name,
           const Parameters& parameters, Completion completion);
  /// The body is the parameters as JSON, or a string unchanged; absent: no body.
  void patch(const std::string& path, const std::optional<Value>& parameters,
             Completion completion);

  /// Why no request can be sent, e.g. a client id that can't be in a header; absent: no problem.
  std::optional<Error> refusal() const;

  enum class FileKind { Image, Video };
  /// A multipart body, delimited by `boundary`. Names and values are sent unchanged.
  static HTTPBody createBodyWithParameters(const std::string& filePathKey, const Data& file,
                                           const Parameters& parameters,
                                           const std::string& boundary, FileKind kind);

private:
  std::optional<URLRequest> request(const std::string& path, const Completion& completion) const;
  void upload(const std::string& method, const std::string& path, const Data& file,
              const std::string& name, const Parameters& parameters, FileKind kind,
              Completion completion);
  void send(const URLRequest& request, Completion completion);

  std::map<std::string, std::string> headers_;
};

} // namespace zuvi
