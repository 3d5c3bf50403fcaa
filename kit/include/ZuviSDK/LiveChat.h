#pragma once

#include <ZuviSDK/CustomVariables.h>
#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/LiveChatDelegate.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

/// The support chat: a web page in a floating window of its own. Main queue only.
class ZUVI_API LiveChat {
public:
  /// The chat's account and team, and the visitor. Absent at start; an absent group is "0", an
  /// absent name or e-mail address is left empty. Nothing takes effect before there is a license; a
  /// change reloads the page a moment later.
  /// @{
  static Observed<std::optional<std::string>> licenseId, groupId, name, email;
  /// @}
  /// Gets the chat's messages, links and events. Held weakly.
  static Observed<std::weak_ptr<LiveChatDelegate>> delegate;

  /// The variables that were set here; before that, those of `setVariable`. The page gets only
  /// those of `setVariable`.
  /// @{
  static const std::optional<CustomVariables>& allCustomVariables();
  static void setAllCustomVariables(const std::optional<CustomVariables>& variables);
  /// @}

  /// Whether the page runs in a sandbox, isolated from the machine. Absent until the chat was
  /// opened for the first time, because it is not known before.
  static std::optional<bool> isSandboxed();
  /// What happens on a machine that allows no sandbox. False (at start): the chat runs without one
  /// and prints a line. True, set before the chat is first opened: the chat says "Invalid url".
  static Observed<bool> requiresSandbox;

  /// True from the end of the movement in to the end of the movement out.
  static bool isChatPresented();
  /// How many messages came since the chat was last opened or closed. Kept when the process ends.
  static int unreadMessagesCount();

  /// Passes a custom variable to the page.
  static void setVariable(const std::string& key, const std::string& value);
  /// `completion` is called after the movement; `finished` is false if it was cut short. Where no
  /// page can be shown it is never called.
  static void presentChat(bool animated = true,
                          const std::function<void(bool finished)>& completion = {});
  /// `completion` is also not called if the chat is still moving in or out.
  static void dismissChat(bool animated = true,
                          const std::function<void(bool finished)>& completion = {});
  /// Forgets the visitor: removes the data that the chat left on this machine.
  static void clearSession();

private:
  ZUVI_HIDDEN static void updateConfiguration();
};

} // namespace zuvi
