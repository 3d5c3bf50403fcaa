#include "kit/Helper/ZVColumnView.h"

#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImageView.h>

#include <algorithm>

namespace zuvi {

namespace {

constexpr double gapToButton = 12;  // points
constexpr double leastPicture = 48; // points; a smaller one can't be recognised

void move(UIView& view, double dy) {
  view.setCenter({view.center().x, view.center().y + dy});
}

} // namespace

void ZVColumnView::layoutSubviews() {
  UIScrollView::layoutSubviews(); // as if there were enough room
  if (subviews().empty()) return;
  UIView& first = *subviews().front();
  UIView* button = dynamic_cast<UIButton*>(subviews().back().get());
  double end = 0; // the lower edge of the views that are laid out from the top
  for (const auto& view : subviews())
    if (view.get() != button) end = std::max(end, view->frame().maxY());
  const double limit = button ? button->frame().minY() - gapToButton : bounds().height;
  double missing = std::max(0.0, end - limit);

  const bool isPicture = dynamic_cast<UIImageView*>(&first) != nullptr;
  if (isPicture) first.setAlpha(1);
  const double gap = std::min(missing, std::max(0.0, first.frame().minY()));
  missing -= gap;
  double less = isPicture ? std::min(missing, first.frame().height) : 0;
  if (isPicture && less > 0 && first.frame().height - less < leastPicture) {
    less = first.frame().height;
    first.setAlpha(0);
  }
  missing = std::max(0.0, missing - less);
  for (const auto& view : subviews())
    if (view.get() != button && view.get() != &first) move(*view, -gap - less);
  const CGRect place = first.frame();
  first.setFrame({place.x, place.y - gap, place.width, place.height - less});
  if (button) move(*button, missing);
  setClipsToBounds(missing > 0); // else not, because a focus ring reaches over the edge
  setContentSize({bounds().width, bounds().height + missing});
}

} // namespace zuvi
