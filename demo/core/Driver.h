#pragma once

#include <ZuviSDK/Foundation/Timer.h>
#include "demo/core/DriveScript.h"
#include "demo/core/Keyboard.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zuvi::demo {

/// Taps through the program as a script says, in real time, on the main queue.
class Driver {
public:
  struct Hooks {
    /// Writes a picture of the screen under that name; false when it could not.
    std::function<bool(const std::string& name)> picture;
    /// How many outcomes the host has heard so far.
    std::function<int()> outcomes;
    /// The end: empty when all lines held, else "FILE:LINE: what was expected, what was there".
    std::function<void(const std::string& failure)> done;
  };

  Driver(std::string file, std::vector<DriveCommand> commands, Hooks hooks);
  void start();

private:
  /// What one look at a command gave.
  struct Step {
    enum class State { Done, Wait, Failed };
    State state = State::Done;
    std::string problem; ///< what was expected, what was there
  };
  void step();
  Step run(const DriveCommand& command);
  Step wait(const DriveCommand& command) const;
  static Step tap(const DriveCommand& command);
  Step expect(const DriveCommand& command) const;
  Step outcome(const DriveCommand& command);
  Step script(const DriveCommand& command);
  double elapsed() const;

  std::string file_;
  std::vector<DriveCommand> commands_;
  Hooks hooks_;
  std::size_t at_ = 0;
  double commandStart_ = 0;
  int outcomesSeen_ = 0; ///< each `outcome` waits for a new one
  Keyboard keyboard_;
  /// The script that runs in the chat's page: what it gave, absent while it runs.
  std::shared_ptr<std::optional<std::string>> scriptResult_;
  std::shared_ptr<Timer> timer_;
};

} // namespace zuvi::demo
