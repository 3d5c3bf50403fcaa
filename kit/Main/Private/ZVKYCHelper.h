#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIUserInterfaceStyle.h>
#include "kit/Main/Private/ZVKYCMerchant.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class ZVKYCDelegate;
class ZVRootViewController;

/// The kit's state, kept as long as the process; the end of a run resets none of it. Main queue
/// only.
class ZVKYCHelper {
public:
  static ZVKYCHelper& instance();

  /// Fields of `ZVKYC`, which the host sets. `ZVKYC` passes them when it is made.
  struct Host {
    const std::weak_ptr<ZVKYCDelegate>& delegate;
    const std::optional<Value::Dictionary>& metadata;
    const std::optional<std::string>& identityId;
    const std::string& textsFile;
    const std::string& language;
    const UIUserInterfaceStyle& style;
  };
  /// Call it once, before all other members are used; `firstShell` is the shell until the first
  /// run.
  void connect(const Host& host, std::shared_ptr<ZVRootViewController> firstShell);

  /// The current configuration; replaced as a whole when the back end answers.
  std::shared_ptr<const ZVKYCMerchant> merchant;
  /// The last identity that the back end made, in any run.
  std::optional<std::string> tempIdentity;
  /// The shell; the launch button makes a new one for each run.
  std::shared_ptr<ZVRootViewController> rootVC;
  /// Messages of the support that the person has not seen yet, the oldest first.
  std::deque<std::string> supportMessages;
  /// Called before the delegate, with the identity or, when the person left, without one. Empty:
  /// the run, if there is one, was started by a `ZVKYCButton`.
  std::function<void(const std::optional<std::string>& identity)> ended;
  /// The client id. Setting a present value starts the registration.
  Observed<std::optional<std::string>> clinetId;

  std::optional<Value::Dictionary> metadata() const;
  std::optional<std::string> identity() const;
  std::string textsFile() const;
  std::string language() const;
  /// As the host asks; `Unspecified` leaves it to the desktop.
  UIUserInterfaceStyle style() const;

  /// Tells the delegate that a run succeeded, with the host's own identity, else with the run's.
  void success();
  /// Tells the delegate that the person left.
  void cancelled();

private:
  ZVKYCHelper();
  std::shared_ptr<ZVKYCDelegate> delegate() const;
  void clientIdChanged();

  std::optional<Host> host_;
};

} // namespace zuvi
