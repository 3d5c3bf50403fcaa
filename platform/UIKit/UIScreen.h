#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/QuartzCore/CALayer.h>

#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class UIWindow;

/// What shows the screen: a widget, or memory.
class ScreenSurface {
public:
  virtual ~ScreenSurface() = default;
  /// The screen has changed: draw a frame when it suits. May come many times before one.
  virtual void requestFrame() = 0;
  /// Hands a text to whoever speaks to the person.
  virtual void announce(const std::string&) {}
};

/// Marks all drawings from `layer` down as outdated, as when the scale or the size of text changed.
void redraw(CALayer& layer);

/// The one surface on which the windows stack. Main queue only.
class UIScreen final : public LayerHost {
public:
  /// 375 x 812 points at two pixels a point until somebody shows it.
  static UIScreen& main();

  /// In points.
  CGRect bounds() const { return {0, 0, size_.width, size_.height}; }
  /// Pixels a point.
  double scale() const { return scale_; }
  /// How far bars and notches reach in from each edge, in points.
  UIEdgeInsets safeAreaInsets() const { return safeArea_; }

  // For whoever shows the screen.
  /// For whoever shows the screen. Windows take the new size at once. Sizes that are not positive
  /// change nothing.
  void configure(CGSize size, double scale, UIEdgeInsets safeArea = {});
  /// What shows the screen, and sets null before it goes. Null: nothing is drawn, and what windows
  /// had presented is dismissed, as nobody can leave it any more.
  void setSurface(ScreenSurface* surface);
  bool hasSurface() const { return surface_ != nullptr; }
  /// The person's wish for larger text. Text grows up to `largestText`, on a narrow screen less, as
  /// its longest words would not fit.
  void setTextScale(double scale);
  static constexpr double largestText = 1.5; ///< times the fonts' own sizes
  /// What is drawn; the windows' layers are its sublayers.
  CALayer& rootLayer() { return *root_; }
  /// Lays out all windows; before drawing, and by itself in the next turn of the main queue after
  /// something was marked.
  void layoutIfNeeded();
  /// What no longer holds what was drawn there; emptied by the call.
  std::vector<CGRect> takeDamage();

  // For windows and views.
  /// From back to front.
  const std::vector<UIWindow*>& windows() const { return windows_; }
  /// Puts the window above all others of its level, or takes it off; hosts call
  /// `UIWindow::setVisible`.
  /// @{
  void show(UIWindow& window);
  void hide(UIWindow& window);
  /// @}
  /// Lays out all windows in the next turn of the main queue.
  void setNeedsLayout();
  /// Speaks the text where the surface can; hosts call `UIAccessibility::post`.
  void announce(const std::string& text);

  void setNeedsFrame() override;
  void addDamage(const CGRect& rect) override;

private:
  UIScreen();
  void applyTextScale();

  CGSize size_{375, 812};
  double wantedTextScale_ = 1;
  double scale_ = 2;
  UIEdgeInsets safeArea_;
  ScreenSurface* surface_ = nullptr;
  std::shared_ptr<CALayer> root_;
  std::vector<UIWindow*> windows_;
  std::vector<CGRect> damage_;
  bool layoutScheduled_ = false;
};

} // namespace zuvi
