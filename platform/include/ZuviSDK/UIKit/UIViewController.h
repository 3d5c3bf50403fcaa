#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Make.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class Bundle;
class NibDeclaration;
class UINavigationController;
class UITabBarController;

/// Whether what lies below is taken off the screen, and hears so, or stays in sight.
enum class UIModalPresentationStyle { FullScreen = 0, OverCurrentContext = 6 };
/// How it comes and goes: from below in 0.45 seconds, or by fading in 0.25.
enum class UIModalTransitionStyle { CoverVertical = 0, CrossDissolve = 2 };

/// One screen, or a frame around screens. Made with `make<...>()`, held by the stack or window that
/// shows it. Main queue only.
///
/// The appearance calls come in pairs, `viewWillAppear` with `viewDidAppear` and
/// `viewWillDisappear` with `viewDidDisappear`; the second of a pair follows once the movement has
/// ended. An override of a hook calls its base class first.
class ZUVI_API UIViewController : public std::enable_shared_from_this<UIViewController> {
public:
  /// The view is an empty one unless `loadView` makes another.
  UIViewController();
  /// The view comes from that nib when it is first asked for.
  UIViewController(std::string nibName, std::shared_ptr<const Bundle> bundle);
  virtual ~UIViewController();
  UIViewController(const UIViewController&) = delete;
  UIViewController& operator=(const UIViewController&) = delete;

  /// Loads the view on first use. A nib that is refused prints why and leaves an empty view.
  const std::shared_ptr<UIView>& view();
  /// Asks without loading.
  bool isViewLoaded() const { return view_ != nullptr; }
  /// For `loadView`. Null: the view is loaded anew when it is next asked for.
  void setView(std::shared_ptr<UIView> view);

  // Hooks
  /// Makes the view and hands it to `setView`; the base class reads the nib. An override that does
  /// it all by itself need not call it.
  virtual void loadView();
  /// Once for each view that was loaded, before it is on a window.
  virtual void viewDidLoad() {}
  /// The pairs that the class speaks of; true when a movement lies between the two calls.
  /// @{
  virtual void viewWillAppear(bool animated);
  virtual void viewDidAppear(bool) {}
  virtual void viewWillDisappear(bool) {}
  virtual void viewDidDisappear(bool) {}
  /// @}
  /// The presentation of this screen has ended, or one below it that took it along; also where its
  /// window was hidden, so that nothing disappeared.
  virtual void wasDismissed() {}
  /// What this screen had presented is gone, and another may take its place.
  virtual void presentedWasDismissed() {}
  /// Before and after each layout of the root view; frames are set in the second.
  /// @{
  virtual void viewWillLayoutSubviews() {}
  virtual void viewDidLayoutSubviews() {}
  /// @}
  /// What the nib of this screen has to connect.
  virtual void declareNib(NibDeclaration&) {}
  /// The control that leads on, which keys are to reach first; null: none.
  virtual UIView* preferredFocusView() { return nullptr; }
  /// Escape: leads back or closes. False when there is no way out.
  virtual bool accessibilityPerformEscape() { return false; }
  /// Kept for hosts that turn the screen; the kit never does.
  virtual bool shouldAutorotate() const { return true; }
  /// A mask of orientations; portrait is 2.
  virtual unsigned supportedInterfaceOrientations() const { return 2; }
  /// An orientation by number; portrait is 1.
  virtual int preferredInterfaceOrientationForPresentation() const { return 1; }

  // Containment
  /// The frame around this screen; null: none.
  UIViewController* parent() const { return parent_; }
  /// In the order in which they were added.
  const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
  /// Ties and unties the two; their views are the container's to place.
  /// @{
  ZUVI_HIDDEN void addChild(std::shared_ptr<UIViewController> child);
  ZUVI_HIDDEN void removeFromParent();
  /// @}
  /// The nearest one around this screen; null: none.
  /// @{
  UINavigationController* navigationController() const;
  ZUVI_HIDDEN UITabBarController* tabBarController() const;
  /// @}
  /// Pushes onto the nearest stack; without one, presents.
  ZUVI_HIDDEN void show(std::shared_ptr<UIViewController> controller);

  /// What the frame around this screen covers of it at its edges, in points; none at start. The
  /// safe area of the view and those below leaves it free, as it does the screen's own insets.
  /// @{
  UIEdgeInsets additionalSafeAreaInsets() const { return additionalSafeArea_; }
  ZUVI_HIDDEN void setAdditionalSafeAreaInsets(const UIEdgeInsets& insets);
  /// @}

  // Presentation
  /// How this screen is laid over another; read when it is presented and when it leaves.
  /// @{
  UIModalPresentationStyle modalPresentationStyle = UIModalPresentationStyle::FullScreen;
  UIModalTransitionStyle modalTransitionStyle = UIModalTransitionStyle::CoverVertical;
  /// @}
  /// What this screen, or the frame that it stands in, has presented; one on its way out no longer
  /// counts.
  std::shared_ptr<UIViewController> presentedViewController() const;
  /// Who presented this screen, or the frame that it stands in; null: nobody.
  ZUVI_HIDDEN UIViewController* presentingViewController() const;
  /// Lays `controller` over this screen. When something is presented already, or nothing of this
  /// screen is on a window, it prints a line and does nothing more.
  void present(std::shared_ptr<UIViewController> controller, bool animated,
               std::function<void()> completion = {});
  /// Takes away what this screen has presented, with all above it; if it has presented nothing,
  /// the sheet that this screen belongs to.
  void dismiss(bool animated, std::function<void()> completion = {});

  // For containers
  /// Where a screen stands between its appearance calls.
  enum class Appearance { Disappeared, Appearing, Appeared, Disappearing };
  /// Disappeared at start.
  Appearance appearance() const { return appearance_; }
  /// Makes the first and the second call of a pair, on this screen and on its children that are on
  /// show. A call that would repeat itself is left out.
  /// @{
  ZUVI_HIDDEN void beginAppearanceTransition(bool appearing, bool animated);
  ZUVI_HIDDEN void endAppearanceTransition();
  /// @}

protected:
  /// Which children appear and disappear with this one: all of them, unless a container says else.
  virtual std::vector<std::shared_ptr<UIViewController>> visibleChildren() const {
    return children_;
  }

private:
  friend class UIView;
  friend class Presentation;
  ZUVI_HIDDEN UIViewController* topmostParent() const;

  std::string nibName_;
  std::shared_ptr<const Bundle> bundle_;
  std::shared_ptr<UIView> view_;
  UIViewController* parent_ = nullptr;
  std::vector<std::shared_ptr<UIViewController>> children_;
  std::shared_ptr<class Presentation> presentation_; ///< by this controller, as presenter
  std::weak_ptr<class Presentation> presentedBy_;    ///< of this controller
  Appearance appearance_ = Appearance::Disappeared;
  bool animatedAppearance_ = false;
  UIEdgeInsets additionalSafeArea_;
};

} // namespace zuvi
