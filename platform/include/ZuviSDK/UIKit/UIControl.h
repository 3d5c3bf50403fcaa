#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zuvi {

/// What a control tells its targets: a finger came down on it, was lifted on it (or less than 48
/// points beside it) or further away; its value or text was changed by the person.
enum class UIControlEvent {
  TouchDown,
  TouchUpInside,
  TouchUpOutside,
  ValueChanged,
  EditingChanged
};

/// A view that acts when it is touched, or when Space or Return is pressed while it has the focus.
class ZUVI_API UIControl : public UIView {
public:
  /// @cond
  using UIView::UIView;
  /// @endcond

  /// `target` holds its receiver weakly, or is owned by it.
  void addTarget(UIControlEvent event, std::function<void()> target);
  /// Calls the targets of that event in the order in which they were added; they may take the
  /// control off the screen.
  ZUVI_HIDDEN void sendActions(UIControlEvent event);

  /// True at start. Disabling ends a touch under way; a disabled control is not heard and takes no
  /// focus.
  /// @{
  bool isEnabled() const { return enabled_; }
  ZUVI_HIDDEN virtual void setEnabled(bool enabled);
  /// @}
  /// Whether a finger is down on it, or within its reach.
  bool isHighlighted() const { return highlighted_; }
  /// While a finger is down on it. Runs also when the value does not change.
  ZUVI_HIDDEN virtual void setHighlighted(bool highlighted);

  /// The action that the nib names; empty: none.
  std::string actionName;

  ZUVI_HIDDEN UIView* hitTest(CGPoint point) override;
  ZUVI_HIDDEN void touchBegan(CGPoint point) override;
  ZUVI_HIDDEN void touchMoved(CGPoint point) override;
  ZUVI_HIDDEN void touchEnded(CGPoint point) override;
  ZUVI_HIDDEN void touchCancelled() override;
  bool canBecomeFirstResponder() const override { return enabled_; }
  ZUVI_HIDDEN void didChangeFirstResponder(bool focused) override;
  ZUVI_HIDDEN void layoutSubviews() override;
  ZUVI_HIDDEN bool keyPressed(const KeyPress& key) override;
  ZUVI_HIDDEN bool accessibilityActivate() override;
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;
  ZUVI_HIDDEN bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  ZUVI_HIDDEN bool reaches(CGPoint point) const;
  ZUVI_HIDDEN bool handOver(CGPoint point);

  std::vector<std::pair<UIControlEvent, std::function<void()>>> targets_;
  bool enabled_ = true;
  bool highlighted_ = false;
  bool tracking_ = false;
  CGPoint touchStart_;
  std::shared_ptr<CALayer> focusRing_;
};

} // namespace zuvi
