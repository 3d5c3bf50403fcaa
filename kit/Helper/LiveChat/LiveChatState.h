#pragma once

namespace zuvi {

/// Whether the chat was ever opened on this device. Until then nothing of its page is fetched.
class LiveChatState {
public:
  static bool isChatOpenedBefore();
  static void markChatAsOpened();

private:
  static constexpr const char* chatOpenedKey = "LiveChat_chatOpenedKey";
};

} // namespace zuvi
