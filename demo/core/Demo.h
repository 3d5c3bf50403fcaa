#pragma once

#include <ZuviSDK/UIKit/UIWindow.h>
#include "demo/core/CardReview.h"
#include "demo/core/ChatWatcher.h"
#include "demo/core/Driver.h"
#include "demo/core/EventLog.h"
#include "demo/core/HostViewController.h"
#include "demo/core/Options.h"
#include "testing/UIKit/ScreenWatcher.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi::demo {

/// The merchant's program without its window: registers the kit, puts up the host's screen, and
/// follows a script if there is one.
class Demo {
public:
  explicit Demo(Options options) : options_(std::move(options)) {}

  /// Empty, or in one line what keeps it from starting. `finished` comes when the script has ended,
  /// with the exit code of the program. A surface has to show the screen already.
  std::string start(std::function<void(int exitCode)> finished);

private:
  std::string startDriver();
  bool showCardReview();
  void configureChat() const;

  Options options_;
  EventLog log_;
  std::function<void(int)> finished_;
  std::shared_ptr<UIWindow> window_;
  std::shared_ptr<HostViewController> host_;
  std::optional<ScreenWatcher> watcher_;
  std::shared_ptr<ChatWatcher> chatWatcher_;
  std::optional<CardReview> cardReview_;
  std::optional<Driver> driver_;
  int outcomes_ = 0;
};

} // namespace zuvi::demo
