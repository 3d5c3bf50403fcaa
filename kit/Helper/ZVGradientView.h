#pragma once

#include <ZuviSDK/UIKit/UIView.h>
#include "kit/Helper/ZVExtensions.h"
#include "platform/QuartzCore/CAGradientLayer.h"

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace zuvi {

/// A view on a ground of colours that run from its top to its bottom.
class ZVGradientView : public UIView {
public:
  using UIView::UIView;

  /// Colours in hexadecimal, from the top; an empty list changes nothing.
  void addGradient(const std::vector<std::string>& hexColors) {
    if (hexColors.empty()) return;
    std::vector<CGColor> colors;
    colors.reserve(hexColors.size());
    for (const std::string& hex : hexColors)
      colors.push_back(colorFromHex(hex));
    gradient->setColors(std::move(colors));
    layer()->insertSublayer(gradient, 0);
  }

  /// `colors`: blank-separated, for `addGradient`.
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
