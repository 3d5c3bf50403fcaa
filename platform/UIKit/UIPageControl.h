#pragma once

#include "platform/Export.h"
#include "platform/UIKit/UIView.h"

namespace zuvi {

/// A row of dots, one of them marked.
class ZUVI_API UIPageControl : public UIView {
public:
  int numberOfPages() const { return pages_; }
  void setNumberOfPages(int pages);
  int currentPage() const { return current_; }
  /// Clamped to the pages that there are.
  void setCurrentPage(int page);
  UIColor currentPageIndicatorTintColor() const { return currentTint_; }
  void setCurrentPageIndicatorTintColor(const UIColor& color);
  void setPageIndicatorTintColor(const UIColor& color);

  CGSize intrinsicContentSize() const override;
  void draw(DrawingContext& context) override;
  UIAccessibilityElement accessibilityElement() const override;
  void describe(Value::Dictionary& description) const override;

private:
  int pages_ = 0, current_ = 0;
  UIColor currentTint_ = UIColor::bytes(33, 150, 243);
  UIColor tint_ = UIColor::bytes(217, 222, 230);
};

} // namespace zuvi
