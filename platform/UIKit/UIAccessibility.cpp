#include <ZuviSDK/UIKit/UIAccessibility.h>

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIScrollView.h"

#include <map>
#include <utility>

namespace zuvi {

namespace {

using Role = UIAccessibilityRole;

bool holdsOthers(Role role) {
  return role == Role::List || role == Role::ListItem || role == Role::Dialog;
}

/// The elements of one sheet.
class Collector {
public:
  using Item = UIAccessibility::Item;

  explicit Collector(UIView& sheet) { visit(sheet, std::nullopt, true); }

  std::vector<Item> take() {
    std::vector<bool> kept(items_.size());
    for (std::size_t i = items_.size(); i-- > 0;) {
      if (!holdsOthers(items_[i].element.role)) kept[i] = !isCovered(*items_[i].view);
      if (kept[i] && items_[i].parent) kept[*items_[i].parent] = true;
    }
    std::vector<Item> result;
    std::vector<std::size_t> place(items_.size());
    for (std::size_t i = 0; i < items_.size(); i++) {
      if (!kept[i]) continue;
      place[i] = result.size();
      result.push_back(std::move(items_[i]));
      if (auto& parent = result.back().parent) parent = place[*parent];
    }
    return result;
  }

private:
  void visit(UIView& view, std::optional<std::size_t> parent, bool listed) {
    if (!view.isSeen()) return;
    order_.emplace(&view, order_.size());
    listed = listed && !view.accessibilityElementsHidden;
    UIAccessibilityElement element;
    if (listed) element = view.accessibilityElement();
    if (element.role != Role::None && !view.bounds().isEmpty()) {
      const bool whole = !holdsOthers(element.role);
      items_.push_back({&view, std::move(element), view.convertToScreen(view.bounds()), parent});
      parent = items_.size() - 1;
      listed = !whole;
    }
    for (const auto& subview : view.subviews())
      visit(*subview, parent, listed);
  }

  /// By something that was drawn later and takes the touch.
  bool isCovered(const UIView& view) const {
    if (isScrolledOut(view)) return false;
    const UIView* hit =
        UIApplication::shared().hitTest(view.convertToScreen(view.bounds()).center());
    if (!hit || hit->isDescendantOf(view)) return false;
    const auto at = order_.find(hit);
    return at == order_.end() || at->second > order_.at(&view);
  }

  std::vector<Item> items_;
  std::map<const UIView*, std::size_t> order_; ///< in which the views are drawn
};

} // namespace

void UIAccessibility::post(Notification notification, const std::string& text) {
  if (notification == Notification::Announcement)
    UIScreen::main().announce(text);
  else
    UIScreen::main().setNeedsFrame();
}

std::vector<UIAccessibility::Item> UIAccessibility::items() {
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (!(*window)->isSeen()) continue;
    const auto& sheets = (*window)->subviews();
    for (auto sheet = sheets.rbegin(); sheet != sheets.rend(); ++sheet)
      if (auto found = Collector(**sheet).take(); !found.empty()) return found;
  }
  return {};
}

bool isScrolledOut(const UIView& view) {
  const CGPoint middle = view.convertToScreen(view.bounds()).center();
  for (const UIView* up = view.superview(); up; up = up->superview())
    if (dynamic_cast<const UIScrollView*>(up) &&
        !up->convertToScreen(up->bounds()).contains(middle))
      return true;
  return false;
}

} // namespace zuvi
