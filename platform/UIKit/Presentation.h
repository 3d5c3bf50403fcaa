#pragma once

#include <functional>
#include <memory>

namespace zuvi {

class UIViewController;
class UIView;

/// One screen laid over another, from its way in to its way out.
class Presentation : public std::enable_shared_from_this<Presentation> {
public:
  Presentation(UIViewController& presenter, std::shared_ptr<UIViewController> presented);

  void begin(bool animated, std::function<void()> completion);
  void end(bool animated, std::function<void()> completion);

  /// Ends the movement under way at once.
  void settle();
  bool isEnding() const { return ending_; }
  const std::shared_ptr<UIViewController>& presented() const { return presented_; }
  UIViewController* presenter() const { return presenter_; }
  void presenterGone() { presenter_ = nullptr; }

private:
  bool coversPresenter() const;
  void move(bool in, bool animated, std::function<void()> done);
  void finishBegin();
  void finishEnd();
  void removeViews();

  UIViewController* presenter_;
  std::shared_ptr<UIViewController> presented_;
  std::shared_ptr<UIView> presenterView_; ///< while it is off the window
  std::function<void()> settle_;          ///< what `settle` calls; null while nothing moves
  std::weak_ptr<UIView> focus_;           ///< who had it before
  bool ending_ = false;
};

} // namespace zuvi
