#include "kit/UI/Views/ZVDocumentButton.h"

#include "kit/Helper/Palette.h"
#include "kit/Main/Private/ZVKYCHelper.h"

namespace zuvi {

UIColor ZVDocumentButton::restingBorder() {
  return paletteColor("rowLine");
}

void ZVDocumentButton::setHighlighted(bool highlighted) {
  UIButton::setHighlighted(highlighted);
  layer()->setBorderColor(highlighted ? ZVKYCHelper::instance().merchant->color : restingBorder());
}

} // namespace zuvi
