#include "kit/Helper/LiveChat/ReloadButton.h"

#include "kit/Helper/LiveChat/LoadingViewDrawing.h"
#include "kit/Helper/ZVLocalization.h"

namespace zuvi {

ReloadButton::ReloadButton() {
  setTitle(localized("chatReload"));
  setTitleColor(darkGrey);
  setTitleColor(UIColor::white(), UIControlState::Highlighted);
  setBackgroundColor(UIColor::white());
  layer()->setCornerRadius(6.0);
  layer()->setBorderWidth(1.0);
  layer()->setBorderColor(darkGrey);
}

CGSize ReloadButton::sizeThatFits(CGSize size) const {
  const CGSize base = UIButton::sizeThatFits(size);
  return CGRectInset({0, 0, base.width, base.height}, -14.0, -6.0).size();
}

void ReloadButton::setHighlighted(bool highlighted) {
  UIButton::setHighlighted(highlighted);
  setBackgroundColor(highlighted ? darkGrey.withAlpha(0.5) : UIColor::white());
}

} // namespace zuvi
