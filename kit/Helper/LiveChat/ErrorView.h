#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include "kit/Helper/LiveChat/ReloadButton.h"
#include "platform/UIKit/UIScrollView.h"

namespace zuvi {

/// An error text, with a button to try again.
class ErrorView final : public UIView {
public:
  ErrorView();

  Observed<std::string> message;

  const std::shared_ptr<ReloadButton>& reloadButton() const { return reloadButton_; }
  const std::shared_ptr<UILabel>& label() const { return label_; }
  CGSize sizeThatFits(CGSize size) const override;
  void layoutSubviews() override;

private:
  std::shared_ptr<ReloadButton> reloadButton_;
  std::shared_ptr<UILabel> label_;
  std::shared_ptr<UIScrollView> text_; ///< around the label
};

} // namespace zuvi
