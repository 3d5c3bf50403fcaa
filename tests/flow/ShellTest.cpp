// The frame of the flow: what steps publish, its buttons, the keyboard, and the plain screens.

#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/UIAlertController.h>
#include "kit/Helper/LiveChat/Manager.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/Views/ZVDocumentButton.h"
#include "platform/Foundation/UserDefaults.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class ShellTest : public FlowTest {
protected:
  void SetUp() override {
    registerMerchant(R"({"optional":["passport","national-id","passport"]})");
    launch();
  }
};

TEST_F(ShellTest, MakesRoomForTheKeyboard) {
  const auto space = [] { return shell().containerBottomSpace.lock()->constant(); };
  const auto post = [](const char* name, const Value& height) {
    NotificationCenter::defaultCenter().post(
        name, {{UIKeyboardFrameEndUserInfoKey, Value::Dictionary{{"height", height}}},
               {UIKeyboardAnimationDurationUserInfoKey, 0}});
  };
  EXPECT_EQ(space(), 34 + 88) << "the bar's height above the safe area";

  // What a step has at its lower end stays clear of the bar.
  const auto camera = make<ZVKYCCameraViewController>();
  shell().mainNC()->pushViewController(camera, true);
  settle();
  const auto isClear = [&] {
    const auto last = camera->cardLabel2.lock();
    return last->convertToScreen(last->bounds()).maxY() < shell().bottomView.lock()->frame().minY();
  };
  post(UIKeyboardWillShowNotification, 300);
  post(UIKeyboardWillShowNotification, "no height");
  EXPECT_EQ(space(), 250);
  post(UIKeyboardWillHideNotification, 300);
  EXPECT_EQ(space(), 40);
  EXPECT_TRUE(isClear());
  shell().showLiveView = true;
  EXPECT_FALSE(isClear()) << "the bar is out of the way";
}

TEST_F(ShellTest, GoesOnWhereItWasWhenTheWindowWasHidden) {
  registerMerchant(R"({"required":["passport"]})");
  const auto blink = [&](const std::function<void()>& meanwhile) {
    const std::string before = top();
    window->setVisible(false);
    settle();
    meanwhile();
    EXPECT_EQ(top(), before);
    window->makeKeyAndVisible();
    settle();
  };
  tapBottom();
  tap("recordButton");
  time.advance(7);
  blink([&] { EXPECT_EQ(front->filmsDiscarded, 1) << "nobody is filmed unseen"; });
  record();
  backend.hold();
  tapBottom();
  blink([&] { // the answer is not lost
    backend.release();
    EXPECT_FALSE(time.waitUntil([this] { return top() != "ZVUploadViewController"; }, 0.2));
  });
  arrive("ZVKYCCameraViewController");
  blink([&] { EXPECT_FALSE(back->isRunning()); });
  shoot(jpeg(1));
  arrive("ZVVerifiedViewController");
  EXPECT_EQ(backend.requests().size(), 4U) << "two merchants, one identity, one document";
}

TEST_F(ShellTest, OpensTheChatAndItsMessages) {
  Manager& chat = Manager::sharedInstance();
  EXPECT_EQ((*chat.configuration)->licenseId, "4173052");
  EXPECT_EQ(LiveChat::allCustomVariables(), (CustomVariables{{"Merchant", "M"}}));
  for (const char* key : {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey"})
    UserDefaults::standard().set(key, nullptr);
  const auto alert = [] {
    return std::dynamic_pointer_cast<UIAlertController>(shell().presentedViewController());
  };
  const auto onShow = [&] { return alert() ? alert()->title() + ": " + alert()->message() : ""; };
  const auto say = [&](const std::string& id) {
    chat.webViewBridge()->handle({{"messageType", "newMessage"},
                                  {"text", "Hello " + id},
                                  {"id", id},
                                  {"timestamp", 1},
                                  {"author", Value::Dictionary{{"name", "Ann"}}}});
    settle();
    return onShow();
  };
  tap("infoButtonTap");
  EXPECT_TRUE(LiveChat::isChatPresented());
  EXPECT_EQ(say("seen already"), "");
  LiveChat::dismissChat();
  settle();

  EXPECT_EQ(say("1"), "Support: Hello 1");
  tap("Cancel", true);
  EXPECT_FALSE(LiveChat::isChatPresented());
  EXPECT_EQ(say("2"), "Support: Hello 2");
  tap("Go to Chat", true);
  EXPECT_TRUE(LiveChat::isChatPresented());
  LiveChat::dismissChat(false);
  settle();

  // Each in its turn, whatever lies over the frame meanwhile.
  tap("closeButtonTap");
  for (const char* id : {"3", "4"})
    EXPECT_EQ(say(id), "");
  tap("continueButton");
  for (const char* text : {"Support: Hello 3", "Support: Hello 4"}) {
    EXPECT_EQ(onShow(), text);
    UIApplication::shared().keyPressed({"Escape", {}});
    settle();
  }
  EXPECT_EQ(onShow(), "");

  // A host's own delegate hears of what comes when no run is on; without one the next run shows it.
  struct Host final : LiveChatDelegate {
    std::string heard;
    void received(const LiveChatMessage& message) override { heard += message.text; }
  };
  auto own = make<Host>();
  leave();
  EXPECT_EQ(say("5"), "");
  LiveChat::delegate = own;
  launch();
  EXPECT_EQ(onShow(), "Support: Hello 5");
  say("6");
  shell().handleURL(URL::fromString("https://example.org/help").value());
  EXPECT_EQ(opened, std::vector<std::string>{"https://example.org/help"});
  leave();
  EXPECT_EQ(own->heard, "");
  say("7");
  EXPECT_EQ(own->heard, "Hello 7");
  LiveChat::delegate = {};
}

TEST_F(ShellTest, ListsTheOptionalDocuments) {
  const auto list = make<ZVDocumentListViewController>();
  shell().mainNC()->pushViewController(list, true);
  settle();
  const auto table = list->tableView.lock();
  EXPECT_FALSE(table->cellForRow(3));
  for (const std::size_t i : {1U, 2U}) { // the last one's kind stands above it as well
    const auto row = std::dynamic_pointer_cast<ZVDocumentTableViewCell>(table->cellForRow(i));
    EXPECT_EQ(row->iconImageView.lock()->image(),
              icon(i == 1 ? ZVDocument::nationalId : ZVDocument::passport));
    EXPECT_EQ(row->documentButton.lock()->layer()->borderWidth(), 1);
    EXPECT_EQ(row->accessibilityLabel,
              i == 1 ? name(ZVDocument::nationalId) + ", 2 " + localized("sides")
                     : name(ZVDocument::passport));
    row->documentButton.lock()->sendActions(UIControlEvent::TouchUpInside);
    settle();
    EXPECT_EQ(step<ZVKYCCameraViewController>()->index, i == 1 ? 1 : 0);
    tap("backButton");
    EXPECT_EQ(title(), localized("documentsTitle")) << "the chrome is the list's again";
  }
}

} // namespace
} // namespace zuvi
