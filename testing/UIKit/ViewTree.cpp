#include "testing/UIKit/ViewTree.h"

#include <ZuviSDK/UIKit/UIControl.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Foundation/ClassName.h"
#include "platform/UIKit/UIScreen.h"
#include "testing/UIKit/ScreenWatcher.h"

namespace zuvi {

Value::Dictionary describeView(const UIView& view) {
  Value::Dictionary description;
  const CGRect frame = view.convertToScreen(view.bounds());
  description["class"] = className(view);
  if (!view.outletName.empty()) description["outlet"] = view.outletName;
  description["frame"] = Value::List{frame.x, frame.y, frame.width, frame.height};
  description["alpha"] = view.alpha();
  description["hidden"] = view.isHidden();
  if (!view.accessibilityLabel.empty()) description["label"] = view.accessibilityLabel;
  view.describe(description);
  return description;
}

namespace {

Value::Dictionary describeTree(const UIView& view) {
  Value::Dictionary description = describeView(view);
  Value::List children;
  for (const auto& subview : view.subviews())
    children.emplace_back(describeTree(*subview));
  description["children"] = std::move(children);
  return description;
}

bool matches(const UIView& view, const std::string& name, bool isText) {
  if (!isText) {
    if (view.outletName == name || className(view) == name) return true;
    const auto* control = dynamic_cast<const UIControl*>(&view);
    return control && control->actionName == name;
  }
  Value::Dictionary words;
  view.describe(words);
  return stringValue(words, "text") == name || stringValue(words, "title") == name;
}

void search(const UIView& view, const std::string& name, bool isText, bool shown,
            std::shared_ptr<UIView>& found, std::shared_ptr<UIView>& hidden) {
  const auto& subviews = view.subviews();
  for (auto subview = subviews.rbegin(); subview != subviews.rend() && !found; ++subview) {
    const bool visible = shown && !(*subview)->isHidden() && (*subview)->alpha() >= 0.01;
    if (matches(**subview, name, isText)) (visible ? found : hidden) = *subview;
    if (!found) search(**subview, name, isText, visible, found, hidden);
  }
}

} // namespace

Value describeScreen() {
  UIScreen::main().layoutIfNeeded();
  Value::List screens, windows;
  for (const auto& screen : screenStack())
    screens.emplace_back(className(*screen));
  for (const UIWindow* window : UIScreen::main().windows())
    windows.emplace_back(describeTree(*window));
  return Value::Dictionary{{"screens", std::move(screens)}, {"windows", std::move(windows)}};
}

std::shared_ptr<UIView> findView(const std::string& name, bool isText) {
  UIScreen::main().layoutIfNeeded();
  std::shared_ptr<UIView> found, hidden;
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend() && !found; ++window)
    search(**window, name, isText, true, found, hidden);
  return found ? found : hidden;
}

bool isShown(const UIView& view) {
  for (const UIView* up = &view; up; up = up->superview())
    if (up->isHidden() || up->alpha() < 0.01) return false;
  return true;
}

} // namespace zuvi
