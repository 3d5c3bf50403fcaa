#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <map>
#include <optional>

namespace zuvi {

class UIView;

/// Places the subviews of one view by the constraints that it holds. Values run from what is known
/// (the view itself) to what is not, constraint by constraint; where nothing more follows, a view's
/// own size settles it. The first constraint that determines a value wins.
class ConstraintSolver {
public:
  /// `height` absent: it is to be found out, from constraints that name the view's bottom.
  ConstraintSolver(const UIView& container, double width, std::optional<double> height);

  /// Frames of all subviews that a constraint speaks of.
  const std::map<UIView*, CGRect>& frames() const { return frames_; }
  /// The container's height; absent when nothing determines it.
  std::optional<double> height() const { return height_; }

private:
  std::map<UIView*, CGRect> frames_;
  std::optional<double> height_;
};

} // namespace zuvi
