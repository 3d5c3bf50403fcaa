#pragma once

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/Helper/LiveChat/ActivityIndicatorLayer.h"

namespace zuvi {

/// A turning ring over a word such as "Loading".
class ActivityIndicator final : public UIView {
public:
  ActivityIndicator();

  void startAnimation();
  /// Only stops to observe the animation; the caller removes the view.
  void stopAnimation();
  bool animating() const { return animating_; }

  const std::shared_ptr<ActivityIndicatorLayer>& activityIndicator() const {
    return activityIndicator_;
  }
  const std::shared_ptr<UILabel>& label() const { return label_; }

  CGSize sizeThatFits(CGSize size) const override;
  void layoutSubviews() override;
  void didMoveToSuperview() override;
  void didMoveToWindow() override;
  void describe(Value::Dictionary& description) const override;

private:
  void applicationDidBecomeActive();

  std::shared_ptr<ActivityIndicatorLayer> activityIndicator_;
  std::shared_ptr<UILabel> label_;
  bool animating_ = false;
  NotificationObserver observer_;
};

} // namespace zuvi
