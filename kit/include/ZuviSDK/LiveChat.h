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

/// The door to the support chat, a page that floats in a window of its own. Main queue only.
class ZUVI_API LiveChat {
public:
  /// Whose chat it is, and who the visitor is. Absent at start; an absent group is "0", an absent
  /// name or e-mail address is left empty. Nothing takes effect before there is a license; a change
  /// makes the page load anew a moment later.
  /// @{
  static Observed<std::optional<std::string>> licenseId, groupId, name, email;
  /// @}
  /// Who hears of the chat, held weakly.
  static Observed<std::weak_ptr<LiveChatDelegate>> delegate;

  /// What was set here; until then what `setVariable` has gathered. The page is told only the
  /// latter.
  /// @{
  static const std::optional<CustomVariables>& allCustomVariables();
  static void setAllCustomVariables(const std::optional<CustomVariables>& variables);
  /// @}

  /// Whether the page runs in a sandbox, walled off from the machine; absent while nobody knows
  /// yet, as the chat was not opened so far.
  static std::optional<bool> isSandboxed();
  /// False at start: on a machine that allows no sandbox the chat runs without, and a line says so.
  /// True, set before the chat is first opened: there it says "Invalid url" instead.
  static Observed<bool> requiresSandbox;

  /// True from when the chat has come all the way in until it has gone.
  static bool isChatPresented();
  /// How many messages came since the chat was last opened or closed; remembered from run to run.
  static int unreadMessagesCount();

  /// Tells the page, as a custom variable.
  static void setVariable(const std::string& key, const std::string& value);
  /// `completion` hears whether the movement came to its end. It never comes where no page can be
  /// shown.
  static void presentChat(bool animated = true,
                          const std::function<void(bool finished)>& completion = {});
  /// `completion` doesn't come either while the chat is still on its way in or out.
  static void dismissChat(bool animated = true,
                          const std::function<void(bool finished)>& completion = {});
  /// Forgets the visitor: what the chat left on this machine.
  static void clearSession();

private:
  ZUVI_HIDDEN static void updateConfiguration();
};

} // namespace zuvi
