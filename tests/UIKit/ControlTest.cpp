// What controls hear of fingers and keys, and who has the focus.

#include <ZuviSDK/UIKit/UIButton.h>
#include "platform/UIKit/UITextField.h"
#include "testing/UIKit/ScreenFixture.h"

namespace zuvi::test {
namespace {

class ControlTest : public ScreenFixture {
protected:
  /// A button that notes its events in `heard`, by `name` and event.
  std::shared_ptr<UIButton> addButton(const std::string& name, const CGRect& frame) {
    auto button = add<UIButton>(frame);
    button->setTitle(name);
    const auto note = [&](UIControlEvent event, const std::string& word) {
      button->addTarget(event, [this, name, word] { heard += name + word + ' '; });
    };
    note(UIControlEvent::TouchDown, ":down");
    note(UIControlEvent::TouchUpInside, ":inside");
    note(UIControlEvent::TouchUpOutside, ":outside");
    return button;
  }
  std::string take() { return std::exchange(heard, {}); }
  static UIApplication& app() { return UIApplication::shared(); }

  std::string heard;
};

TEST_F(ControlTest, FingerIsFollowedUntilItIsLifted) {
  const auto button = addButton("a", {100, 100, 60, 40});
  app().touchBegan({110, 110});
  for (const double x : {110, 200, 300, 120}) { // a blunt finger still means it
    app().touchMoved({x, 110});
    EXPECT_EQ(button->isHighlighted(), x != 300) << x;
  }
  app().touchEnded({120, 110});
  EXPECT_EQ(take(), "a:down a:inside ");
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[&] {
         app().touchEnded({300, 300});
       },
       "a:down a:outside "},
      {[&] { app().touchCancelled(); }, "a:down "},
      {[&] {
         app().touchBegan({10, 10});
       },
       "a:down "},                                      // another finger takes the touch over
      {[&] { button->setEnabled(false); }, "a:down "}}; // deaf from the middle of a touch on
  for (const auto& [meanwhile, expected] : rows) {
    app().touchBegan({110, 110});
    meanwhile();
    app().touchEnded({110, 110});
    EXPECT_EQ(take(), expected);
  }
}

TEST_F(ControlTest, ControlMayLeaveInItsOwnAction) {
  for (const auto event : {UIControlEvent::TouchDown, UIControlEvent::TouchUpInside}) {
    auto field = add<UITextField>({0, 0, 100, 40});
    const std::weak_ptr<UITextField> weak = field;
    field->addTarget(event, [weak] {
      if (const auto view = weak.lock()) view->removeFromSuperview();
    });
    field = nullptr;
    tap({10, 10});
    EXPECT_TRUE(weak.expired());
  }
}

TEST_F(ControlTest, TabWalksTheControlsInOrderAndKeysPressThem) {
  const auto a = addButton("a", {0, 0, 50, 50}), b = addButton("b", {0, 60, 50, 50});
  addButton("disabled", {0, 120, 50, 50})->setEnabled(false);
  const auto last = add<UITextField>({0, 240, 100, 40});
  const auto page = make<UIView>(CGRect{0, 0, 320, 480});
  for (const auto& view : std::vector(window->subviews()))
    page->addSubview(view);
  window->addSubview(page);
  std::vector<UIView*> order;
  for (const char* key : {"Tab", "Tab", "Tab", "Tab", "ISO_Left_Tab"}) {
    press(key);
    order.push_back(app().firstResponder());
  }
  EXPECT_EQ(order, (std::vector<UIView*>{a.get(), b.get(), last.get(), a.get(), last.get()}));
  press("Tab", {}, true);
  press("space", " ");
  press("Return");
  EXPECT_EQ(take(), "b:inside b:inside ");
  // The focus leaves with its view.
  b->removeFromSuperview();
  EXPECT_EQ(app().firstResponder(), nullptr);
  // A sheet on top has the keys to itself.
  const auto sheet = add({0, 0, 320, 480});
  press("Tab");
  EXPECT_EQ(app().firstResponder(), nullptr);
  const auto inner = make<UIButton>(CGRect{0, 0, 50, 50});
  sheet->addSubview(inner);
  press("Tab");
  EXPECT_TRUE(inner->isFirstResponder());
}

TEST_F(ControlTest, FieldTakesWholeCharactersAwayAndShowsTheEndOfItsText) {
  const auto field = add<UITextField>({10, 10, 120, 30});
  int edits = 0;
  field->addTarget(UIControlEvent::EditingChanged, [&] { edits++; });
  tap({20, 20});
  for (const char* character : {"ä", "€", "😀", "x"})
    press("key", character);
  press("BackSpace");
  press("BackSpace");
  press("Left"); // is none of its own
  EXPECT_EQ(field->text(), "ä€");
  for (int i = 0; i < 3; i++)
    press("BackSpace");
  EXPECT_EQ(field->text(), "");
  EXPECT_EQ(edits, 8) << "told of a change that was none";
  field->setText("\x80\xbf\xff");
  press("BackSpace");
  press("BackSpace");
  EXPECT_EQ(field->text(), "");

  field->setText(std::string(40, 'm'));
  field->layoutIfNeeded();
  const CGRect caret = field->subviews().back()->frame();
  EXPECT_NEAR(caret.x + caret.width, 120, 0.01);
}

} // namespace
} // namespace zuvi::test
