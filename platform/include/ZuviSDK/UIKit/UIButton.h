#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIControl.h>
#include <ZuviSDK/UIKit/UIFont.h>

#include <optional>

namespace zuvi {

class UIImage;
class UIImageView;
class UILabel;

/// What a control looks like: as ever, while a finger is down on it, or when it is disabled.
enum class UIControlState { Normal, Highlighted, Disabled };

/// A control with a title, a picture, or both, by state; what a state lacks comes from the normal
/// one.
class ZUVI_API UIButton : public UIControl {
public:
  /// Without title and picture, so nothing shows yet.
  explicit UIButton(const CGRect& frame = {});

  /// Absent clears the title of that state.
  void setTitle(std::optional<std::string> title, UIControlState state = UIControlState::Normal);
  /// Of exactly that state; absent: it has none of its own.
  std::optional<std::string> title(UIControlState state = UIControlState::Normal) const;
  /// A state without a colour of its own takes the normal one, dimmed.
  void setTitleColor(const UIColor& color, UIControlState state = UIControlState::Normal);
  /// Null shows none in that state; a state that was never given one takes the normal one, dimmed.
  void setImage(std::shared_ptr<const UIImage> image,
                UIControlState state = UIControlState::Normal);
  /// Of all states; null: the system's face at 17 points.
  void setFont(std::shared_ptr<const UIFont> font);
  /// Never null; its text is overwritten by the button.
  const std::shared_ptr<UILabel>& titleLabel() const { return titleLabel_; }

  ZUVI_HIDDEN void setEnabled(bool enabled) override;
  ZUVI_HIDDEN void setHighlighted(bool highlighted) override;
  ZUVI_HIDDEN void layoutSubviews() override;
  ZUVI_HIDDEN CGSize intrinsicContentSize() const override;
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;
  ZUVI_HIDDEN bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  ZUVI_HIDDEN UIControlState state() const;
  ZUVI_HIDDEN void refresh();

  /// What was set for one state.
  struct Look {
    std::optional<std::string> title;
    std::optional<UIColor> color;
    std::optional<std::shared_ptr<const UIImage>> image;
  };
  Look& look(UIControlState state) { return looks_[static_cast<int>(state)]; }
  Look looks_[3];
  std::shared_ptr<UILabel> titleLabel_;
  std::shared_ptr<UIImageView> imageView_;
};

} // namespace zuvi
