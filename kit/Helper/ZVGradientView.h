#pragma once

#include <ZuviSDK/UIKit/UIView.h>
#include "kit/Helper/ZVExtensions.h"
#include "platform/QuartzCore/CAGradientLayer.h"

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace zuvi {

/// A view whose background is a gradient from top to bottom.
class ZVGradientView : public UIView {
public:
  using UIView::UIView;

  /// Colours in hexadecimal, from top to bottom; an empty list changes nothing.
  void addGradient(const std::vector<std::string>& hexColors) {
    if (hexColors.empty()) return;
    std::vector<CGColor> colors;
    colors.reserve(hexColors.size());
    for (const std::string& hex : hexColors)
      colors.push_back(colorFromHex(hex));
    gradient->setColors(std::move(colors));
    layer()->insertSublayer(gradient, 0);
  }

  /// `colors`: for `addGradient`, separated by blanks.
  bool setNibAttribute(const std::string& name, const std::string& value) override {
    if (name != "colors") return UIView::setNibAttribute(name, value);
    std::istringstream words(value);
    addGradient({std::istream_iterator<std::string>(words), {}});
    return true;
  }

  void layoutSubviews() override {
    UIView::layoutSubviews();
    gradient->setFrame(bounds());
  }

  const std::shared_ptr<CAGradientLayer> gradient = std::make_shared<CAGradientLayer>();
};

} // namespace zuvi
