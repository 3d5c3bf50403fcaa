#include "kit/Helper/LiveChat/ErrorView.h"

#include <ZuviSDK/CoreText/AttributedString.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/Helper/ZVLocalization.h"

#include <algorithm>

namespace zuvi {

namespace {
constexpr double gap = 44.0; // between text and button
}

ErrorView::ErrorView()
    : message("",
              [this] {
                label_->setText(*message);
                reloadButton_->setTitle(localized("chatReload")); // the language may have changed
                setNeedsLayout();
              }),
      reloadButton_(make<ReloadButton>()), label_(make<UILabel>()), text_(make<UIScrollView>()) {
  label_->setNumberOfLines(0);
  label_->setTextColor(UIColor::black());
  label_->setTextAlignment(NSTextAlignment::Center);
  label_->setFont(UIFont::system(16.0));
  reloadButton_->outletName = "reloadButton";
  text_->addSubview(label_);
  addSubview(text_);
  addSubview(reloadButton_);
}

// The button stays visible even if the text is long: such a text scrolls.
CGSize ErrorView::sizeThatFits(CGSize size) const {
  const CGSize text = label_->sizeThatFits(size);
  const CGSize button = reloadButton_->sizeThatFits(size);
  return {std::max(text.width, button.width),
          std::min(text.height + gap + button.height, std::max(size.height, button.height))};
}

void ErrorView::layoutSubviews() {
  UIView::layoutSubviews();
  const CGRect all = bounds();
  const CGSize text = label_->sizeThatFits(all.size());
  reloadButton_->sizeToFit();
  const CGSize button = reloadButton_->bounds().size();
  const double room = std::clamp(all.height - gap - button.height, 0.0, text.height);
  text_->setFrame({(all.width - text.width) / 2, 0, text.width, room});
  text_->setContentSize(text);
  label_->setFrame({0, 0, text.width, text.height});
  reloadButton_->setFrame(
      {(all.width - button.width) / 2, all.height - button.height, button.width, button.height});
}

} // namespace zuvi
