#pragma once

#include "platform/Export.h"

#include <memory>

namespace zuvi {

class UIView;

enum class LayoutAttribute { Left, Right, Top, Bottom, CenterX, CenterY, Width, Height };

ZUVI_API bool isHorizontal(LayoutAttribute attribute);

/// What a constraint speaks of: a view, or the safe area of the view that holds the constraint.
struct LayoutItem {
  enum class Kind { None, View, SafeArea };
  Kind kind = Kind::None;
  std::weak_ptr<UIView> view;
};

/// first = second * multiplier + constant, in points. It is held by the superview of the views that
/// it speaks of, and may speak of that superview too.
class ZUVI_API NSLayoutConstraint {
public:
  LayoutItem firstItem;
  LayoutAttribute firstAttribute = LayoutAttribute::Left;
  LayoutItem secondItem; ///< none: the constant alone
  LayoutAttribute secondAttribute = LayoutAttribute::Left;
  double multiplier = 1;

  double constant() const { return constant_; }
  /// Takes effect at the next layout of the view that holds the constraint.
  void setConstant(double constant);

  std::weak_ptr<UIView> owner;

private:
  double constant_ = 0;
};

} // namespace zuvi
