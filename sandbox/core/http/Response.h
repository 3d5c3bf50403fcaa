#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zuvi::sandbox {

/// How much of a response reaches the client.
enum class Delivery {
  whole,
  cutInBody, ///< the connection ends in the middle of the body
  dropped    ///< the connection ends without an answer
};

/// A stretch of a file that is sent from the disk.
struct FileBody {
  std::filesystem::path path;
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

struct Response {
  int status = 200;
  std::string contentType = "application/json";
  std::string body;
  std::optional<FileBody> file; ///< stands in for `body`
  std::vector<std::pair<std::string, std::string>> headers;
  Delivery delivery = Delivery::whole;
};

/// A JSON object with a `message`, which is how this back end words every fault.
Response messageResponse(int status, const std::string& message);

} // namespace zuvi::sandbox
