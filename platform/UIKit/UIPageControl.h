#pragma once

#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// A row of dots, one of them marked.
class UIPageControl : public UIView {
public:
  /// 0 at start; a negative number counts as 0.
  /// @{
  int numberOfPages() const { return pages_; }
  void setNumberOfPages(int pages);
  /// @}
  /// From 0.
  int currentPage() const { return current_; }
  /// Clamped to the pages that there are.
  void setCurrentPage(int page);
  /// Of the marked dot, blue at start, and of the others, light grey.
  /// @{
  UIColor currentPageIndicatorTintColor() const { return currentTint_; }
  void setCurrentPageIndicatorTintColor(const UIColor& color);
  void setPageIndicatorTintColor(const UIColor& color);
  /// @}

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
