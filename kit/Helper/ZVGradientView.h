#pragma once

#include "kit/Helper/ZVExtensions.h"
#include "platform/QuartzCore/CAGradientLayer.h"
#include "platform/UIKit/UIView.h"

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

  void layoutSubviews() override {
    UIView::layoutSubviews();
    gradient->setFrame(bounds());
  }

  const std::shared_ptr<CAGradientLayer> gradient = std::make_shared<CAGradientLayer>();
};

} // namespace zuvi
