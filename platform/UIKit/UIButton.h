#pragma once

#include "platform/Export.h"
#include "platform/UIKit/UIControl.h"
#include "platform/UIKit/UIImageView.h"
#include "platform/UIKit/UILabel.h"

#include <map>
#include <optional>

namespace zuvi {

enum class UIControlState { Normal, Highlighted, Disabled };

/// A control with a title, a picture, or both, by state; what a state lacks comes from the normal
/// one.
class ZUVI_API UIButton : public UIControl {
public:
  UIButton();
  explicit UIButton(const CGRect& frame);

  /// Absent clears the title of that state.
  void setTitle(std::optional<std::string> title, UIControlState state = UIControlState::Normal);
  std::optional<std::string> title(UIControlState state = UIControlState::Normal) const;
  void setTitleColor(const UIColor& color, UIControlState state = UIControlState::Normal);
  void setImage(std::shared_ptr<const UIImage> image,
                UIControlState state = UIControlState::Normal);
  void setFont(std::shared_ptr<const UIFont> font);
  const std::shared_ptr<UILabel>& titleLabel() const { return titleLabel_; }

  void setEnabled(bool enabled) override;
  void setHighlighted(bool highlighted) override;
  void layoutSubviews() override;
  CGSize intrinsicContentSize() const override;
  UIAccessibilityElement accessibilityElement() const override;
  void describe(Value::Dictionary& description) const override;
  bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  UIControlState state() const;
  void refresh();

  std::map<UIControlState, std::string> titles_;
  std::map<UIControlState, UIColor> colors_;
  std::map<UIControlState, std::shared_ptr<const UIImage>> images_;
  std::shared_ptr<UILabel> titleLabel_;
  std::shared_ptr<UIImageView> imageView_;
};

} // namespace zuvi
