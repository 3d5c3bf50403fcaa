#pragma once

#include <ZuviSDK/Export.h>

#include <memory>

namespace zuvi {

class UIView;

/// An edge, a centre line or a side of a view.
enum class LayoutAttribute { Left, Right, Top, Bottom, CenterX, CenterY, Width, Height };

/// Whether it is measured from left to right: left, right, the horizontal centre, the width.
bool isHorizontal(LayoutAttribute attribute);

/// What a constraint speaks of: a view, or the safe area of the view that holds the constraint.
struct LayoutItem {
  /// Nothing, a view, or the safe area.
  enum class Kind { None, View, SafeArea };
  Kind kind = Kind::None;     ///< none: a constant stands alone
  std::weak_ptr<UIView> view; ///< of the kind `View` only
};

/// first = second * multiplier + constant, in points. It is held by the superview of the views that
/// it speaks of, and may speak of that superview too.
class NSLayoutConstraint {
public:
  LayoutItem firstItem;                                    ///< what is placed
  LayoutAttribute firstAttribute = LayoutAttribute::Left;  ///< of the first item
  LayoutItem secondItem;                                   ///< none: the constant alone
  LayoutAttribute secondAttribute = LayoutAttribute::Left; ///< of the second item
  double multiplier = 1;                                   ///< of the second item's value

  /// In points; 0 at start.
  double constant() const { return constant_; }
  /// Takes effect at the next layout of the view that holds the constraint.
  ZUVI_API void setConstant(double constant);

  std::weak_ptr<UIView> owner; ///< the view that holds it, set by `UIView::addConstraint`

private:
  double constant_ = 0;
};

} // namespace zuvi
