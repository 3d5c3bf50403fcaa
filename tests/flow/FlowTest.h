#pragma once

#include <ZuviSDK/UIKit/UIWindow.h>
#include <ZuviSDK/ZVKYCButton.h>
#include "kit/Helper/ZVDocument+Presentation.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/ZVCancelAlertViewController.h"
#include "kit/UI/ViewControllers/ZVDocumentListViewController.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLivenessVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"
#include "platform/Foundation/ClassName.h"
#include "testing/UIKit/ViewTree.h"
#include "testing/kit/KitTest.h"

namespace zuvi {

/// A host with the launch button on its only screen, and a person who taps through the flow.
class FlowTest : public KitTest {
protected:
  FlowTest() {
    front->film = Data(film);
    back->still = Data(jpeg(0));
    host->view()->addSubview(button);
    window->setRootViewController(host);
    window->makeKeyAndVisible();
    backend.answer(&FlowTest::succeed);
    delegate->told = [this] {
      EXPECT_FALSE(host->presentedViewController()) << "told before the flow goes";
    };
    settle();
  }
  /// The frame and all screens that were ever on show must have died.
  void TearDown() override {
    backend.release();
    settle();
    if (host->presentedViewController()) host->dismiss(false);
    settle();
    ZVKYCHelper::instance().rootVC = make<ZVRootViewController>();
    for (const auto& [name, screen] : watched_) // a request holds its screen until the answer
      EXPECT_TRUE(time.waitUntil([&screen = screen] { return screen.expired(); }, 3))
          << name << " lives on";
    window->setVisible(false);
    KitTest::TearDown();
  }

  /// Registers with a merchant of this JSON, of which `documents` is an object.
  void registerMerchant(const std::string& documentsJson, const std::string& language = "en",
                        const std::string& color = "green") {
    backend.answer(R"({"name":"M","configurations":[{"color":")" + color + R"(","language":")" +
                   language + R"(","documents":)" + documentsJson + "}]}");
    registerClient("client");
    backend.answer(&FlowTest::succeed);
  }
  /// The back end that holds no data: everything succeeds.
  static test::Reply succeed(const test::Request& request) {
    if (request.method == "PUT") return {200, {}, R"({"fields":[]})"};
    return {
        200, {}, request.path == "/v1/identities" ? R"({"id":"identity-1"})" : R"({"id":"doc"})"};
  }

  void launch() {
    button->sendActions(UIControlEvent::TouchUpInside);
    settle();
    ASSERT_EQ(top(), "ZVMainViewController");
  }
  static ZVRootViewController& shell() { return *ZVKYCHelper::instance().rootVC; }
  /// The step on top, by class.
  std::string top() {
    watch();
    return className(*shell().mainNC()->topViewController());
  }
  template <class Screen> std::shared_ptr<Screen> step() {
    return std::dynamic_pointer_cast<Screen>(shell().mainNC()->topViewController());
  }
  /// Waits, in real time, for a step that only the back end brings about.
  void arrive(const std::string& name) {
    EXPECT_TRUE(time.waitUntil([&] { return top() == name; })) << "there is " << top();
    settle();
  }
  /// Lets a transition end.
  void settle() { time.advance(0.5); }

  /// Touches the middle of a view as a finger does, by outlet, action, or text.
  void tap(const std::string& name, bool isText = false) {
    if (UIApplication::shared().isIgnoringInteractionEvents()) settle(); // nobody is that quick
    const auto view = findView(name, isText);
    ASSERT_TRUE(view && isShown(*view)) << name << " is not in sight";
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
  void tapBottom() { tap("bottomButton"); }
  /// What is said over a camera's preview; empty when nothing is in sight.
  static std::string notice() {
    const auto label = std::dynamic_pointer_cast<UILabel>(findView("cameraNoticeLabel", false));
    return label && isShown(*label) ? label->text().value_or("") : "";
  }
  /// Takes the whole flow away.
  void leave() {
    host->dismiss(false);
    settle();
  }
  void openRecorder() {
    launch();
    tapBottom();
    ASSERT_EQ(top(), "ZVLiveCameraViewController");
  }
  /// From the recorder to the review.
  void record() {
    tap("recordButton");
    time.advance(12);
    ASSERT_EQ(top(), "ZVLivenessVerifyViewController");
  }
  /// How many films are on the disk.
  std::size_t filesLeft() const {
    std::error_code none;
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(documents, none), {}));
  }
  /// Takes a picture with these bytes.
  void shoot(const std::string& bytes) {
    back->still = Data(bytes);
    tapBottom();
  }
  /// From the launch button to the upload of the film.
  void launchToUpload() {
    openRecorder();
    record();
    tapBottom();
  }

  /// Does what a willing person does on each step until the run ends; tells the steps with the
  /// pages of their dots. Of the list that person takes `pick`.
  std::string walk(const std::string& pick) {
    std::string steps;
    std::size_t told = 0;
    for (int count = 0; count < 20; count++) {
      const std::string screen = top();
      EXPECT_EQ(back->isRunning(), screen == "ZVKYCCameraViewController");
      // An upload may be over before anybody looks.
      const auto& stack = shell().mainNC()->viewControllers();
      for (; told + 1 < stack.size(); told++)
        if (className(*stack[told]) == "ZVUploadViewController") steps += "upload(-1) ";
      const auto tell = [&](const std::string& step) {
        steps += step + "(" + std::to_string(page()) + ") ";
        see(step);
      };
      if (screen == "ZVMainViewController") {
        tell("start");
        tapBottom();
      } else if (screen == "ZVLiveCameraViewController") {
        tell("recorder");
        tap("recordButton");
        see("count-down");
        time.advance(7);
        see("recording");
        time.advance(5.5);
      } else if (screen == "ZVLivenessVerifyViewController") {
        tell("review");
        tapBottom();
      } else if (screen == "ZVUploadViewController") {
        EXPECT_EQ(page(), -1);
        see("upload");
        EXPECT_TRUE(time.waitUntil([this] { return top() != "ZVUploadViewController"; }));
        settle();
      } else if (screen == "ZVKYCCameraViewController") {
        tell(documentOf(title()));
        shoot(jpeg(++shots));
      } else if (screen == "ZVDocumentListViewController") {
        tell("list");
        tap(uppercased(name(fromRawValue<ZVDocument>(pick).value())), true);
      } else {
        tell("verified");
        break;
      }
    }
    return steps;
  }
  /// Called on each step of a walk, before anything is done there.
  virtual void see(const std::string&) {}

  std::string title() const { return shell().titleLabel.lock()->text().value_or("-"); }
  static std::string bottomTitle() { return shell().bottomButton.lock()->title().value_or("-"); }
  static int page() { return *shell().currentPage; }
  static std::string jpeg(int number) {
    return "\xff\xd8\xff\xe0 picture " + std::to_string(number);
  }

  /// Titles bear the documents' names in the merchant's language.
  static std::string documentOf(const std::string& title) {
    for (const auto& known : RawValues<ZVDocument>::all)
      if (title == name(known.value) + ".") return std::string(known.text);
    return title;
  }

  int shots = 0; ///< pictures taken on a walk
  const std::string film{"\0\0\0\x14"
                         "ftypqt  film \r\n--Boundary\0",
                         26};
  std::shared_ptr<UIWindow> window = make<UIWindow>();
  std::shared_ptr<UIViewController> host = make<UIViewController>();
  std::shared_ptr<ZVKYCButton> button = make<ZVKYCButton>(CGRect{40, 300, 280, 60});

private:
  void watch() {
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
  std::vector<std::pair<std::string, std::weak_ptr<UIViewController>>> watched_;
};

} // namespace zuvi
