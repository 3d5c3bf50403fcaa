#pragma once

#include "platform/UIKit/UIScrollView.h"

namespace zuvi {

/// A step's views from top to bottom; a button may lie at the bottom edge. Where large text needs
/// more room, the gap above the first view shrinks first, then a picture in that place, and then
/// everything scrolls. Made by nibs only.
class ZVColumnView : public UIScrollView {
public:
  void layoutSubviews() override;
};

} // namespace zuvi
