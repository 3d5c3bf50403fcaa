#pragma once

#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// The names of what this back end does, as failure rules and the log use them.
namespace operation {
inline constexpr std::string_view merchant = "merchant";
inline constexpr std::string_view identity = "identity";
inline constexpr std::string_view appendFace = "append-face";
inline constexpr std::string_view face = "face";
inline constexpr std::string_view document = "document";
inline constexpr std::string_view photo = "photo";
inline constexpr std::string_view verify = "verify";
inline constexpr std::string_view track = "track";
inline constexpr std::string_view chatTemplate = "chat-template";
inline constexpr std::string_view chatPage = "chat-page";
inline constexpr std::string_view chatMessage = "chat-message";
} // namespace operation

inline const std::vector<std::string_view>& operationNames() {
  using namespace operation;
  static const std::vector<std::string_view> names = {merchant,     identity, appendFace, face,
                                                      document,     photo,    verify,     track,
                                                      chatTemplate, chatPage, chatMessage};
  return names;
}

} // namespace zuvi::sandbox
