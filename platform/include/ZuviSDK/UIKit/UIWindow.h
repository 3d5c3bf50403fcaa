#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

class UIViewController;

/// A sheet over the whole screen with a screenful of views. Windows lie over one another by level
/// and, within a level, by the moment they were shown. One that is destroyed dismisses what its
/// root had presented.
class ZUVI_API UIWindow : public UIView {
public:
  /// Levels that others are counted from; a higher one lies on top.
  /// @{
  static constexpr double levelNormal = 0;
  static constexpr double levelStatusBar = 1000;
  static constexpr double levelAlert = 2000;
  /// @}

  /// Hidden, and as large as the screen.
  UIWindow();
  ~UIWindow() override;

  UIWindow* window() const override { return const_cast<UIWindow*>(this); }

  /// `levelNormal` at start. Takes effect at once.
  /// @{
  double windowLevel() const { return level_; }
  ZUVI_HIDDEN void setWindowLevel(double level);
  /// @}
  /// Null at start. A new one fills the window without a movement; what the old one had presented
  /// is dismissed.
  /// @{
  const std::shared_ptr<UIViewController>& rootViewController() const { return root_; }
  void setRootViewController(std::shared_ptr<UIViewController> controller);
  /// @}
  /// The screen that lies over the others of the window; null: there is none.
  ZUVI_HIDDEN std::shared_ptr<UIViewController> topViewController() const;
  /// The key window is the one that the kit lays its flow over. Hiding it leaves none.
  /// @{
  ZUVI_HIDDEN bool isKeyWindow() const;
  void makeKeyAndVisible();
  /// @}
  /// Showing puts it on the screen, hiding takes it off; the appearance calls follow.
  void setVisible(bool visible);
  /// False at start.
  bool isVisible() const { return visible_; }

  ZUVI_HIDDEN void layoutSubviews() override;

private:
  /// The screens that are seen: the root's or what covers it, and what is laid over that.
  ZUVI_HIDDEN std::vector<std::shared_ptr<UIViewController>> controllersOnShow() const;

  double level_ = levelNormal;
  bool visible_ = false;
  std::shared_ptr<UIViewController> root_;
};

} // namespace zuvi
