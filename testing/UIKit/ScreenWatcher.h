#pragma once

#include <ZuviSDK/Foundation/Timer.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class UIViewController;

/// The screens from the window's root to the one in front: presented over one another, stacked, or
/// framed. Containers stand in it too.
std::vector<std::shared_ptr<UIViewController>> screenStack();
/// The class of the screen in front; empty without one.
std::string topScreen();

/// Tells when the screen in front becomes another.
class ScreenWatcher {
public:
  explicit ScreenWatcher(std::function<void(const std::string& name)> changed);

private:
  void look();

  std::function<void(const std::string&)> changed_;
  const void* shown_ = nullptr;
  std::shared_ptr<Timer> timer_;
};

} // namespace zuvi
