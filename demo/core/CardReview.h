#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Timer.h>

#include <functional>
#include <memory>
#include <string>

namespace zuvi::demo {

/// Puts the review of a document's picture on the flow's stack, which the flow by itself never
/// does: taps the launch button once the merchant is known and pushes the screen over the start.
class CardReview {
public:
  /// `launch` taps the button. `failed` comes when no merchant that asks for a document is known in
  /// time.
  CardReview(Data picture, std::string identity, std::function<void()> launch,
             std::function<void(const std::string& problem)> failed);

private:
  void look();

  Data picture_;
  std::string identity_;
  std::function<void()> launch_;
  std::function<void(const std::string&)> failed_;
  int looks_ = 0;
  std::shared_ptr<Timer> timer_;
};

} // namespace zuvi::demo
