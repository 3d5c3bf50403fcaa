// Every text of the flow can be read on its ground, in light and dark colours and with each
// merchant's colour.

#include "kit/Helper/LiveChat/Manager.h"
#include "kit/Helper/ZVBundle.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/Foundation/UUID.h"
#include "tests/flow/FlowTest.h"

#include <cmath>

namespace zuvi {
namespace {

double luminance(const UIColor& color) {
  const auto linear = [](double v) {
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const UIColor& a, const UIColor& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

UIColor over(const UIColor& top, double alpha, const UIColor& below) {
  const double share = top.alpha * alpha;
  const auto mix = [share](double a, double b) { return a * share + b * (1 - share); };
  return {mix(top.red, below.red), mix(top.green, below.green), mix(top.blue, below.blue), 1};
}

/// Looks at one text in the order of drawing, for what is below the middle of it.
class Ground {
public:
  explicit Ground(const UILabel& text)
      : text_(text), middle_(text.convertToScreen(text.bounds()).center()) {}

  /// The least contrast; absent where something was drawn over the text, or it is not drawn.
  std::optional<double> contrast(const UIView& root) {
    draw(root, 1);
    return least_;
  }

private:
  void draw(const UIView& view, double alpha) {
    alpha *= view.alpha();
    if (view.isHidden() || alpha < 0.01) return;
    if (&view == &text_) {
      least_ = 21;
      for (const UIColor& color : grounds_)
        least_ = std::min(*least_, zuvi::contrast(over(text_.textColor(), alpha, color), color));
    } else if (view.convertToScreen(view.bounds()).contains(middle_)) {
      const double share = view.backgroundColor().alpha * alpha;
      if (share > 0.99) least_.reset();
      for (UIColor& color : grounds_)
        color = over(view.backgroundColor(), alpha, color);
      for (const auto& layer : view.layer()->sublayers())
        if (std::dynamic_pointer_cast<AVCaptureVideoPreviewLayer>(layer))
          grounds_ = {UIColor::white(), UIColor::black()}; // the camera sees either
    }
    for (const auto& subview : view.subviews())
      draw(*subview, alpha);
  }

  const UILabel& text_;
  CGPoint middle_;
  std::vector<UIColor> grounds_{UIColor::white()};
  std::optional<double> least_;
};

class ContrastTest : public FlowTest {
protected:
  void see(const std::string& step) override {
    check(step);
    if (step == "start") {
      tap("closeButtonTap");
      check("cancel");
      tap("continueButton");
      Manager::sharedInstance().webViewBridge()->handle(
          {{"messageType", "newMessage"},
           {"text", "Hello"},
           {"id", "contrast " + uuidString()},
           {"timestamp", 1},
           {"author", Value::Dictionary{{"name", "Ann"}}}});
      settle();
      check("message");
      UIApplication::shared().keyPressed({"Escape", {}});
      settle();
    } else if (const auto camera = this->step<ZVKYCCameraViewController>();
               camera && camera->type == ZVKYCCameraType::ineFront) {
      camera->showError(true);
      settle();
      check("document-failed");
      tapBottom();
      time.advance(3);
    }
    step == "upload" || step == "verified" ? backend.release() : backend.hold();
  }

  void check(const std::string& screen) {
    std::vector<const UILabel*> texts;
    const std::function<void(const UIView&)> find = [&](const UIView& view) {
      if (const auto* text = dynamic_cast<const UILabel*>(&view))
        if (!text->text().value_or("").empty()) texts.push_back(text);
      for (const auto& subview : view.subviews())
        find(*subview);
    };
    find(*window);
    const UIColor merchant = ZVKYCHelper::instance().merchant->color;
    for (const UILabel* text : texts) {
      if (text->isDescendantOf(*button)) continue;         // white on any merchant's colour
      if (text->outletName == "startTimerLabel") continue; // a huge number on the person's picture
      const auto found = Ground(*text).contrast(*window);
      if (!found) continue;
      seen_++;
      // The light look keeps white on the bright colours, where a button's heavy letters are read.
      const bool onMerchant =
          text->superview()->backgroundColor() == merchant || text->outletName == "cancelLabel";
      const double least = onMerchant && !isDark() ? 3 : 4.5;
      EXPECT_GE(*found, least) << screen << ": " << text->text().value();
    }
    EXPECT_GE(seen_, 1) << screen;
  }

  int seen_ = 0;
};

TEST_F(ContrastTest, EveryTextStandsOutOnEveryScreenInBothStyles) {
  UIScreen::main().configure({375, 812}, 2, {44, 0, 34, 0});
  button->setFrame({10, 100, 220, 60});
  for (const UIUserInterfaceStyle style : {UIUserInterfaceStyle::Light, UIUserInterfaceStyle::Dark})
    for (const std::string color : {"blue", "green", "red", "pink", "orange", "yellow"}) {
      SCOPED_TRACE(color + (style == UIUserInterfaceStyle::Dark ? ", dark" : ", light"));
      ZVKYC::instance().userInterfaceStyle = style;
      registerMerchant(R"({"required":["national-id"],"optional":["passport"]})", "en", color);
      seen_ = 0;
      launch();
      EXPECT_EQ(isDark(), style == UIUserInterfaceStyle::Dark);
      EXPECT_TRUE(walk("passport").ends_with("verified(-1) "));
      EXPECT_GE(seen_, 40);
      tapBottom();
    }
  ZVKYC::instance().userInterfaceStyle = UIUserInterfaceStyle::Light;
  setDark(false);
}

} // namespace
} // namespace zuvi
