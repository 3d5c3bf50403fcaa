#pragma once

#include <ZuviSDK/UIKit/UINavigationController.h>
#include "testing/UIKit/ScreenFixture.h"

namespace zuvi::test {

/// Screens that note their appearance calls, in order: "a+" will appear, "a+!" did, "a-" will
/// disappear, "a-!" did; a call of an animated movement ends with "~".
class ControllerFixture : public ScreenFixture {
protected:
  struct Screen : UIViewController {
    Screen(std::string n, std::string& l) : name(std::move(n)), log(l) {}
    void viewDidLoad() override { note("*", false); }
    void viewWillAppear(bool animated) override { note("+", animated); }
    void viewDidAppear(bool animated) override {
      note("+!", animated);
      if (onDidAppear) std::exchange(onDidAppear, nullptr)();
    }
    void viewWillDisappear(bool animated) override { note("-", animated); }
    void viewDidDisappear(bool animated) override { note("-!", animated); }
    void note(const char* word, bool animated) { log += name + word + (animated ? "~ " : " "); }

    std::string name;
    std::string& log;
    std::function<void()> onDidAppear;
  };

  /// Every screen has a colour of its own on show; it is watched until the end of the test.
  std::shared_ptr<Screen> screenNamed(const std::string& name,
                                      const UIColor& color = {1, 1, 1, 1}) {
    const std::size_t noted = log.size();
    auto made = watch(name, make<Screen>(name, log));
    made->view()->setBackgroundColor(color);
    watch("the view of " + name, made->view());
    log.resize(noted); // its loading is no news
    return made;
  }
  std::shared_ptr<Screen> overlayNamed(const std::string& name) {
    auto made = screenNamed(name);
    made->modalPresentationStyle = UIModalPresentationStyle::OverCurrentContext;
    return made;
  }
  std::shared_ptr<UINavigationController> stack(const std::shared_ptr<UIViewController>& root) {
    return watch("stack", make<UINavigationController>(root));
  }
  /// What was noted since the last call.
  std::string take() {
    std::string taken = std::exchange(log, {});
    if (!taken.empty()) taken.pop_back();
    return taken;
  }
  std::string finish() {
    time.advance(1);
    EXPECT_FALSE(UIApplication::shared().isIgnoringInteractionEvents());
    return take();
  }
  /// The colour in the middle of the screen.
  Pixel middle() { return screen().at(160, 240); }

  std::string log;
};

inline constexpr UIColor redPaint{1, 0, 0, 1}, greenPaint{0, 1, 0, 1}, bluePaint{0, 0, 1, 1};

} // namespace zuvi::test
