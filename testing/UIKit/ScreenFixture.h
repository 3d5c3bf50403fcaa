#pragma once

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/OffscreenSurface.h"
#include "platform/UIKit/ScreenPicture.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/UIKit/Pixels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace zuvi::test {

/// A screen in memory with one window, in virtual time. What a test has asked to watch must be gone
/// once the window is, and nothing may wait on the main queue by then.
class ScreenFixture : public testing::Test {
protected:
  ScreenFixture() {
    watch("window", window);
    window->makeKeyAndVisible();
  }

  void TearDown() override {
    window->setVisible(false);
    window = nullptr;
    time.advance(3);
    for (const auto& entry : watched_)
      EXPECT_TRUE(entry.second.expired()) << entry.first << " has outlived the test";
    EXPECT_TRUE(UIScreen::main().windows().empty());
    EXPECT_FALSE(UIApplication::shared().isIgnoringInteractionEvents());
    EXPECT_EQ(UIApplication::shared().firstResponder(), nullptr);
    EXPECT_TRUE(std::isinf(DispatchQueue::main().nextDeadline())) << "something waits still";
  }

  template <class T> std::shared_ptr<T> watch(const std::string& name, std::shared_ptr<T> object) {
    watched_.emplace_back(name, object);
    return object;
  }

  /// A view in the window's coordinates.
  template <class View = UIView> std::shared_ptr<View> add(const CGRect& frame) {
    auto view = watch("a view", make<View>());
    view->setFrame(frame);
    window->addSubview(view);
    return view;
  }
  std::shared_ptr<UIView> add(const CGRect& frame, const UIColor& color) {
    auto view = add(frame);
    view->setBackgroundColor(color);
    return view;
  }

  Pixels screen() { return Pixels(surface.picture(), UIScreen::main().scale()); }

  static void tap(CGPoint point) {
    UIApplication::shared().touchBegan(point);
    UIApplication::shared().touchEnded(point);
  }
  static void press(const std::string& name, const std::string& text = {}, bool shift = false) {
    UIApplication::shared().keyPressed({name, text, shift});
  }

  VirtualTime time;
  OffscreenSurface surface{{320, 480}, 2, {20, 0, 10, 0}};
  std::shared_ptr<UIWindow> window = make<UIWindow>();

private:
  std::vector<std::pair<std::string, std::weak_ptr<void>>> watched_;
};

} // namespace zuvi::test
