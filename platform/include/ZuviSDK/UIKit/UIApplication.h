#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/URL.h>
#include <ZuviSDK/UIKit/KeyPress.h>

#include <functional>
#include <memory>
#include <string>

namespace zuvi {

class UIView;
class UIViewController;
class UIWindow;

/// Posted when the program's window comes to the front or leaves it.
/// @{
inline constexpr const char* UIApplicationDidBecomeActiveNotification =
    "UIApplicationDidBecomeActiveNotification";
inline constexpr const char* UIApplicationWillResignActiveNotification =
    "UIApplicationWillResignActiveNotification";
/// @}

/// The address that leads to the settings of this program.
inline constexpr const char* UIApplicationOpenSettingsURLString = "app-settings:";

/// Posted by a host that has an on-screen keyboard when it is about to show or hide, or has moved;
/// web pages and the chat then make room. The keys below say what the user info holds.
/// @{
inline constexpr const char* UIKeyboardWillShowNotification = "UIKeyboardWillShowNotification";
inline constexpr const char* UIKeyboardWillHideNotification = "UIKeyboardWillHideNotification";
inline constexpr const char* UIKeyboardDidChangeFrameNotification =
    "UIKeyboardDidChangeFrameNotification";
/// @}
/// The keyboard's frame on the screen before and after: dictionaries of x, y, width and height in
/// points.
/// @{
inline constexpr const char* UIKeyboardFrameBeginUserInfoKey = "UIKeyboardFrameBeginUserInfoKey";
inline constexpr const char* UIKeyboardFrameEndUserInfoKey = "UIKeyboardFrameEndUserInfoKey";
/// @}
/// The length of the keyboard's movement, in seconds.
inline constexpr const char* UIKeyboardAnimationDurationUserInfoKey =
    "UIKeyboardAnimationDurationUserInfoKey";
/// The number of the curve that the keyboard moves along.
inline constexpr const char* UIKeyboardAnimationCurveUserInfoKey =
    "UIKeyboardAnimationCurveUserInfoKey";

/// The program: who has the focus, where touches and keys go, how addresses are opened. Main queue
/// only.
class UIApplication {
public:
  /// The one program, made on first use.
  ZUVI_API static UIApplication& shared();

  /// Over which the flow shows, null for none; see `UIWindow::makeKeyAndVisible`.
  /// @{
  UIWindow* keyWindow() const { return keyWindow_; }
  void setKeyWindow(UIWindow* window) { keyWindow_ = window; }
  /// @}

  /// Opens an address in the program that the desktop names for it. False when there is none.
  ZUVI_API bool openURL(const URL& url);
  /// Whether there is such a program. Opens nothing.
  bool canOpenURL(const URL& url) const;
  /// Replaces the desktop's way of opening; null restores it. Without `canOpen` the opener counts
  /// as one that takes everything.
  void setURLOpener(std::function<bool(const URL&)> opener,
                    std::function<bool(const URL&)> canOpen = {}) {
    opener_ = std::move(opener);
    canOpen_ = std::move(canOpen);
  }

  /// The view that keys go to first; null: none.
  UIView* firstResponder() const { return firstResponder_; }
  /// Null: nobody has the focus.
  void setFirstResponder(UIView* view);

  /// Whether the program's window is in front; false at start.
  bool isActive() const { return active_; }
  /// From the window system; posts the notice when it changes.
  void setActive(bool active);

  // Touches and keys
  /// From the window system, one finger at a time, at a point of the screen. A second beginning
  /// cancels the first. Not heard while screens change places.
  /// @{
  void touchBegan(CGPoint point);
  void touchMoved(CGPoint point);
  void touchEnded(CGPoint point);
  void touchCancelled();
  /// @}
  /// `delta` in points; it goes to the view at that place. False when nothing moved there.
  bool scrollWheel(CGPoint point, CGPoint delta);
  /// Whether a finger there could move contents.
  bool canScrollAt(CGPoint point) const;
  /// To the view with the focus and those above it, or to what scrolls in the middle of the screen;
  /// then Tab moves the focus, and Escape goes to the screen on top. False when nobody had a use
  /// for it.
  bool keyPressed(const KeyPress& key);
  /// Whether Tab, or Shift and Tab, would begin anew at the other end.
  bool isFocusAtEnd(bool backwards) const;
  /// Whether the person has used keys since the last touch. Then the focus follows the screens.
  /// @{
  bool isKeyboardInUse() const { return keyboardInUse_; }
  void setKeyboardInUse(bool inUse) { keyboardInUse_ = inUse; }
  /// @}
  /// For containers, once a screen is there: the focus goes where the screen, or a frame around it,
  /// prefers; else it stays where it can be reached, and with the screen as a whole where not.
  void moveFocusInto(UIViewController& screen);
  /// To the next control, from the last one to the first; false when there is none.
  bool moveFocus(bool backwards);
  /// Gives the first control in a view the focus; false when there is none.
  bool focusFirstIn(UIView& view);
  /// For what covered a screen: gives the view the focus that it had. False when it can't be
  /// reached.
  bool moveFocusBack(const std::weak_ptr<UIView>& view);
  /// The view that a touch there would go to; null for none.
  UIView* hitTest(CGPoint point) const;
  /// Passes the touch under way, if it belongs to a view below `scroller`, on to `scroller`.
  void takeOverTouch(UIView& scroller);

  /// Whether touches, wheel and keys are dropped now, as while screens change places.
  bool isIgnoringInteractionEvents() const { return ignoring_ > 0; }
  /// Also takes the touch under way from its view.
  void beginIgnoringInteractionEvents();
  /// Once for each begin; the last one makes touches heard again.
  void endIgnoringInteractionEvents() { ignoring_--; }

  /// @cond
  /// From views and windows on their way out.
  void viewWillGo(UIView& view);
  void windowWillGo(UIWindow& window);
  /// @endcond

private:
  UIApplication() = default;
  static bool performEscape();

  UIWindow* keyWindow_ = nullptr;
  UIView* firstResponder_ = nullptr;
  UIView* touched_ = nullptr;
  bool active_ = false;
  bool keyboardInUse_ = false;
  int ignoring_ = 0;
  std::function<bool(const URL&)> opener_, canOpen_;
};

} // namespace zuvi
