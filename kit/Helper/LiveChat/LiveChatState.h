#pragma once

namespace zuvi {

/// Whether the chat was ever opened on this device. Until then its page is not loaded.
class LiveChatState {
public:
  static bool isChatOpenedBefore();
  static void markChatAsOpened();

private:
  static constexpr const char* chatOpenedKey = "LiveChat_chatOpenedKey";
};

} // namespace zuvi
