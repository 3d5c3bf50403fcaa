#pragma once

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Verification.h>
#include "demo/core/Driver.h"
#include "demo/core/Options.h"
#include "demo/verify/JSONOutput.h"
#include "testing/UIKit/ScreenWatcher.h"

#include <functional>
#include <optional>
#include <string>

namespace zuvi::demo {

/// One verification: tells on standard output which screens are shown and how it ended.
class VerifyProgram {
public:
  explicit VerifyProgram(Options options) : options_(std::move(options)) {}

  /// Empty, or in one line what keeps it from starting. `finished` gets the program's exit status.
  std::string start(std::function<void(int exitStatus)> finished);

private:
  std::string readScript();
  void begin();
  void end(const Verification& verification);

  Options options_;
  JSONOutput output_;
  std::function<void(int)> finished_;
  std::optional<ScreenWatcher> watcher_;
  std::optional<Driver> driver_;
  NotificationObserver merchantObserver_;
  bool begun_ = false, hasEnded_ = false;
};

} // namespace zuvi::demo
