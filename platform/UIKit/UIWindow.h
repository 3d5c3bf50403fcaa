#pragma once

#include "platform/Export.h"
#include "platform/UIKit/UIView.h"

namespace zuvi {

class UIViewController;

/// A sheet over the whole screen with a screenful of views. Windows lie over one another by level
/// and, within a level, by the moment they were shown.
class ZUVI_API UIWindow : public UIView {
public:
  static constexpr double levelNormal = 0;
  static constexpr double levelStatusBar = 1000;
  static constexpr double levelAlert = 2000;

  /// Hidden, and as large as the screen.
  UIWindow();
  ~UIWindow() override;

  UIWindow* window() const override { return const_cast<UIWindow*>(this); }

  double windowLevel() const { return level_; }
  void setWindowLevel(double level);
  const std::shared_ptr<UIViewController>& rootViewController() const { return root_; }
  void setRootViewController(std::shared_ptr<UIViewController> controller);
  /// The screen that lies over the others of the window; null: there is none.
  std::shared_ptr<UIViewController> topViewController() const;
  bool isKeyWindow() const;
  void makeKeyAndVisible();
  /// Showing puts it on the screen, hiding takes it off; the appearance calls follow.
  void setVisible(bool visible);
  bool isVisible() const { return visible_; }

  void layoutSubviews() override;

private:
  /// The screens that are seen: the root's or what covers it, and what is laid over that.
  std::vector<std::shared_ptr<UIViewController>> controllersOnShow() const;

  double level_ = levelNormal;
  bool visible_ = false;
  std::shared_ptr<UIViewController> root_;
};

} // namespace zuvi
