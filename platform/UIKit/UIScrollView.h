#pragma once

#include "platform/Export.h"
#include "platform/UIKit/UIView.h"

namespace zuvi {

/// A view onto contents that are larger than itself, moved by finger or wheel.
class ZUVI_API UIScrollView : public UIView {
public:
  UIScrollView();

  /// How far a person may shrink and enlarge the contents, where they can be zoomed at all.
  double minimumZoomScale = 1, maximumZoomScale = 1;

  CGSize contentSize() const { return contentSize_; }
  void setContentSize(CGSize size);
  CGPoint contentOffset() const { return bounds().origin(); }
  /// Clamped to the contents.
  void setContentOffset(CGPoint offset);
  /// Moves just as far as shows the rectangle, in the contents' coordinates.
  void scrollRectToVisible(const CGRect& rect);
  /// Whether there is more than is seen, and moving it is allowed.
  bool canScroll() const;
  bool isScrollEnabled() const { return scrollEnabled_; }
  void setScrollEnabled(bool enabled) { scrollEnabled_ = enabled; }
  /// Whether a touch waits a moment, in case it scrolls, before the contents hear of it.
  bool delaysContentTouches() const { return delaysContentTouches_; }
  void setDelaysContentTouches(bool delays) { delaysContentTouches_ = delays; }

  void touchBegan(CGPoint point) override;
  void touchMoved(CGPoint point) override;
  void touchEnded(CGPoint point) override;
  void touchCancelled() override;
  bool scrollWheel(CGPoint delta) override;
  bool keyPressed(const KeyPress& key) override;
  void layoutSubviews() override;

private:
  CGSize contentSize_;
  bool scrollEnabled_ = true;
  bool delaysContentTouches_ = true;
  std::optional<CGPoint> dragStart_; ///< the content's point that follows the finger
};

} // namespace zuvi
