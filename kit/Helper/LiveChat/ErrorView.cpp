#include "kit/Helper/LiveChat/ErrorView.h"

#include <algorithm>

namespace zuvi {

namespace {
constexpr double gap = 44.0; // between text and button
}

ErrorView::ErrorView()
    : message("",
              [this] {
                label_->setText(*message);
                setNeedsLayout();
              }),
      reloadButton_(make<ReloadButton>()), label_(make<UILabel>()) {
  label_->setNumberOfLines(0);
  label_->setTextColor(UIColor::black());
  label_->setTextAlignment(NSTextAlignment::Center);
  label_->setFont(UIFont::system(16.0));
  reloadButton_->outletName = "reloadButton";
  addSubview(label_);
  addSubview(reloadButton_);
}

CGSize ErrorView::sizeThatFits(CGSize size) const {
  const CGSize text = label_->sizeThatFits(size);
  const CGSize button = reloadButton_->sizeThatFits(size);
  return {std::max(text.width, button.width), text.height + gap + button.height};
}

void ErrorView::layoutSubviews() {
  UIView::layoutSubviews();
  const CGRect all = bounds();
  const CGSize text = label_->sizeThatFits(all.size());
  label_->setFrame({(all.width - text.width) / 2, 0, text.width, text.height});
  reloadButton_->sizeToFit();
  const CGSize button = reloadButton_->bounds().size();
  reloadButton_->setFrame(
      {(all.width - button.width) / 2, text.height + gap, button.width, button.height});
}

} // namespace zuvi
