#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/ZVKYCDelegate.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class ZVKYCHelper;

/// The kit's main interface. Main thread only. It reports no failures; a host gets only the
/// delegate's two calls.
class ZUVI_API ZVKYC {
public:
  /// The one instance, made on first use.
  static ZVKYC& instance();

  /// Registers the host. Call it once, when the program starts, before a launch button is tapped.
  /// It fetches the merchant's configuration and gives every `ZVKYCButton` its colour and language.
  /// Returns at once. Another call does all the work again; `metadata` replaces the earlier value,
  /// also when it is absent. If the client id or the back end's address can't be used in a request,
  /// a line on standard error says so.
  static void registerWithClientId(const std::string& clientId,
                                   std::optional<Value::Dictionary> metadata = std::nullopt);

  /// Gets the result of each run. Held weakly: the host keeps it alive.
  std::weak_ptr<ZVKYCDelegate> delegate;

  /// Entries to attach to new identities, one form field each; absent: none.
  std::optional<Value::Dictionary> metadata;

  /// An identity that the host already has. The delegate gets it at the end of a run; absent: the
  /// delegate gets the identity that was made in the run.
  std::optional<std::string> identityId;

  /// Gets each user action that is counted, as it is sent to the tracking service: its name and
  /// properties. Called on the main queue, before the request.
  std::function<void(const std::string& event, const Value::Dictionary& properties)> eventListener;

  ZVKYC(const ZVKYC&) = delete;
  ZVKYC& operator=(const ZVKYC&) = delete;

private:
  ZUVI_HIDDEN ZVKYC();
  ZVKYCHelper& helper_;
};

} // namespace zuvi
