#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIViewController.h>

#include <string>
#include <vector>

namespace zuvi {

/// Screens side by side, of which one is on show, chosen on a bar at the bottom.
class ZUVI_API UITabBarController final : public UIViewController {
public:
  /// One place on the bar.
  struct Tab {
    std::string title;                            ///< on the bar
    std::shared_ptr<UIViewController> controller; ///< null: the tab is left out
  };
  /// In their order from the left; the first one is chosen.
  explicit UITabBarController(std::vector<Tab> tabs) : tabs_(std::move(tabs)) {}
  /// @cond
  void didMake();
  /// @endcond

  /// Null without tabs.
  ZUVI_HIDDEN std::shared_ptr<UIViewController> selectedViewController() const;
  /// From 0.
  std::size_t selectedIndex() const { return selected_; }
  /// An index past the end is ignored.
  void setSelectedIndex(std::size_t index);

  ZUVI_HIDDEN void viewDidLoad() override;
  ZUVI_HIDDEN void viewDidLayoutSubviews() override;

protected:
  ZUVI_HIDDEN std::vector<std::shared_ptr<UIViewController>> visibleChildren() const override;

private:
  ZUVI_HIDDEN void markSelected();

  std::vector<Tab> tabs_;
  std::size_t selected_ = 0;
  std::shared_ptr<UIView> bar_;
};

} // namespace zuvi
