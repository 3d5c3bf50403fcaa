#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/ToolkitTypes.h>

#include <functional>
#include <string>
#include <vector>

namespace zuvi {

/// How a verification ended.
struct Verification {
  /// The ways to end.
  enum class Result {
    Verified,  ///< the person completed the run
    Cancelled, ///< the person left, or the window was destroyed
    Failed,    ///< the run could not be started
  };
  Result result = Result::Cancelled; ///< how it ended
  std::string identityId;            ///< of a verified person; else empty
  std::string problem;               ///< why it failed, in one line; else empty
};

/// Gets how a verification ended; may be empty.
using VerificationCompletion = std::function<void(const Verification&)>;

/// Runs a verification in a window of its own over `parent`; null: it stands alone. On a small
/// display the window fills the display. The window closes with the run; if the person closes it,
/// the flow asks whether to leave. Where a `screenWidgetNew` shows the screen, the run is shown
/// there instead, over the program's own screens.
///
/// `completion` is called once, when the window has closed; `ZVKYC::delegate` gets its call as
/// well, before that. It fails without a display, without a registered client id, and while another
/// `verify` is under way, whose window then comes to the front. Call it on the main thread after
/// `gtk_init`; the main queue is attached to the event loop by it.
ZUVI_API void verify(GtkWindow* parent, VerificationCompletion completion);

/// Runs a verification in another process, `zuvi-verify`: neither film nor pictures come into this
/// one, and no failure of the flow can end it. The kit's state here is handed over: client id,
/// metadata, identity, texts, language, style, the chat's visitor, the program's version and
/// addresses; cameras are the machine's unless `command` says else. That is the program with its
/// options; a name without "/" is looked for beside the kit's library and on
/// PATH. Needs no display connection of this process and no toolkit, only GLib's default loop.
///
/// `completion` and `ZVKYC::delegate` are called as `verify` calls them. Main thread only.
ZUVI_API void verifyInProcessOfItsOwn(VerificationCompletion completion,
                                      const std::vector<std::string>& command = {"zuvi-verify"});

/// A button for any place among a program's widgets. It has the merchant's colour and language. A
/// click does what `verify` does, over the button's window; while that window is open, a click
/// brings it to the front. `completion` is called for each run. Call it on the main thread after
/// `gtk_init`. Like all new widgets it has a floating reference.
ZUVI_API GtkWidget* launchButtonNew(VerificationCompletion completion = {});

} // namespace zuvi
