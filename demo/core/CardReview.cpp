#include "demo/core/CardReview.h"

#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"

#include <utility>

namespace zuvi::demo {

namespace {
// Seconds
constexpr double lookEvery = 0.02;
constexpr double waitForMerchant = 10;
} // namespace

CardReview::CardReview(Data picture, std::string identity, std::function<void()> launch,
                       std::function<void(const std::string&)> failed)
    : picture_(std::move(picture)), identity_(std::move(identity)), launch_(std::move(launch)),
      failed_(std::move(failed)) {
  timer_ = Timer::scheduled(lookEvery, Timer::Repeats::Yes, [this] { look(); });
}

void CardReview::look() {
  const auto& merchant = ZVKYCHelper::instance().merchant;
  const bool required = merchant->document(true, 0).has_value();
  if (!required && !merchant->document(false, 0)) {
    if (++looks_ * lookEvery < waitForMerchant) return;
    timer_->invalidate();
    failed_("card-review: no merchant that asks for a document was heard of");
    return;
  }
  timer_->invalidate();
  launch_();
  const auto& shell = ZVKYCHelper::instance().rootVC;
  const auto review = make<ZVCardVerifyViewController>();
  review->isRequired = required;
  review->imageData = picture_;
  review->identityId = identity_;
  if (const auto& stack = shell->mainNC()) stack->pushViewController(review, false);
}

} // namespace zuvi::demo
