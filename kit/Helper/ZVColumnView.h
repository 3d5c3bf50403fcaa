#pragma once

#include "platform/UIKit/UIScrollView.h"

namespace zuvi {

/// What a step says from top to bottom; a button may lie at its bottom edge. Where large text needs
/// more room than there is, the gap above the first view gives way, then a picture in its place,
/// and then all of it scrolls. Made by nibs only.
class ZVColumnView : public UIScrollView {
public:
  void layoutSubviews() override;
};

} // namespace zuvi
