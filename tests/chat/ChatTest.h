#pragma once

#include "kit/Helper/LiveChat/LiveChatConfiguration.h"
#include "kit/Main/Private/ZVEndpoints.h"
#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/Print.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "platform/UIKit/UIApplication.h"
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIWindow.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScriptedWebEngine.h"

#include <atomic>
#include <cmath>
#include <mutex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zuvi::test {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// A phone's screen, a scripted browser, and a server with the template of the chat's address.
class ChatTest : public testing::Test {
protected:
  ChatTest() {
    WebEngine::install(engine);
    for (const char* key :
         {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey", "LiveChat_chatOpenedKey"})
      UserDefaults::standard().set(key, nullptr);
    ZVEndpoints::chatTemplateURL() = server.url("/app/mobile/urls.json");
    setPrintListener([this](const std::string& line) {
      const std::lock_guard lock(mutex_);
      printed_.push_back(line);
    });
    UIApplication::shared().setURLOpener(
        [this](const URL& url) {
          opened.push_back(url.absoluteString());
          return true;
        },
        [](const URL& url) { return url.scheme() != "strange"; });
  }
  ~ChatTest() override {
    WebEngine::install(nullptr);
    UIApplication::shared().setURLOpener(nullptr);
    setPrintListener(nullptr);
  }
  void TearDown() override {
    time.advance(10);
    EXPECT_TRUE(std::isinf(DispatchQueue::main().nextDeadline())) << "something waits still";
  }

  /// What was printed since the last call.
  std::vector<std::string> printed() {
    const std::lock_guard lock(mutex_);
    return std::exchange(printed_, {});
  }
  static void markOpened() { UserDefaults::standard().set("LiveChat_chatOpenedKey", true); }
  void answer(Reply reply) {
    const std::lock_guard lock(mutex_);
    reply_ = std::move(reply);
  }
  ScriptedPage* page() { return engine->pages.empty() ? nullptr : engine->pages.front(); }
  /// Waits in real time for the template, and what it sets going, to arrive.
  bool loaded(std::size_t times = 1) {
    return time.waitUntil([&] { return page() && page()->loads.size() >= times; });
  }

  VirtualTime time;
  OffscreenSurface surface{{375, 812}, 2, {44, 0, 34, 0}};
  std::shared_ptr<ScriptedWebEngine> engine = std::make_shared<ScriptedWebEngine>();
  std::vector<std::string> opened;

private:
  std::mutex mutex_;
  std::vector<std::string> printed_;
  Reply reply_{200, {}, R"({"chat_url":"chat.host/open?license={%license%}&group={%group%}"})"};

protected:
  LoopbackServer server{[this](const Request&) {
    const std::lock_guard lock(mutex_);
    return reply_;
  }};
};

} // namespace zuvi::test
