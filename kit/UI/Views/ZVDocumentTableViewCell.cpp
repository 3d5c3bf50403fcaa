#include "kit/UI/Views/ZVDocumentTableViewCell.h"

#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/Helper/ZVDocument+Presentation.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/Views/ZVDocumentButton.h"
#include "platform/CoreText/TextLayout.h"

namespace zuvi {

namespace {
constexpr double sideLabelWidth = 52; // points, before text is enlarged
constexpr double iconSide = 32;       // points
constexpr double narrowRow = 240;     // points; below it the name needs the icon's place
} // namespace

ZVDocumentTableViewCell::ZVDocumentTableViewCell()
    : document(ZVDocument::nationalId, [this] { documentChanged(); }) {}

void ZVDocumentTableViewCell::declareNib(NibDeclaration& nib) {
  nib.outlet("documentButton", documentButton);
  nib.outlet("iconImageView", iconImageView);
  nib.outlet("nameLabel", nameLabel);
  nib.outlet("sideLabel", sideLabel);
  nib.outlet("sideWidth", sideWidth);
  nib.outlet("iconWidth", iconWidth);
  nib.action("tap", [this] { tap(); });
}

void ZVDocumentTableViewCell::awakeFromNib() {
  if (const auto button = documentButton.lock()) button->layer()->setBorderWidth(1.0);
  if (const auto label = sideLabel.lock()) label->setText("2 " + localized("sides"));
}

void ZVDocumentTableViewCell::layoutSubviews() {
  const double icon = bounds().width < narrowRow ? 0 : iconSide;
  if (const auto width = iconWidth.lock(); width && width->constant() != icon)
    width->setConstant(icon);
  UITableViewCell::layoutSubviews();
  if (const auto button = documentButton.lock()) button->layer()->setCornerRadius(4.0);
}

void ZVDocumentTableViewCell::documentChanged() {
  if (const auto button = documentButton.lock())
    button->layer()->setBorderColor(ZVDocumentButton::restingBorder());
  if (const auto label = nameLabel.lock()) label->setText(uppercased(zuvi::name(document)));
  if (const auto image = iconImageView.lock()) image->setImage(icon(document));
  const auto sides = sideLabel.lock();
  if (sides) sides->setHidden(!scanBackSide(document));
  const bool tellsSides = sides && !sides->isHidden();
  if (const auto width = sideWidth.lock())
    width->setConstant(tellsSides ? sideLabelWidth * textScale() : 0);
  accessibilityLabel =
      zuvi::name(document) + (tellsSides ? ", " + sides->text().value_or("") : std::string());
  if (const auto button = documentButton.lock()) button->accessibilityLabel = accessibilityLabel;
}

void ZVDocumentTableViewCell::tap() {
  if (const auto listener = delegate.lock()) listener->tapAction(document);
}

} // namespace zuvi
