#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

class CAShapeLayer;

/// A turning arc: something is under way. Hidden while it stands still.
class ZUVI_API UIActivityIndicatorView : public UIView {
public:
  /// Standing still, and so hidden.
  UIActivityIndicatorView();

  /// Shows the arc and turns it until it is stopped, also where it leaves its window meanwhile.
  /// @{
  void startAnimating();
  void stopAnimating();
  bool isAnimating() const { return animating_; }
  /// @}
  /// Of the arc; a middle grey at start.
  /// @{
  UIColor color() const { return color_; }
  void setColor(const UIColor& color);
  /// @}

  ZUVI_HIDDEN void layoutSubviews() override;
  CGSize intrinsicContentSize() const override { return {36, 36}; }
  /// What it lies over stays in reach.
  UIView* hitTest(CGPoint) override { return nullptr; }
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;
  ZUVI_HIDDEN bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  std::shared_ptr<CAShapeLayer> arc_;
  UIColor color_ = UIColor::bytes(96, 104, 116);
  bool animating_ = false;
};

} // namespace zuvi
