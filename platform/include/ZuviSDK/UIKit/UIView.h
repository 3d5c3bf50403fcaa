#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Dispatch/TimeInterval.h>
#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Make.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/QuartzCore/CALayer.h>
#include <ZuviSDK/UIKit/NSLayoutConstraint.h>
#include <ZuviSDK/UIKit/UIAccessibility.h>
#include <ZuviSDK/UIKit/UIColor.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class DrawingContext;
class NibDeclaration;
class UIViewController;
class UIWindow;
struct AnimationCurve;
struct KeyPress;

/// How contents of another size fill a view: stretched, whole, cut, or at their own size.
enum class UIViewContentMode { ScaleToFill, ScaleAspectFit, ScaleAspectFill, Center };

/// Which parts of a frame follow when the superview changes its size; combine with |.
enum UIViewAutoresizing : unsigned {
  AutoresizingNone = 0,
  FlexibleLeftMargin = 1,
  FlexibleWidth = 2,
  FlexibleRightMargin = 4,
  FlexibleTopMargin = 8,
  FlexibleHeight = 16,
  FlexibleBottomMargin = 32,
};

/// A rectangle on the screen that draws, lays out its subviews and hears touches. Made with
/// `make<...>()`. Main queue only.
///
/// Values that are called animatable move to what they are set to inside `animate`; read, they are
/// what was set last. Where nothing else changes on the screen, what is written to the fields for
/// assistive technology is seen after `UIAccessibility::post`.
class ZUVI_API UIView : public std::enable_shared_from_this<UIView> {
public:
  /// Clear, visible, in no superview; an empty frame unless one is given.
  explicit UIView(const CGRect& frame = {});
  virtual ~UIView();
  UIView(const UIView&) = delete;
  UIView& operator=(const UIView&) = delete;

  // Tree
  /// From back to front.
  const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
  /// Null: there is none.
  UIView* superview() const { return superview_; }
  /// The window that it is in, visible or not; null: none.
  virtual UIWindow* window() const;
  /// On top of the others; a view that has another superview leaves it first.
  void addSubview(std::shared_ptr<UIView> view);
  /// `index` counts from the back; one past the end is on top. Null, this view and those above it
  /// are ignored.
  void insertSubview(std::shared_ptr<UIView> view, std::size_t index);
  /// Does nothing when the view is no subview of this one.
  void bringSubviewToFront(const std::shared_ptr<UIView>& view);
  /// Takes the focus and a touch under way from it; constraints of the superview that speak of it
  /// go too.
  void removeFromSuperview();
  /// True also for the view itself.
  ZUVI_HIDDEN bool isDescendantOf(const UIView& other) const;

  // Geometry, in the superview's coordinates unless told otherwise
  /// The box around the view. Writing it sets the size of the bounds and the centre; subviews
  /// follow as their masks say.
  /// @{
  CGRect frame() const { return layer_->frame(); }
  void setFrame(const CGRect& frame);
  /// @}
  /// In the view's own coordinates; an origin other than zero moves what is in it. The centre
  /// stays.
  /// @{
  CGRect bounds() const { return layer_->bounds(); }
  ZUVI_HIDDEN void setBounds(const CGRect& bounds);
  /// @}
  /// Moves without a layout.
  /// @{
  CGPoint center() const { return layer_->position(); }
  void setCenter(CGPoint center);
  /// @}
  /// Applied about the centre, for drawing and touches; layout does not see it. The identity at
  /// start.
  /// @{
  CGAffineTransform transform() const { return layer_->transform(); }
  void setTransform(const CGAffineTransform& transform) { layer_->setTransform(transform); }
  /// @}
  /// From this view's coordinates to the screen's.
  ZUVI_HIDDEN CGPoint convertToScreen(CGPoint point) const;
  /// The box around where the rectangle is on the screen.
  ZUVI_HIDDEN CGRect convertToScreen(const CGRect& rect) const;
  /// From the screen's coordinates to this view's; zero where a transform flattens the view.
  /// @{
  ZUVI_HIDDEN CGPoint convertFromScreen(CGPoint point) const;
  ZUVI_HIDDEN CGRect convertFromScreen(const CGRect& rect) const;
  /// @}
  /// A rectangle of another view's coordinates in this view's; null: of the screen's.
  CGRect convert(const CGRect& rect, const UIView* from) const;

  // Appearance
  /// From 0 to 1, which it is clamped to; 1 at start. Holds for the subviews too. Below 0.01 the
  /// view hears no touches. Animatable.
  /// @{
  double alpha() const { return layer_->opacity(); }
  void setAlpha(double alpha) { layer_->setOpacity(alpha); }
  /// @}
  /// False at start. A hidden view keeps its place in the layout.
  /// @{
  bool isHidden() const { return layer_->isHidden(); }
  void setHidden(bool hidden) { layer_->setHidden(hidden); }
  /// @}
  /// Clear at start. Animatable.
  /// @{
  UIColor backgroundColor() const { return layer_->backgroundColor(); }
  void setBackgroundColor(const UIColor& color) { layer_->setBackgroundColor(color); }
  /// @}
  /// Whether subviews are cut off at the rounded bounds; false at start.
  /// @{
  bool clipsToBounds() const { return layer_->masksToBounds(); }
  void setClipsToBounds(bool clips) { layer_->setMasksToBounds(clips); }
  /// @}
  /// Stretched at start; for views that show a picture.
  /// @{
  UIViewContentMode contentMode() const { return contentMode_; }
  void setContentMode(UIViewContentMode mode);
  /// @}
  /// Neither hidden nor transparent, nor yet to fade in; whatever the views above it are.
  ZUVI_HIDDEN bool isSeen() const;
  /// What is drawn of the view; never null, the same for as long as it lives.
  const std::shared_ptr<CALayer>& layer() const { return layer_; }
  /// `draw` runs again before the next frame.
  void setNeedsDisplay() { layer_->setNeedsDisplay(); }
  /// Draws the view's own contents, in its coordinates. The base class draws nothing.
  virtual void draw(DrawingContext& context);

  // Layout
  /// Lays the view out in the next turn of the main queue, once it is on a visible window.
  void setNeedsLayout();
  /// The same for all views below as well.
  ZUVI_HIDDEN void setNeedsLayoutBelow();
  /// Lays out this view and all below it at once, where marked.
  void layoutIfNeeded();
  /// Places the subviews. The base class applies the constraints that this view holds; a subclass
  /// calls it first.
  virtual void layoutSubviews();
  /// The size that the contents ask for; a negative side has no wish.
  virtual CGSize intrinsicContentSize() const;
  /// The size that the contents take when `size.width` is all there is. A view with constraints
  /// asks them.
  virtual CGSize sizeThatFits(CGSize size) const;
  /// Takes the size that the contents ask for; the top left corner stays.
  void sizeToFit();
  /// The contents ask for another size: views above are laid out anew.
  void invalidateIntrinsicContentSize();
  /// Values of `UIViewAutoresizing`; none at start. Parts that follow share the change evenly.
  /// @{
  unsigned autoresizingMask() const { return autoresizingMask_; }
  void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }
  /// @}
  /// Constraints that ask for more width than this leave the view centred where it would have been;
  /// absent: no limit.
  std::optional<double> maximumWidth;
  /// For this view and its subviews; where two determine the same value, the earlier one wins.
  void addConstraint(std::shared_ptr<NSLayoutConstraint> constraint);
  /// In the order in which they were added.
  const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints() const {
    return constraints_;
  }
  /// How far bars and notches of the screen reach into this view.
  UIEdgeInsets safeAreaInsets() const;

  // Touches and keys
  /// True at start. False: touches and the focus pass by the view and all below it.
  /// @{
  bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
  void setUserInteractionEnabled(bool enabled) { userInteractionEnabled_ = enabled; }
  /// @}
  /// The view that a touch at `point`, in this view's coordinates, belongs to; null for none.
  virtual UIView* hitTest(CGPoint point);
  /// Whether a touch there is the view's; within its bounds unless a subclass says else.
  virtual bool pointInside(CGPoint point) const;
  /// A touch of the view, in its coordinates; it stays the view's until it ends or is cancelled.
  /// The base class hands it to the superview.
  /// @{
  virtual void touchBegan(CGPoint point);
  virtual void touchMoved(CGPoint point);
  virtual void touchEnded(CGPoint point);
  virtual void touchCancelled();
  /// @}
  /// Called for the wheel; `delta` in points. False hands it to the superview.
  virtual bool scrollWheel(CGPoint delta);

  /// Whether keys may go to it. Asked also for Tab, which passes by a view that says no.
  virtual bool canBecomeFirstResponder() const { return false; }
  /// Whether it has the focus.
  ZUVI_HIDDEN bool isFirstResponder() const;
  /// Takes the focus from whoever has it. False when the view can't have it or is in no window.
  bool becomeFirstResponder();
  /// Nobody has the focus then; nothing happens when it was not this view.
  void resignFirstResponder();
  /// Called after the view got the focus, or with false after it lost it.
  virtual void didChangeFirstResponder(bool) {}
  /// True when the key was used up.
  virtual bool keyPressed(const KeyPress&) { return false; }
  /// Takes the focus away from a text field at or below this view.
  ZUVI_HIDDEN void endEditing(bool force);

  // Names
  /// The outlet that the nib connected to this view, or the id that it gave it.
  std::string outletName;
  /// What a picture of the view in words holds beside its place: text, title, image and so on.
  virtual void describe(Value::Dictionary& description) const;

  // Assistive technology. Where nothing else changes on the screen, what is written here is seen
  // after `UIAccessibility::post(LayoutChanged)`.
  /// The spoken name where the text on it does not do; empty: none.
  std::string accessibilityLabel;
  /// What it holds or how it stands; empty: as its class has it.
  std::string accessibilityValue;
  /// Absent: as its class has it. `None` leaves the view out, not what is below it.
  std::optional<UIAccessibilityRole> accessibilityRole;
  /// Leaves out the view and all below it.
  bool accessibilityElementsHidden = false;
  /// The view in words. The base class gives what is written above.
  virtual UIAccessibilityElement accessibilityElement() const;
  /// Does what a tap does; false when that is nothing.
  virtual bool accessibilityActivate() { return false; }

  // Nibs
  /// Applies an attribute of a nib; false when the class has none of that name, or the value does
  /// not fit.
  virtual bool setNibAttribute(const std::string& name, const std::string& value);
  /// Declares what the nib of this class has to connect, when it is the nib's owner.
  virtual void declareNib(NibDeclaration& nib);
  /// After the nib made the view and connected everything.
  virtual void awakeFromNib() {}

  /// Called after the view came onto a window or left it.
  virtual void didMoveToWindow() {}
  /// Called after the view came into a superview or left it.
  virtual void didMoveToSuperview() {}

  /// Runs `changes`; what they set moves over `duration` seconds (ease in and out). `completion`
  /// comes once, with false if something else cut the movement short.
  static void animate(TimeInterval duration, const std::function<void()>& changes,
                      std::function<void(bool finished)> completion = {});
  /// The same along a curve, after `delay` seconds.
  static void animate(TimeInterval duration, TimeInterval delay, const AnimationCurve& curve,
                      const std::function<void()>& changes,
                      std::function<void(bool finished)> completion = {});

protected:
  /// For a subclass whose layer is of a class of its own.
  ZUVI_HIDDEN UIView(const CGRect& frame, std::shared_ptr<CALayer> layer);

private:
  friend class UIViewController;
  friend class UIWindow;
  ZUVI_HIDDEN void sizeChanged(CGSize old);
  ZUVI_HIDDEN void windowChanged();
  ZUVI_HIDDEN void layoutTree();
  ZUVI_HIDDEN void markLayoutPath();

  std::shared_ptr<CALayer> layer_;
  UIView* superview_ = nullptr;
  std::vector<std::shared_ptr<UIView>> subviews_;
  std::vector<std::shared_ptr<NSLayoutConstraint>> constraints_;
  UIViewController* controller_ = nullptr; ///< whose root view this is
  UIViewContentMode contentMode_ = UIViewContentMode::ScaleToFill;
  unsigned autoresizingMask_ = AutoresizingNone;
  bool userInteractionEnabled_ = true;
  bool needsLayout_ = true;
  bool layoutBelow_ = true; ///< something below is marked
};

} // namespace zuvi
