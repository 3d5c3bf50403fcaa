#pragma once

#include <ZuviSDK/UIKit/UIWindow.h>
#include "kit/Helper/LiveChat/LiveChatConfiguration.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/UIScreen.h"
#include "testing/kit/KitTest.h"

namespace zuvi::test {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The kit with a chat that nobody has opened yet, a browser of its own, and a server with the
/// template of the chat's address.
class ChatTest : public KitTest {
protected:
  ChatTest() {
    WebEngine::install(engine);
    for (const char* key :
         {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey", "LiveChat_chatOpenedKey"})
      UserDefaults::standard().set(key, nullptr);
    ZVEndpoints::chatTemplateURL() = server.url("/app/mobile/urls.json");
    answer({200, {}, R"({"chat_url":"chat.host/open?license={%license%}&group={%group%}"})"});
  }

  /// What was printed since the last call.
  std::vector<std::string> printed() {
    const std::lock_guard lock(printMutex);
    return std::exchange(KitTest::printed, {});
  }
  static void markOpened() { UserDefaults::standard().set("LiveChat_chatOpenedKey", true); }
  void answer(const Reply& reply) {
    server.answer([reply](const Request&) { return reply; });
  }
  ScriptedPage* page() { return engine->pages.empty() ? nullptr : engine->pages.front(); }
  /// Waits in real time for the template, and what it sets going, to arrive.
  bool loaded(std::size_t times = 1) {
    return time.waitUntil([&] { return page() && page()->loads.size() >= times; });
  }

  std::shared_ptr<ScriptedWebEngine> engine = std::make_shared<ScriptedWebEngine>();
  Backend& server = backend;
};

} // namespace zuvi::test
