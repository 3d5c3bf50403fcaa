#include "platform/UIKit/ConstraintSolver.h"

#include <ZuviSDK/UIKit/UIView.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zuvi {

bool isHorizontal(LayoutAttribute attribute) {
  return attribute == LayoutAttribute::Left || attribute == LayoutAttribute::Right ||
         attribute == LayoutAttribute::CenterX || attribute == LayoutAttribute::Width;
}

void NSLayoutConstraint::setConstant(double constant) {
  if (constant == constant_) return;
  constant_ = constant;
  if (const auto view = owner.lock()) view->setNeedsLayout();
}

namespace {

/// One direction of one view. Any two of the four values give the other two.
struct Axis {
  std::optional<double> min, mid, max, size;

  bool isSolved() const { return min && size; }

  void derive() {
    const int known = min.has_value() + mid.has_value() + max.has_value() + size.has_value();
    if (known < 2) return;
    if (!size) {
      if (min && max)
        size = *max - *min;
      else if (min && mid)
        size = 2 * (*mid - *min);
      else
        size = 2 * (*max - *mid);
    }
    if (!min) min = max ? *max - *size : *mid - *size / 2;
    if (!max) max = *min + *size;
    if (!mid) mid = *min + *size / 2;
  }
};

struct Box {
  Axis horizontal, vertical;
};

class Propagation {
public:
  Propagation(const UIView& container, double width, std::optional<double> height)
      : container_(container) {
    for (const auto& constraint : container.constraints()) {
      note(constraint->firstItem);
      note(constraint->secondItem);
    }
    // Widths first: the height of a text follows from its width. A view that is held to its
    // greatest width takes what hangs on it along, so all is solved anew then.
    do
      solveHorizontally(width, height);
    while (limitWidths());
    for (auto& [view, box] : boxes_)
      if (!box.vertical.size)
        wish(box.vertical, view->sizeThatFits({*box.horizontal.size, -1}).height);
    for (auto& [view, box] : boxes_)
      complete(box.vertical, unturned(*view).y, view->bounds().height);
  }

  std::vector<std::pair<UIView*, Box>> boxes_;
  Box container_box_;

private:
  void solveHorizontally(double width, std::optional<double> height) {
    container_box_ = {{0.0, {}, {}, width}, {0.0, {}, {}, height}};
    container_box_.horizontal.derive();
    container_box_.vertical.derive();
    for (auto& [view, box] : boxes_) {
      const auto limited = limited_.find(view);
      box = {limited == limited_.end() ? Axis{} : limited->second, {}};
    }
    settle();
    for (auto& [view, box] : boxes_)
      if (!box.horizontal.size) wish(box.horizontal, view->intrinsicContentSize().width);
    for (auto& [view, box] : boxes_)
      complete(box.horizontal, unturned(*view).x, view->bounds().width);
  }

  /// True when a view turns out too wide that was not held to its width yet.
  bool limitWidths() {
    const std::size_t before = limited_.size();
    for (const auto& [view, box] : boxes_) {
      const Axis& axis = box.horizontal;
      if (!view->maximumWidth || *axis.size <= *view->maximumWidth) continue;
      Axis narrow{{}, *axis.min + *axis.size / 2, {}, view->maximumWidth};
      narrow.derive();
      limited_.emplace(view, narrow);
    }
    return limited_.size() > before;
  }

  void note(const LayoutItem& item) {
    UIView* view = item.view.lock().get();
    if (item.kind != LayoutItem::Kind::View || !view || view == &container_ || boxOf(view)) return;
    boxes_.emplace_back(view, Box{});
  }

  Box* boxOf(const UIView* view) {
    for (auto& [candidate, box] : boxes_)
      if (candidate == view) return &box;
    return nullptr;
  }

  /// Where the view stands without its transform.
  static CGPoint unturned(const UIView& view) {
    return {view.center().x - view.bounds().width / 2, view.center().y - view.bounds().height / 2};
  }

  /// A view's own size comes before what it happens to measure now, for all views alike.
  void wish(Axis& axis, double size) {
    if (size < 0) return;
    axis.size = size;
    axis.derive();
    settle();
  }

  /// What neither a constraint nor a wish determines stays as it is.
  void complete(Axis& axis, double oldMin, double oldSize) {
    if (axis.isSolved()) return;
    if (!axis.size) axis.size = oldSize;
    axis.derive();
    settle();
    if (axis.isSolved()) return;
    axis.min = oldMin;
    axis.derive();
    settle();
  }

  std::optional<double>* slot(const LayoutItem& item, LayoutAttribute attribute, Axis*& axis) {
    const auto view = item.view.lock();
    Box* box = view.get() == &container_ ? &container_box_ : boxOf(view.get());
    if (!box) return nullptr;
    axis = isHorizontal(attribute) ? &box->horizontal : &box->vertical;
    switch (attribute) {
    case LayoutAttribute::Left:
    case LayoutAttribute::Top:
      return &axis->min;
    case LayoutAttribute::Right:
    case LayoutAttribute::Bottom:
      return &axis->max;
    case LayoutAttribute::CenterX:
    case LayoutAttribute::CenterY:
      return &axis->mid;
    case LayoutAttribute::Width:
    case LayoutAttribute::Height:
      return &axis->size;
    }
    return nullptr;
  }

  std::optional<double> safeArea(LayoutAttribute attribute) const {
    const UIEdgeInsets insets = container_.safeAreaInsets();
    const auto& width = container_box_.horizontal.size;
    const auto& height = container_box_.vertical.size;
    const bool needsHeight = attribute != LayoutAttribute::Top && !isHorizontal(attribute);
    if (needsHeight && !height) return std::nullopt;
    switch (attribute) {
    case LayoutAttribute::Left:
      return insets.left;
    case LayoutAttribute::Right:
      return *width - insets.right;
    case LayoutAttribute::Top:
      return insets.top;
    case LayoutAttribute::Bottom:
      return *height - insets.bottom;
    case LayoutAttribute::CenterX:
      return (insets.left + *width - insets.right) / 2;
    case LayoutAttribute::CenterY:
      return (insets.top + *height - insets.bottom) / 2;
    case LayoutAttribute::Width:
      return *width - insets.left - insets.right;
    case LayoutAttribute::Height:
      return *height - insets.top - insets.bottom;
    }
    return std::nullopt;
  }

  bool apply(const NSLayoutConstraint& constraint) {
    Axis* firstAxis = nullptr;
    Axis* secondAxis = nullptr;
    auto* first = slot(constraint.firstItem, constraint.firstAttribute, firstAxis);
    if (!first) return false;
    // What placed a view before it was held to its width says nothing more.
    if (isHorizontal(constraint.firstAttribute) &&
        limited_.contains(constraint.firstItem.view.lock().get()))
      return false;
    std::optional<double>* second = nullptr;
    std::optional<double> known = 0.0; // of the right side, before multiplier and constant
    if (constraint.secondItem.kind == LayoutItem::Kind::SafeArea) {
      known = safeArea(constraint.secondAttribute);
    } else if (constraint.secondItem.kind == LayoutItem::Kind::View) {
      second = slot(constraint.secondItem, constraint.secondAttribute, secondAxis);
      if (!second) return false;
      known = *second;
    }
    if (known && !*first) {
      *first = *known * constraint.multiplier + constraint.constant();
      firstAxis->derive();
      return true;
    }
    if (!known && second && *first && constraint.multiplier != 0) {
      *second = (**first - constraint.constant()) / constraint.multiplier;
      secondAxis->derive();
      return true;
    }
    return false;
  }

  void settle() {
    bool progress = true;
    while (progress) {
      progress = false;
      for (const auto& constraint : container_.constraints())
        progress |= apply(*constraint);
    }
  }

  const UIView& container_;
  std::map<UIView*, Axis> limited_;
};

double onHalfPoints(double value) {
  return std::round(value * 2) / 2;
}

} // namespace

ConstraintSolver::ConstraintSolver(const UIView& container, double width,
                                   std::optional<double> height) {
  const Propagation solved(container, width, height);
  height_ = solved.container_box_.vertical.size;
  for (const auto& [view, box] : solved.boxes_) {
    // Edges, not sizes, go onto the grid, so that neighbours stay neighbours.
    const double left = onHalfPoints(*box.horizontal.min),
                 right = onHalfPoints(*box.horizontal.max);
    const double top = onHalfPoints(*box.vertical.min), bottom = onHalfPoints(*box.vertical.max);
    frames_[view] = {left, top, std::max(0.0, right - left), std::max(0.0, bottom - top)};
  }
}

} // namespace zuvi
