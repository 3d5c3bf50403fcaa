// The attributes of a nib that every view understands.

#include <ZuviSDK/UIKit/UIView.h>
#include "platform/UIKit/NibValues.h"

namespace zuvi {

bool UIView::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "alpha") return nib::withNumber(value, [&](double v) { setAlpha(v); });
  if (name == "hidden") return nib::withBoolean(value, [&](bool v) { setHidden(v); });
  if (name == "clips") return nib::withBoolean(value, [&](bool v) { setClipsToBounds(v); });
  if (name == "touchable")
    return nib::withBoolean(value, [&](bool v) { setUserInteractionEnabled(v); });
  if (name == "background")
    return nib::withColor(value, [&](const UIColor& v) { setBackgroundColor(v); });
  if (name == "corner")
    return nib::withNumber(value, [&](double v) { layer_->setCornerRadius(v); });
  if (name == "border") return nib::withNumber(value, [&](double v) { layer_->setBorderWidth(v); });
  if (name == "borderColor")
    return nib::withColor(value, [&](const UIColor& v) { layer_->setBorderColor(v); });
  if (name == "shadow") // radius; a soft shadow below
    return nib::withNumber(value, [&](double v) {
      layer_->setShadowRadius(v);
      layer_->setShadowOffset({0, v / 2});
      layer_->setShadowOpacity(0.16);
    });
  if (name == "maxWidth") return nib::withNumber(value, [&](double v) { maximumWidth = v; });
  if (name == "label") {
    accessibilityLabel = value;
    return true;
  }
  if (name == "spoken") { // "no": the text on it is told by another view; "header"; "dialog"
    if (value == "no")
      accessibilityElementsHidden = true;
    else if (value == "header")
      accessibilityRole = UIAccessibilityRole::Header;
    else if (value == "dialog")
      accessibilityRole = UIAccessibilityRole::Dialog;
    else
      return false;
    return true;
  }
  if (name == "mode") {
    if (value == "fill")
      setContentMode(UIViewContentMode::ScaleToFill);
    else if (value == "aspectFit")
      setContentMode(UIViewContentMode::ScaleAspectFit);
    else if (value == "aspectFill")
      setContentMode(UIViewContentMode::ScaleAspectFill);
    else if (value == "center")
      setContentMode(UIViewContentMode::Center);
    else
      return false;
    return true;
  }
  if (name == "frame") {
    const auto numbers = nib::numbers(value);
    if (numbers.size() != 4) return false;
    setFrame({numbers[0], numbers[1], numbers[2], numbers[3]});
    return true;
  }
  if (name == "autoresizing") {
    unsigned mask = AutoresizingNone;
    for (const std::string& word : nib::words(value)) {
      if (word == "width")
        mask |= FlexibleWidth;
      else if (word == "height")
        mask |= FlexibleHeight;
      else if (word == "left")
        mask |= FlexibleLeftMargin;
      else if (word == "right")
        mask |= FlexibleRightMargin;
      else if (word == "top")
        mask |= FlexibleTopMargin;
      else if (word == "bottom")
        mask |= FlexibleBottomMargin;
      else
        return false;
    }
    setAutoresizingMask(mask);
    return true;
  }
  return false;
}

} // namespace zuvi
