#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

class Timer;
class UIImage;

/// Shows a picture in the view's content mode; a series plays while the view is on a window.
class ZUVI_API UIImageView : public UIView {
public:
  /// Of no size until layout or `setFrame` gives it one. Touches go through it.
  explicit UIImageView(std::shared_ptr<const UIImage> image = nullptr);

  /// Null at start.
  const std::shared_ptr<const UIImage>& image() const { return image_; }
  /// Null shows nothing.
  void setImage(std::shared_ptr<const UIImage> image);

  ZUVI_HIDDEN CGSize intrinsicContentSize() const override;
  ZUVI_HIDDEN CGSize sizeThatFits(CGSize size) const override;
  ZUVI_HIDDEN void draw(DrawingContext& context) override;
  ZUVI_HIDDEN void didMoveToWindow() override;
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;
  ZUVI_HIDDEN bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  ZUVI_HIDDEN void play();
  ZUVI_HIDDEN CGRect place(CGSize image) const;

  std::shared_ptr<const UIImage> image_;
  std::shared_ptr<Timer> timer_;
  std::size_t shown_ = 0; ///< of a series
};

} // namespace zuvi
