#pragma once

#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/ZVKYC.h>
#include <ZuviSDK/ZVKYCButton.h>

#include <functional>
#include <optional>
#include <string>

namespace zuvi::demo {

/// The merchant's own screen: a few words, the launch button, and how the last run ended.
class HostViewController final : public UIViewController, public ZVKYCDelegate {
public:
  /// Hears each call of the kit, with its name.
  std::function<void(const std::string& call, const std::optional<std::string>& identityId)>
      onOutcome;

  /// As if the launch button were tapped.
  void launch() { button_->sendActions(UIControlEvent::TouchUpInside); }

  void loadView() override;
  void viewDidLayoutSubviews() override;

  void zvKYCLoginSuccess(const std::string& identityId) override;
  void zvKYCLoginCancelled() override;

private:
  void show(const std::string& outcome, const UIColor& color);

  std::shared_ptr<UILabel> title_, text_, outcome_;
  std::shared_ptr<ZVKYCButton> button_;
};

} // namespace zuvi::demo
