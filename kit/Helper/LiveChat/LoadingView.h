#pragma once

#include "kit/Helper/LiveChat/ActivityIndicator.h"
#include "kit/Helper/LiveChat/CloseButton.h"
#include "kit/Helper/LiveChat/ErrorView.h"
#include "kit/Helper/LiveChat/LoadingViewDelegate.h"

namespace zuvi {

/// Covers the chat page until it is loaded: shows a spinner or an error. The close button appears
/// at once with an error, but only after a while with the spinner.
class LoadingView final : public UIView {
public:
  LoadingView();

  std::weak_ptr<LoadingViewDelegate> delegate;

  void startAnimation();
  void stopAnimation();
  void displayLoadingError(const std::string& message);

  const std::shared_ptr<ActivityIndicator>& activityIndicator() const { return activityIndicator_; }
  const std::shared_ptr<CloseButton>& closeButton() const { return closeButton_; }
  const std::shared_ptr<ErrorView>& errorView() const { return errorView_; }
  void layoutSubviews() override;

private:
  void reload();
  void close();
  void show(const std::shared_ptr<UIView>& shown, UIView& other);
  void layoutAtOnce();

  std::shared_ptr<ActivityIndicator> activityIndicator_;
  std::shared_ptr<CloseButton> closeButton_;
  std::shared_ptr<ErrorView> errorView_;
};

} // namespace zuvi
