#include "kit/Helper/ZVCardGuideView.h"

#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>

#include <algorithm>

namespace zuvi {

namespace {

constexpr double cardShape = 1.586;    // width / height of a plastic card
constexpr double widestColumn = 200;   // points
constexpr double columnShare = 0.3;    // of the width
constexpr double leastShare = 0.4;     // of the card's height without labels
constexpr double margin = 12, gap = 8; // points

double cardHeight(const CGRect& room) {
  return std::min(room.height, room.width / cardShape);
}

} // namespace

void ZVCardGuideView::layoutSubviews() {
  UIView::layoutSubviews(); // puts the labels above and below
  std::vector<UILabel*> texts;
  std::vector<UIView*> cards, grounds;
  for (const auto& view : subviews()) {
    if (auto* label = dynamic_cast<UILabel*>(view.get()))
      texts.push_back(label);
    else
      (dynamic_cast<UIImageView*>(view.get()) ? cards : grounds).push_back(view.get());
  }
  if (cards.empty() || grounds.empty()) return;

  const CGRect all = bounds();
  const double above = cardHeight(cards.front()->frame());
  for (UILabel* label : texts)
    label->setHidden(false);
  const double column = std::min(widestColumn, all.width * columnShare);
  // Still in the middle, like the camera's picture.
  const CGRect beside{column + margin, margin, all.width - 2 * column - 2 * margin,
                      all.height - 2 * margin};
  const CGSize text{column - 2 * margin, -1};
  double height = -gap;
  for (const UILabel* label : texts)
    height += label->sizeThatFits(text).height + gap;
  if (height <= beside.height && cardHeight(beside) > above) {
    for (UIView* ground : grounds)
      ground->setFrame({});
    grounds.front()->setFrame({0, 0, column, all.height});
    double y = all.midY() - height / 2;
    for (UILabel* label : texts) {
      const double own = label->sizeThatFits(text).height;
      label->setFrame({margin, y, text.width, own});
      y += own + gap;
    }
    for (UIView* card : cards)
      card->setFrame(beside);
  } else if (above < leastShare * cardHeight(all)) {
    for (std::size_t i = 1; i < texts.size(); i++)
      texts[i]->setHidden(true);
    for (std::size_t i = 1; i < grounds.size(); i++)
      grounds[i]->setFrame({});
    const double top = grounds.front()->frame().maxY() + gap;
    for (UIView* card : cards)
      card->setFrame({margin, top, all.width - 2 * margin, all.height - top - gap});
  }
}

} // namespace zuvi
