// When the page is loaded, how it moves in and out, and where its links lead.

#include "kit/Helper/LiveChat/ChatView.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "platform/QuartzCore/CAAnimation.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

struct Owner final : ChatViewDelegate {
  int closed = 0;
  void closedChatView() override { closed++; }
  void handleURL(const URL&) override {}
  void tell(const std::string& text) override { told = text; }
  std::string told;
};

const std::string address = "https://chat.host/open?license=1&group=0&native_platform=ios";
const std::string focus = "LiveChatWidget_emitFocus();", blur = "LiveChatWidget_emitBlur();";

class ChatViewTest : public ChatTest {
protected:
  ChatViewTest() {
    engine->results[focus] = engine->results[blur] = nullptr;
    window->makeKeyAndVisible();
    remake();
  }
  void remake() {
    if (view) view->removeFromSuperview();
    view = make<ChatView>(CGRect{0, 0, 375, 812}, zvKitBundle());
    view->webViewBridge = bridge;
    view->delegate = owner;
    window->addSubview(view);
    bridge->handle({{"messageType", "ready"}}); // what the kit says goes at once
    printed();
  }
  void TearDown() override {
    const std::weak_ptr<ChatView> weak = view;
    view->removeFromSuperview();
    view = nullptr;
    EXPECT_TRUE(weak.expired()) << "the view lives on";
    window->setVisible(false);
    ChatTest::TearDown();
  }
  void reloadLater() {
    view->customVariables = std::nullopt;
    time.advance(0.2);
  }
  void configure(const std::string& license = "1") { view->setConfiguration({{license}}); }
  /// Opened before, configured, and its page there.
  void preload() {
    markOpened();
    configure();
    reloadLater();
    ASSERT_TRUE(loaded());
    page()->client.didFinish();
    time.advance(2);
    page()->scripts.clear();
  }
  ChatView::Completion note() {
    return [this](bool finished) { ends.push_back(finished); };
  }
  WKWebView& web() { return *view->webView(); }
  std::string errorShown() {
    const auto& loading = view->loadingView();
    return loading->errorView()->superview() ? *loading->errorView()->message : "";
  }
  /// Waits for the error that only the server's answer brings.
  bool fails(const std::string& text) {
    return time.waitUntil([&] { return errorShown() == text; });
  }

  std::shared_ptr<UIWindow> window = make<UIWindow>();
  std::shared_ptr<WebViewBridge> bridge = std::make_shared<WebViewBridge>();
  std::shared_ptr<Owner> owner = std::make_shared<Owner>();
  std::shared_ptr<ChatView> view;
  std::vector<bool> ends;
};

TEST_F(ChatViewTest, NothingOfThePageIsFetchedBeforeItWasOpenedOnce) {
  view->customVariables = CustomVariables{{"Merchant", "a b"}};
  time.advance(0.2);
  EXPECT_TRUE(fails("Configuration not provided.")) << "everything else goes on";
  configure();
  time.advance(1);
  EXPECT_EQ(errorShown(), "Configuration not provided.") << "the first one loads nothing";
  view->customVariables = *view->customVariables;
  time.advance(1);
  EXPECT_EQ(errorShown(), "");
  EXPECT_TRUE(engine->pages.empty()) << "not even the engine is started";

  view->presentChat(true, note());
  time.settle();
  EXPECT_THAT(page()->loads, ElementsAre(address + "&params=Merchant%3Da%2520b"));
  EXPECT_EQ(page()->userAgent, "Engine/1 WebView_Widget_iOS/2.0.7");
  EXPECT_FALSE(page()->opaque);
  EXPECT_EQ(page()->configuration.userContentController->userScripts().size(), 1U);
  time.advance(1);
  EXPECT_EQ(server.requests().size(), 1U) << "one request for all";
  view->customVariables = *view->customVariables;
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), 2U);
  EXPECT_EQ(page()->userAgent, "Engine/1 WebView_Widget_iOS/2.0.7") << "no longer than at first";
}

TEST_F(ChatViewTest, ReloadsForWhatChangesAndNothingElse) {
  preload();
  configure(); // equal
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), 1U);
  configure("2");
  time.advance(0.1);
  view->customVariables = std::nullopt;
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), 2U) << "one load for both";
  EXPECT_EQ(server.requests().size(), 1U) << "the template is known";

  for (const char* event : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification,
                            UIKeyboardDidChangeFrameNotification}) {
    view->customVariables = std::nullopt;
    time.advance(0.1);
    NotificationCenter::defaultCenter().post(event);
    time.advance(1);
    EXPECT_EQ(page()->loads.size(), 2U) << "the keyboard drops what waits";
  }
  engine->results["navigator.userAgent"] = 7;
  view->customVariables = std::nullopt;
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), 2U) << "no user agent, no load";
  static_cast<LoadingViewDelegate&>(*view).reload();
  EXPECT_EQ(page()->reloads, 1);
}

TEST_F(ChatViewTest, SaysWhatWentWrong) {
  markOpened();
  reloadLater();
  EXPECT_TRUE(fails("Configuration not provided."));
  configure("with blank ");
  reloadLater();
  EXPECT_EQ(errorShown(), "Invalid url");
  EXPECT_THAT(printed(),
              ElementsAre("error: Invalid url",
                          testing::StartsWith("The chat's template gives no address: ")));

  configure();
  reloadLater();
  EXPECT_EQ(errorShown(), "") << "the spinner is back";
  ASSERT_TRUE(loaded());

  view->loadingView()->setAlpha(0);
  page()->client.didFail({"Any", 1, "broke off"});
  EXPECT_EQ(view->loadingView()->alpha(), 0);
  EXPECT_THAT(printed(), ElementsAre("Did fail navigation error: broke off"));
  page()->client.didFailProvisionalNavigation({NSURLErrorDomain, NSURLErrorCancelled, "other"});
  EXPECT_EQ(view->loadingView()->alpha(), 1);
  EXPECT_EQ(errorShown(), "") << "it gave way to another load";
  printed();
  const std::tuple<std::string, int, std::string> rows[] = {
      {"Any", NSURLErrorCancelled, "chatFailed"},
      {NSURLErrorDomain, NSURLErrorCannotFindHost, "chatUnreachable"},
      {NSURLErrorDomain, NSURLErrorTimedOut, "chatUnreachable"},
      {NSURLErrorDomain, NSURLErrorServerCertificateUntrusted, "chatNotSecure"}};
  const auto merchant = std::make_shared<ZVKYCMerchant>();
  merchant->currentLanguage = ZVLanguage::spanish;
  ZVKYCHelper::instance().merchant = merchant;
  for (const auto& [domain, code, text] : rows) {
    page()->client.didFailProvisionalNavigation({domain, code, "curl's words"});
    EXPECT_EQ(errorShown(), localized(text));
    EXPECT_THAT(printed(), ElementsAre("The chat did not load: curl's words"));
  }
  EXPECT_EQ(view->loadingView()->errorView()->reloadButton()->title(), "Volver a cargar");
}

TEST_F(ChatViewTest, OpeningItFetchesAPageThatIsNotThere) {
  markOpened();
  view->presentChat(false);
  EXPECT_TRUE(fails("Configuration not provided."));
  configure(); // such as by a merchant who answers late
  const std::function<void()> losses[] = {
      [] {},
      [&] { page()->client.processDidTerminate(); },
      [&] {
        page()->client.didFailProvisionalNavigation({"Any", 1, ""});
      },
  };
  std::size_t loads = 0;
  for (const auto& lose : losses) {
    lose();
    view->dismissChat(false);
    view->presentChat(false);
    EXPECT_TRUE(loaded(++loads));
  }
  view->dismissChat(false);
  view->presentChat(false);
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), loads) << "what is there is not fetched";
}

TEST_F(ChatViewTest, NoPageLeavesAPersonWithoutAWayOut) {
  preload();
  view->presentChat(false);
  UIApplication& application = UIApplication::shared();
  const auto closeButton = [](const UIView& of) {
    return std::dynamic_pointer_cast<CloseButton>(of.subviews().front());
  };
  const auto wayOut = closeButton(web());
  const auto say = [](ScriptedPage& by, const char* key) {
    by.client.didReceiveScriptMessage({"iosMobileWidget", Value::Dictionary{{key, "ready"}}});
  };
  const auto open = [&] {
    page()->client.createPage({WKNavigationType::Other, {}, false});
    return engine->pages.back();
  };
  page()->client.didCommit();
  say(*page(), "other");
  say(*open(), "messageType");
  EXPECT_FALSE(wayOut->isHidden()) << "neither has the chat's page spoken";
  say(*page(), "messageType");
  EXPECT_TRUE(wayOut->isHidden());
  application.setFirstResponder(&web());
  page()->client.didChangeResponsiveness(false);
  EXPECT_FALSE(wayOut->isHidden());
  EXPECT_EQ(application.firstResponder(), nullptr) << "a page that hangs swallows Escape";
  page()->client.didChangeResponsiveness(true);
  EXPECT_TRUE(wayOut->isHidden());
  EXPECT_EQ(application.firstResponder(), &web());

  closeButton(*web().subviews().back())->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_EQ(engine->pages.size(), 1U) << "the window has a way out of its own";
  open()->client.didClose();
  EXPECT_EQ(engine->pages.size(), 1U);
  open();
  page()->client.didCommit();
  EXPECT_EQ(engine->pages.size(), 1U) << "it goes with the page that opened it";
  EXPECT_FALSE(wayOut->isHidden()) << "another page, that has said nothing yet";
  open();
  page()->client.processDidTerminate();
  EXPECT_EQ(engine->pages.size(), 1U);
  EXPECT_EQ(application.firstResponder(), nullptr);
  wayOut->sendActions(UIControlEvent::TouchUpInside);
  time.advance(0.3);
  EXPECT_EQ(owner->closed, 2);
}

TEST_F(ChatViewTest, MovesInAndOutWithTheirCallbacks) {
  preload();
  page()->client.didFinish(); // out of sight
  EXPECT_THAT(std::exchange(page()->scripts, {}), ElementsAre(blur));
  view->presentChat(true, note());
  const CGRect whole{0, 44, 375, 812 - 44 - 34};
  EXPECT_EQ(web().frame(), whole);
  const LayerValue from = web().layer()->presented(LayerProperty::Position);
  EXPECT_EQ(std::pair(from[0], from[1]), std::pair(375 / 2.0, 812 * 1.5)) << "below the screen";
  view->dismissChat(true, note());
  time.advance(0.49);
  EXPECT_TRUE(ends.empty()) << "one movement at a time";
  time.advance(0.02);
  EXPECT_THAT(ends, ElementsAre(true));
  EXPECT_EQ(web().frame().height, whole.height - 1) << "which makes the page lay itself out";
  time.advance(0.1);
  EXPECT_EQ(web().frame(), whole);
  web().setFrame({});
  NotificationCenter::defaultCenter().post(UIKeyboardDidChangeFrameNotification);
  time.advance(0);
  EXPECT_EQ(web().frame(), whole);
  const auto at = [](int y) {
    return Value::Dictionary{{"x", 0}, {"y", y}, {"width", 375}, {"height", 300}};
  };
  NotificationCenter::defaultCenter().post(
      UIKeyboardWillShowNotification,
      {{UIKeyboardFrameBeginUserInfoKey, at(812)}, {UIKeyboardFrameEndUserInfoKey, at(512)}});
  time.advance(0);
  EXPECT_THAT(page()->pictured, ElementsAre(whole.size())) << "it goes along";

  UIApplication::shared().setActive(true);
  UIApplication::shared().setActive(false);
  view->dismissChat(true, note());
  for (const char* event : {UIKeyboardWillHideNotification, UIKeyboardDidChangeFrameNotification}) {
    NotificationCenter::defaultCenter().post(event);
    time.advance(0.05); // no keyboard that goes along keeps the chat from going
  }
  time.advance(0.15);
  EXPECT_EQ(owner->closed, 1);
  UIApplication::shared().setActive(true); // out of sight nobody comes or goes
  UIApplication::shared().setActive(false);
  EXPECT_THAT(page()->scripts, ElementsAre(focus, focus, blur, blur));

  view->presentChat(false, note());
  view->dismissChat(false, note());
  EXPECT_EQ(ends.size(), 4U) << "at once";
  time.advance(0.2);
  EXPECT_EQ(web().frame().y, 812) << "what is away again is not brought back";
}

TEST_F(ChatViewTest, ATapOnALinkLeadsOutWithoutAnOwnerToo) {
  preload();
  owner = nullptr;
  const auto decide = [&](WKNavigationType type, bool byPerson = true) {
    return page()->client.decidePolicy({type, URL::fromString("mailto:a@b"), true, byPerson});
  };
  EXPECT_EQ(decide(WKNavigationType::LinkActivated), WKNavigationActionPolicy::Cancel);
  EXPECT_THAT(opened, IsEmpty()) << "out of sight nobody taps";
  view->presentChat(false);
  EXPECT_EQ(decide(WKNavigationType::Other), WKNavigationActionPolicy::Allow);
  EXPECT_EQ(decide(WKNavigationType::LinkActivated, false), WKNavigationActionPolicy::Cancel);
  EXPECT_THAT(opened, IsEmpty()) << "a script may not";
  EXPECT_EQ(decide(WKNavigationType::LinkActivated), WKNavigationActionPolicy::Cancel);
  EXPECT_THAT(opened, ElementsAre("mailto:a@b"));
  page()->client.decidePolicy({WKNavigationType::LinkActivated, std::nullopt, true});
  EXPECT_EQ(page()->client.createPage({WKNavigationType::Other, {}, true}), nullptr);
}

TEST_F(ChatViewTest, ForgetsOnlyWhatTheChatLeft) {
  preload();
  ZVEndpoints::chatDomain() = "second.example";
  engine->records = {{"host.example"}, {"Livechat.example"}};
  view->clearSession();
  time.advance(1);
  EXPECT_EQ(page()->loads.size(), 1U) << "none of it is the chat's";
  engine->records = {{"mylivechat.com"}, {"host.example"}, {"a.second.example"}};
  view->clearSession();
  time.advance(1);
  EXPECT_THAT(engine->removed, ElementsAre("mylivechat.com", "a.second.example"));
  EXPECT_EQ(page()->loads.size(), 2U);
}

TEST_F(ChatViewTest, WithoutAWebViewThereIsStillAWayOut) {
  engine->available = false;
  remake();
  EXPECT_FALSE(view->webView());
  view->presentChat(true, note());
  view->dismissChat(false, note());
  configure();
  reloadLater();
  EXPECT_TRUE(fails("Invalid url"));
  EXPECT_THAT(printed(), ElementsAre("error: Invalid url",
                                     "The support chat can't be shown, as no engine in this test"));
  EXPECT_TRUE(ends.empty());
  static_cast<LoadingViewDelegate&>(*view).reload();
  view->loadingView()->closeButton()->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_EQ(owner->closed, 1);
  markOpened();
  engine->available = true;
  UIApplication::shared().setActive(true); // the host has made its window
  UIApplication::shared().setActive(false);
  time.advance(0.2);
  EXPECT_TRUE(loaded()) << "as if it had been there from the start";
  printed();
  const TemporaryFolder empty;
  make<ChatView>(CGRect{}, std::make_shared<Bundle>(empty.path()));
  EXPECT_THAT(printed(), ElementsAre("Exception while injecting LiveChatWidget.js script"));
}

} // namespace
} // namespace zuvi::test
