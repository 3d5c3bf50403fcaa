#pragma once

#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// A view onto contents that are larger than itself, moved by finger, wheel or keys. While there is
/// more above or below, a bar at its right edge shows which part is seen.
class UIScrollView : public UIView {
public:
  /// Of no size and without contents; what lies outside its bounds is cut off.
  UIScrollView();

  /// How far a person may shrink and enlarge the contents, where they can be zoomed at all; plain
  /// views can't.
  /// @{
  double minimumZoomScale = 1, maximumZoomScale = 1;
  /// @}

  /// In points; zero at start. A smaller one may move the offset.
  /// @{
  CGSize contentSize() const { return contentSize_; }
  void setContentSize(CGSize size);
  /// @}
  /// Which point of the contents is at the top left corner.
  CGPoint contentOffset() const { return bounds().origin(); }
  /// Clamped to the contents.
  void setContentOffset(CGPoint offset);
  /// Moves just as far as shows the rectangle, in the contents' coordinates.
  void scrollRectToVisible(const CGRect& rect);
  /// Whether there is more than is seen, and moving it is allowed.
  bool canScroll() const;
  /// Whether finger, wheel and keys move the contents; true at start. `setContentOffset` always
  /// does.
  /// @{
  bool isScrollEnabled() const { return scrollEnabled_; }
  void setScrollEnabled(bool enabled);
  /// @}
  /// True at start. Only remembered: contents hear of a touch at once.
  /// @{
  bool delaysContentTouches() const { return delaysContentTouches_; }
  void setDelaysContentTouches(bool delays) { delaysContentTouches_ = delays; }
  /// @}

  void touchBegan(CGPoint point) override;
  void touchMoved(CGPoint point) override;
  void touchEnded(CGPoint point) override;
  void touchCancelled() override;
  bool scrollWheel(CGPoint delta) override;
  bool keyPressed(const KeyPress& key) override;
  void layoutSubviews() override;
  void describe(Value::Dictionary& description) const override;

private:
  void placeBar();

  CGSize contentSize_;
  std::shared_ptr<CALayer> bar_;
  bool scrollEnabled_ = true;
  bool delaysContentTouches_ = true;
  std::optional<CGPoint> dragStart_; ///< the content's point that follows the finger
};

} // namespace zuvi
