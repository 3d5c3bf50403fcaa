// What stands behind the door to the chat: windows, states, counters and the delegate.

#include "kit/Helper/LiveChat/Manager.h"
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/UIAlertController.h>
#include "kit/Helper/LiveChat/LiveChatState.h"
#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"
#include "kit/Helper/ZVLocalization.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

struct Listener final : LiveChatDelegate {
  std::vector<std::string> heard;
  void received(const LiveChatMessage& message) override { heard.push_back(message.text); }
  void chatPresented() override { heard.emplace_back("presented"); }
  void chatDismissed() override { heard.emplace_back("dismissed"); }
  void handleURL(const URL& url) override { heard.push_back(url.absoluteString()); }
};

/// The answers never matter here, so nothing is asked of the network.
class ManagerTest : public ChatTest {
protected:
  ManagerTest() {
    ZVEndpoints::chatTemplateURL() = "";
    markOpened();
    host->makeKeyAndVisible();
    manager->delegate = listener;
  }
  void TearDown() override {
    const std::weak_ptr<Manager> weak = manager;
    manager = nullptr;
    EXPECT_TRUE(weak.expired());
    host->setVisible(false);
    ChatTest::TearDown();
  }
  ChatView::Completion note() {
    return [this](bool finished) { ends.push_back(finished); };
  }
  void say(const std::string& id) {
    manager->webViewBridge()->handle({{"messageType", "newMessage"},
                                      {"text", "text " + id},
                                      {"id", id},
                                      {"timestamp", 1},
                                      {"author", Value::Dictionary{{"name", "Ann"}}}});
  }
  bool isPresented() const {
    return manager->overlayViewController()->chatState() == ChatState::Presented;
  }
  static UIWindow* key() { return UIApplication::shared().keyWindow(); }

  std::shared_ptr<UIWindow> host = make<UIWindow>();
  std::shared_ptr<Manager> manager = make<Manager>();
  std::shared_ptr<Listener> listener = std::make_shared<Listener>();
  std::vector<bool> ends;
};

TEST_F(ManagerTest, GivesTheKeyToNoWindowThatWentMeanwhile) {
  auto ended = make<UIWindow>();
  ended->makeKeyAndVisible();
  manager->presentChat(false, note());
  time.settle();
  const std::weak_ptr<UIView> gone = ended;
  ended->setVisible(false);
  ended = nullptr;
  EXPECT_TRUE(gone.expired());
  manager->dismissChat(false, note());
  time.settle();
  EXPECT_TRUE(key() == nullptr || key() == host.get());
}

TEST_F(ManagerTest, CountsWhatNobodyHasSeen) {
  say("a");
  host->setFrame({0, 0, 300, 400});
  UIApplication::shared().setActive(true);
  UIApplication::shared().setActive(false);
  EXPECT_EQ(manager->window()->frame(), host->frame()) << "follows the key window";
  manager->presentChat(true, note());
  EXPECT_FALSE(isPresented()) << "not before it is all the way in";
  EXPECT_EQ(UnreadMessagesCounter::counterValue(), 1);
  time.advance(0.6);
  EXPECT_TRUE(isPresented());
  EXPECT_GT(manager->window()->windowLevel(), host->windowLevel());
  EXPECT_EQ(UnreadMessagesCounter::counterValue(), 0);
  manager->window()->setFrame({0, 0, 500, 600});
  manager->window()->layoutIfNeeded();
  EXPECT_EQ(manager->overlayViewController()->chatView()->frame(), (CGRect{0, 0, 500, 600}));
  say("b");
  EXPECT_THAT(listener->heard, ElementsAre("text a", "presented", "text b")) << "seen or not";
  page()->client.decidePolicy(
      {WKNavigationType::LinkActivated, URL::fromString("mailto:a@b"), true, true});
  EXPECT_EQ(listener->heard.back(), "mailto:a@b");
  page()->client.didRefuseFiles();
  const auto overlay = manager->overlayViewController();
  const auto alert =
      std::dynamic_pointer_cast<UIAlertController>(overlay->presentedViewController());
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->message(), localized("chatTakesNoFiles"));
  alert->choose(0);
  time.advance(1);
  const std::function<void()> ways[] = {
      [&] {
        manager->webViewBridge()->handle({{"messageType", "hideChatWindow"}});
      },
      [&] { overlay->accessibilityPerformEscape(); }};
  for (const auto& leave : ways) {
    manager->presentChat(false, {});
    leave();
    time.advance(0.3);
    EXPECT_EQ(UnreadMessagesCounter::counterValue(), 0);
    EXPECT_EQ(listener->heard.back(), "dismissed");
    EXPECT_EQ(key(), host.get());
    page()->client.didRefuseFiles();
    EXPECT_FALSE(isPresented() || overlay->presentedViewController()) << "nobody is there to read";
  }
}

TEST_F(ManagerTest, APresentOnTheWayInEndsLikeOne) {
  engine->results["LiveChatWidget_emitFocus();"] = nullptr;
  manager->webViewBridge()->handle({{"messageType", "ready"}});
  for (const bool animated : {true, false}) {
    SCOPED_TRACE(animated);
    listener->heard.clear();
    say(animated ? "a" : "b");
    manager->presentChat(true, note());
    time.advance(0.2);
    manager->presentChat(animated, note());
    time.advance(0.6);
    EXPECT_THAT(listener->heard, Contains("presented"));
    EXPECT_EQ(UnreadMessagesCounter::counterValue(), 0);
    EXPECT_THAT(std::exchange(page()->scripts, {}), Contains("LiveChatWidget_emitFocus();"));
    EXPECT_TRUE(isPresented());
    manager->dismissChat(false, {});
    EXPECT_EQ(key(), host.get());
  }
}

TEST_F(ManagerTest, TheCloseButtonLeavesTheCounterToTheDismissal) {
  manager->presentChat(false, {});
  manager->presentChat(false, {}); // as a host's own button may
  say("a");
  listener->heard.clear();
  manager->overlayViewController()->chatView()->loadingView()->closeButton()->sendActions(
      UIControlEvent::TouchUpInside);
  time.advance(0.1);
  UIScreen::main().configure({400, 600}, 2); // a person resizes the window
  time.advance(0.2);
  EXPECT_FALSE(isPresented() || manager->window()->isVisible());
  EXPECT_EQ(key(), host.get());
  EXPECT_EQ(UnreadMessagesCounter::counterValue(), 1);
  EXPECT_THAT(listener->heard, IsEmpty());
}

TEST_F(ChatTest, CountersStaySmallWhateverAPageSends) {
  UserDefaults& defaults = UserDefaults::standard();
  Value::List many;
  for (int i = 1; i < 10'000; i++)
    many.emplace_back(std::to_string(i));
  defaults.set("LiveChat_unreadMessagesKey", many);
  defaults.set("LiveChat_readMessagesKey", many);
  EXPECT_FALSE(UnreadMessagesCounter::handleUnreadMessage(std::string(257, 'x')));
  EXPECT_TRUE(UnreadMessagesCounter::handleUnreadMessage(std::string(256, 'x')));
  EXPECT_FALSE(UnreadMessagesCounter::handleUnreadMessage("one too many"));
  EXPECT_EQ(UnreadMessagesCounter::counterValue(), 10'000);
  UnreadMessagesCounter::resetCounter();
  EXPECT_EQ(defaults.value("LiveChat_readMessagesKey").list()->size(), 10'000U);
  EXPECT_FALSE(UnreadMessagesCounter::handleUnreadMessage("9999")) << "the latest stay known";
}

TEST_F(ChatTest, CountersHoldOverDamagedDefaults) {
  UserDefaults& defaults = UserDefaults::standard();
  for (const Value& damaged :
       {Value(), Value(7), Value(Value::List{"a", 1}), Value(Value::Dictionary{{"a", "a"}})}) {
    for (const char* key :
         {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey", "LiveChat_chatOpenedKey"})
      defaults.set(key, damaged);
    const std::string what = damaged.description();
    EXPECT_FALSE(LiveChatState::isChatOpenedBefore()) << what;
    EXPECT_EQ(UnreadMessagesCounter::counterValue(), 0) << what;
    EXPECT_TRUE(UnreadMessagesCounter::handleUnreadMessage("a")) << what;
    EXPECT_FALSE(UnreadMessagesCounter::handleUnreadMessage("a")) << what;
    EXPECT_EQ(defaults.value("LiveChat_unreadMessagesKey"), Value(Value::List{"a"})) << what;
    UnreadMessagesCounter::resetCounter();
    EXPECT_TRUE(defaults.value("LiveChat_unreadMessagesKey").isNull()) << "an empty set is no key";
    EXPECT_FALSE(UnreadMessagesCounter::handleUnreadMessage("a")) << what;
    EXPECT_TRUE(UnreadMessagesCounter::handleUnreadMessage("b"));
    UnreadMessagesCounter::resetCounter();
    EXPECT_EQ(defaults.value("LiveChat_readMessagesKey"), Value(Value::List{"a", "b"})) << what;
    LiveChatState::markChatAsOpened();
    EXPECT_TRUE(LiveChatState::isChatOpenedBefore()) << what;
  }
}

} // namespace
} // namespace zuvi::test
