#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Timer.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// Shows a picture in the view's content mode; a series plays while the view is on a window.
class ZUVI_API UIImageView : public UIView {
public:
  /// Of no size until layout or `setFrame` gives it one. Touches go through it.
  /// @{
  UIImageView();
  explicit UIImageView(std::shared_ptr<const UIImage> image);
  /// @}

  /// Null at start.
  const std::shared_ptr<const UIImage>& image() const { return image_; }
  /// Null shows nothing.
  void setImage(std::shared_ptr<const UIImage> image);

  CGSize intrinsicContentSize() const override;
  CGSize sizeThatFits(CGSize size) const override;
  void draw(DrawingContext& context) override;
  void didMoveToWindow() override;
  UIAccessibilityElement accessibilityElement() const override;
  void describe(Value::Dictionary& description) const override;
  bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  void play();
  CGRect place(CGSize image) const;

  std::shared_ptr<const UIImage> image_;
  std::shared_ptr<Timer> timer_;
  std::size_t shown_ = 0; ///< of a series
};

} // namespace zuvi
