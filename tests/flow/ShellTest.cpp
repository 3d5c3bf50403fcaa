// The frame of the flow: what steps publish, its buttons, the keyboard, and the plain screens.

#include "kit/Helper/LiveChat/LiveChat.h"
#include "kit/Helper/LiveChat/LiveChatMessage.h"
#include "kit/Helper/LiveChat/Manager.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "kit/UI/Views/ZVDocumentButton.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/UIAlertController.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class ShellTest : public FlowTest {
protected:
  void SetUp() override {
    registerMerchant(R"({"optional":["passport","national-id","passport"]})");
    launch();
  }
  static double space() { return shell().containerBottomSpace.lock()->constant(); }
};

TEST_F(ShellTest, TurnsWhatStepsPublishIntoChrome) {
  ZVRootViewController& frame = shell();
  frame.showLiveView = true;
  EXPECT_EQ(frame.containerView.lock()->frame().maxY(), 812) << "laid out at once";
  frame.bottomButtonTitle = std::nullopt;
  EXPECT_EQ(space(), 0) << "a missing title leaves it alone";
  frame.bottomButtonTitle = "Go on";
  EXPECT_EQ(space(), 34 + 88);
  frame.currentPage = 2;
  frame.currentPage = -1;
  EXPECT_EQ(frame.pageControl.lock()->currentPage(), 2);
}

TEST_F(ShellTest, MakesRoomForTheKeyboard) {
  const auto post = [](const char* name, const Value& frame, const Value& duration) {
    NotificationCenter::defaultCenter().post(name,
                                             {{UIKeyboardFrameEndUserInfoKey, frame},
                                              {UIKeyboardAnimationDurationUserInfoKey, duration}});
  };
  const Value keyboard = Value::Dictionary{{"x", 0}, {"y", 512}, {"width", 375}, {"height", 300}};
  for (const Value& odd : {Value(), Value("text"), Value(Value::Dictionary{{"height", "300"}})}) {
    post(UIKeyboardWillShowNotification, odd, 0.25);
    post(UIKeyboardWillShowNotification, keyboard, odd);
  }
  NotificationCenter::defaultCenter().post(UIKeyboardWillHideNotification);
  EXPECT_EQ(space(), 34 + 88) << "a notice that says nothing changes nothing";

  // What a step has at its lower end stays clear of the bar.
  const auto end = [](const std::weak_ptr<UIView>& outlet) {
    const auto view = outlet.lock();
    return view->convertToScreen(view->bounds()).maxY();
  };
  const auto review = make<ZVCardVerifyViewController>();
  const auto camera = make<ZVKYCCameraViewController>();
  for (const std::shared_ptr<UIViewController>& step :
       {std::shared_ptr<UIViewController>(review), {camera}}) {
    shell().mainNC()->pushViewController(step, true);
    settle();
    post(UIKeyboardWillShowNotification, keyboard, 0.25);
    EXPECT_EQ(space(), 250);
    post(UIKeyboardWillHideNotification, keyboard, 0);
    EXPECT_EQ(space(), 40);
    EXPECT_LT(step == review ? end(review->retakeButton) : end(camera->cardLabel2),
              shell().bottomView.lock()->frame().minY());
  }
  shell().showLiveView = true; // the bar is out of the way
  EXPECT_GT(end(camera->cardLabel2), shell().bottomView.lock()->frame().minY());
}

TEST_F(ShellTest, GoesOnWhereItWasWhenTheWindowWasHidden) {
  registerMerchant(R"({"required":["passport"]})");
  const auto blink = [&](const std::function<void()>& meanwhile = [] {}) {
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
  blink([&] {
    EXPECT_EQ(front->filmsDiscarded, 1) << "nobody is filmed unseen";
    EXPECT_EQ(filesLeft(), 0U);
  });
  record();
  backend.hold();
  tapBottom();
  blink([&] { // the answer is not lost
    backend.release();
    EXPECT_FALSE(time.waitUntil([this] { return top() != "ZVUploadViewController"; }, 0.2));
  });
  arrive("ZVKYCCameraViewController");
  blink([&] { EXPECT_FALSE(back->isRunning()); });
  EXPECT_TRUE(back->isRunning());
  shoot(jpeg(1));
  arrive("ZVVerifiedViewController");
  tapBottom();
  EXPECT_EQ(delegate->calls, std::vector<std::string>{"success identity-1"});
  EXPECT_EQ(backend.requests().size(), 4U) << "two merchants, one identity, one document";
}

TEST_F(ShellTest, OpensTheChatAndItsMessages) {
  Manager& chat = Manager::sharedInstance();
  EXPECT_EQ((*chat.configuration)->licenseId, "4173052");
  EXPECT_EQ(LiveChat::allCustomVariables(), (CustomVariables{{"Merchant", "M"}}));
  for (const char* key : {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey"})
    UserDefaults::standard().set(key, nullptr);
  const auto say = [&](const std::string& id) {
    chat.webViewBridge()->handle({{"messageType", "newMessage"},
                                  {"text", "Hello " + id},
                                  {"id", id},
                                  {"timestamp", 1},
                                  {"author", Value::Dictionary{{"name", "Ann"}}}});
    settle();
    return std::dynamic_pointer_cast<UIAlertController>(shell().presentedViewController());
  };
  tap("infoButtonTap");
  time.advance(0.2);
  EXPECT_TRUE(LiveChat::isChatPresented());
  EXPECT_FALSE(say("seen already"));
  LiveChat::dismissChat();
  settle();

  auto alert = say("1");
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->title() + "|" + alert->message(), "Support|Hello 1");
  ASSERT_EQ(alert->actions().size(), 2U);
  EXPECT_EQ(alert->actions()[0].title + "|" + alert->actions()[1].title, "Go to Chat|Cancel");
  EXPECT_EQ(alert->actions()[1].style, UIAlertAction::Style::Cancel);
  alert->choose(1);
  settle();
  EXPECT_FALSE(LiveChat::isChatPresented());
  alert = say("2");
  ASSERT_TRUE(alert);
  alert->choose(0);
  time.advance(1);
  EXPECT_TRUE(LiveChat::isChatPresented());
  LiveChat::dismissChat(false);
  settle();

  // Each in its turn, whatever lies over the frame meanwhile.
  const auto onShow = [] {
    const auto shown =
        std::dynamic_pointer_cast<UIAlertController>(shell().presentedViewController());
    return shown ? shown->message() : "";
  };
  tap("closeButtonTap");
  for (const char* id : {"3", "4"})
    EXPECT_FALSE(say(id));
  tap("continueButton");
  for (const char* text : {"Hello 3", "Hello 4"}) {
    EXPECT_EQ(onShow(), text);
    KeyPress escape;
    escape.name = "Escape";
    UIApplication::shared().keyPressed(escape);
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
  EXPECT_FALSE(say("5"));
  LiveChat::delegate = own;
  launch();
  EXPECT_EQ(onShow(), "Hello 5");
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
  list->identityId = "i";
  shell().mainNC()->pushViewController(list, true);
  settle();
  const auto table = list->tableView.lock();
  EXPECT_FALSE(table->cellForRow(3));
  for (const std::size_t i : {1U, 2U}) { // the last one's kind stands above it as well
    const auto row = std::dynamic_pointer_cast<ZVDocumentTableViewCell>(table->cellForRow(i));
    EXPECT_EQ(row->iconImageView.lock()->image(),
              icon(i == 1 ? ZVDocument::nationalId : ZVDocument::passport));
    row->documentButton.lock()->sendActions(UIControlEvent::TouchUpInside);
    settle();
    const auto camera = step<ZVKYCCameraViewController>();
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->index, i == 1 ? 1 : 0);
    EXPECT_FALSE(camera->isRequired);
    tap("backButton");
    EXPECT_EQ(title(), localized("documentsTitle")) << "the chrome is the list's again";
  }
}

} // namespace
} // namespace zuvi
