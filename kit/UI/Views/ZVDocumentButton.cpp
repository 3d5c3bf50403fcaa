#include "kit/UI/Views/ZVDocumentButton.h"

#include "kit/Main/Private/ZVKYCHelper.h"

namespace zuvi {

void ZVDocumentButton::setHighlighted(bool highlighted) {
  UIButton::setHighlighted(highlighted);
  layer()->setBorderColor(highlighted ? ZVKYCHelper::instance().merchant->color : restingBorder);
}

} // namespace zuvi
