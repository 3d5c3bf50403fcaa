#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/UIKit/UIButton.h>

#include <string>

namespace zuvi {

/// The launch button. It lies on a screen of the host, has the merchant's colour, and starts a
/// verification over the current screen. The host only has to call `ZVKYC::registerWithClientId`.
/// Made with `make<ZVKYCButton>()`, or in a nib by its class name; a nib's title and background are
/// ignored. Main queue only.
class ZUVI_API ZVKYCButton : public UIButton {
public:
  /// Without a frame the button is empty until layout or `setFrame` gives it a size.
  explicit ZVKYCButton(const CGRect& frame = {});
  ~ZVKYCButton() override;

  /// The text. The default follows the merchant's language; one that the host sets stays.
  Observed<std::string> title;

  /// 280 x 60 points.
  ZUVI_HIDDEN CGSize intrinsicContentSize() const override;
  ZUVI_HIDDEN void layoutSubviews() override;
  ZUVI_HIDDEN void awakeFromNib() override;
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;

private:
  ZUVI_HIDDEN void initialize();
  ZUVI_HIDDEN void dress();
  ZUVI_HIDDEN void takeFont();
  ZUVI_HIDDEN void tapAction();
  ZUVI_HIDDEN void merchantUpdated();

  // Layout uses at least this size, in points, even if the frame is smaller.
  const double minimumHeight_ = 30;
  const double minimumWidth_ = 200;
  std::shared_ptr<UIImageView> leftBackgroundImageView_;
  std::shared_ptr<UIImageView> leftIconImageView_;
  std::shared_ptr<UIImageView> rightIconImageView_;
  std::shared_ptr<UILabel> label_;
  NotificationObserver merchantObserver_, fontObserver_;
};

} // namespace zuvi
