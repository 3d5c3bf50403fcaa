#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/ZVKYCDelegate.h>

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class ZVKYCHelper;

/// The kit's door. Main thread only; a failure is never reported here, the delegate's two calls are
/// all that a host hears.
class ZUVI_API ZVKYC {
public:
  /// The one instance, made on first use.
  static ZVKYC& instance();

  /// Introduces the host, once, at its start, before a launch button is tapped: fetches what the
  /// back end knows of the client and lets every `ZVKYCButton` take its colour and language.
  /// Returns at once. Calling it again does all the work again; `metadata` replaces what was set
  /// before, absent included. A client id or an address of the back end that can't be sent is told
  /// on standard error.
  static void registerWithClientId(const std::string& clientId,
                                   std::optional<Value::Dictionary> metadata = std::nullopt);

  /// Who hears how verifications end; the host keeps it alive.
  std::weak_ptr<ZVKYCDelegate> delegate;

  /// What the host wants attached to identities, one form field an entry; absent: nothing.
  std::optional<Value::Dictionary> metadata;

  /// An identity that the host already has. It is what the delegate is told at the end; absent: the
  /// one made in the run.
  std::optional<std::string> identityId;

  ZVKYC(const ZVKYC&) = delete;
  ZVKYC& operator=(const ZVKYC&) = delete;

private:
  ZUVI_HIDDEN ZVKYC();
  ZVKYCHelper& helper_;
};

} // namespace zuvi
