#include "tests/flow/FlowTest.h"

namespace zuvi {

const std::string FlowTest::film("\0\0\0\x14"
                                 "ftypqt  film \r\n--Boundary\0",
                                 26);

FlowTest::FlowTest() {
  front->film = Data(film);
  back->still = Data(jpeg(0));
  host->view()->addSubview(button);
  window->setRootViewController(host);
  window->makeKeyAndVisible();
  backend.answer(&FlowTest::succeed);
  settle();
}

void FlowTest::TearDown() {
  backend.release();
  settle();
  if (host->presentedViewController()) host->dismiss(false);
  settle();
  EXPECT_FALSE(front->isRunning() || back->isRunning()) << "a camera outlives the flow";
  ZVKYCHelper::instance().rootVC = make<ZVRootViewController>();
  // A request that still runs holds its screen until the answer.
  time.waitUntil(
      [this] {
        return std::all_of(watched_.begin(), watched_.end(),
                           [](const auto& entry) { return entry.second.expired(); });
      },
      3);
  for (const auto& [name, screen] : watched_)
    EXPECT_TRUE(screen.expired()) << name << " lives on";
  window->setVisible(false);
  KitTest::TearDown();
}

test::Reply FlowTest::succeed(const test::Request& request) {
  if (request.method == "PUT") return {200, {}, R"({"fields":[]})"};
  return {200, {}, request.path == "/v1/identities" ? R"({"id":"identity-1"})" : R"({"id":"doc"})"};
}

void FlowTest::registerMerchant(const std::string& documentsJson, const std::string& language) {
  backend.answer(R"({"name":"M","configurations":[{"color":"green","language":")" + language +
                 R"(","documents":)" + documentsJson + "}]}");
  registerClient("client");
  backend.answer(&FlowTest::succeed);
}

void FlowTest::watch() {
  const auto add = [this](const std::shared_ptr<UIViewController>& screen) {
    for (const auto& [name, known] : watched_)
      if (known.lock() == screen) return;
    watched_.emplace_back(className(*screen), screen);
  };
  add(ZVKYCHelper::instance().rootVC);
  add(shell().mainNC());
  for (const auto& screen : shell().mainNC()->viewControllers())
    add(screen);
  if (const auto alert = shell().presentedViewController()) add(alert);
}

void FlowTest::launch() {
  button->sendActions(UIControlEvent::TouchUpInside);
  settle();
  ASSERT_EQ(top(), "ZVMainViewController");
}

std::string FlowTest::top() {
  watch();
  return className(*shell().mainNC()->topViewController());
}

void FlowTest::arrive(const std::string& name) {
  EXPECT_TRUE(time.waitUntil([&] { return top() == name; })) << "there is " << top();
  settle();
}

void FlowTest::tap(const std::string& name, bool isText) {
  if (UIApplication::shared().isIgnoringInteractionEvents()) settle(); // nobody is that quick
  const auto view = demo::findView(name, isText);
  ASSERT_TRUE(view && demo::isShown(*view)) << name << " is not in sight";
  const CGPoint middle = view->convertToScreen(view->bounds()).center();
  const UIView* hit = UIApplication::shared().hitTest(middle);
  ASSERT_TRUE(hit &&
              (hit->isDescendantOf(*view) || (isText && hit->superview() == view->superview())))
      << name << " is covered";
  UIApplication::shared().touchBegan(middle);
  UIApplication::shared().touchEnded(middle);
  settle();
  if (host->presentedViewController()) watch();
}

void FlowTest::record() {
  tap("recordButton");
  time.advance(12);
  ASSERT_EQ(top(), "ZVLivenessVerifyViewController");
}

void FlowTest::shoot(const std::string& bytes) {
  back->still = Data(bytes);
  tapBottom();
}

void FlowTest::launchToUpload() {
  launch();
  tapBottom();
  record();
  tapBottom();
}

} // namespace zuvi
