#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIUserInterfaceStyle.h>
#include <ZuviSDK/UIKit/UIViewController.h>

#include <functional>
#include <string>
#include <vector>

namespace zuvi {

class UIScrollView;

/// One answer of an alert.
struct UIAlertAction {
  /// The way out, which Escape takes, is `Cancel`.
  enum class Style { Default, Cancel };
  std::string title;             ///< of its button
  Style style = Style::Default;  ///< shown in a heavier face for `Cancel`
  std::function<void()> handler; ///< may be empty; comes once the alert has begun to leave
};

/// A question over everything, with its answers. A long text scrolls above them.
class ZUVI_API UIAlertController final : public UIViewController {
public:
  /// An empty text is left out. Show it with `present`.
  UIAlertController(std::string title, std::string message);

  /// Buttons stand below one another in this order. Only before the alert is presented.
  void addAction(UIAlertAction action) { actions_.push_back(std::move(action)); }
  /// Its colours; `Unspecified` is light. Only before it is presented.
  UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::Unspecified;
  /// As it was given.
  /// @{
  const std::string& title() const { return title_; }
  const std::string& message() const { return message_; }
  const std::vector<UIAlertAction>& actions() const { return actions_; }
  /// @}
  /// As if the person had tapped that answer.
  ZUVI_HIDDEN void choose(std::size_t index);

  ZUVI_HIDDEN void loadView() override;
  ZUVI_HIDDEN void viewDidLayoutSubviews() override;
  UIView* preferredFocusView() override { return buttons_.empty() ? nullptr : buttons_[0].get(); }
  /// The answer that is marked as the way out, if there is one.
  ZUVI_HIDDEN bool accessibilityPerformEscape() override;

private:
  std::string title_, message_;
  std::vector<UIAlertAction> actions_;
  std::shared_ptr<UIView> box_;
  std::shared_ptr<UIScrollView> scroller_; ///< holds the texts
  bool chosen_ = false;                    ///< an alert takes one answer
  std::vector<std::shared_ptr<UIView>> texts_, buttons_;
};

} // namespace zuvi
