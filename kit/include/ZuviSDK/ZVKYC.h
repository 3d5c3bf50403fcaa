#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIUserInterfaceStyle.h>
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

  /// A property list with texts of the host's own, which are shown instead of the kit's. It has the
  /// form of `Localization.plist` in the kit's bundle: for each key the texts by language. What is
  /// missing there is the kit's, or English. Empty: none. A file that can't be read, or a key that
  /// the kit does not have, is told on standard error.
  std::string textsFile;

  /// The language of the screens, a code such as "fr" of the kit's texts or of `textsFile`; empty:
  /// the merchant's.
  std::string language;

  /// Whether a run has light or dark screens; otherwise the desktop says it. Read when a run
  /// begins.
  UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::Unspecified;

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
