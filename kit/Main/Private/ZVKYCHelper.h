#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/Foundation/Value.h>
#include "kit/Main/Private/ZVKYCMerchant.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class ZVRootViewController;

/// Everything that the kit remembers while the process lives; nothing is reset when a run ends.
/// Main queue only.
class ZVKYCHelper {
public:
  static ZVKYCHelper& instance();

  /// The configuration in force; replaced whole when the back end answers.
  std::shared_ptr<const ZVKYCMerchant> merchant;
  /// The identity that the back end made in the latest run that came so far.
  std::optional<std::string> tempIdentity;
  /// The flow's frame; the launch button makes a new one for each run.
  std::shared_ptr<ZVRootViewController> rootVC;
  /// What the support wrote and nobody has seen yet, the oldest first.
  std::deque<std::string> supportMessages;
  /// Who the host is. A present value starts the registration work.
  Observed<std::optional<std::string>> clinetId;

  const std::optional<Value::Dictionary>& metadata() const;
  const std::optional<std::string>& identity() const;

  /// Tells the delegate that a run ended well. The host's own identity goes before the run's.
  void success();
  /// Tells the delegate that the person left.
  void cancelled();

private:
  ZVKYCHelper();
  void clientIdChanged();
};

} // namespace zuvi
