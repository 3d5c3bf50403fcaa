#include "demo/verify/VerifyProgram.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/LiveChat.h>
#include "demo/core/HostSetup.h"
#include "kit/Main/Private/VerificationRun.h"

#include <utility>

namespace zuvi::demo {

namespace {

constexpr double timeToEnd = 5; // seconds, for the flow to slide away

struct Ending {
  const char* name;
  int exitStatus;
};

Ending endingOf(Verification::Result result) {
  switch (result) {
  case Verification::Result::Verified:
    return {"verified", 0};
  case Verification::Result::Cancelled:
    return {"cancelled", 3};
  case Verification::Result::Failed:
    break;
  }
  return {"failed", 1};
}

} // namespace

std::string VerifyProgram::start(std::function<void(int)> finished) {
  finished_ = std::move(finished);
  if (std::string problem = preparePictures(options_); !problem.empty()) return problem;
  setUpKit(options_);
  LiveChat::groupId = options_.chatGroup;
  LiveChat::name = options_.chatName;
  LiveChat::email = options_.chatEmail;
  watcher_.emplace([this](const std::string& name) {
    if (!name.empty() && name != "VerificationRun")
      output_.write({{"event", "screen"}, {"name", name}});
  });
  VerificationRun::start(nullptr, {options_.screen, options_.fullScreen},
                         [this](const Verification& verification) { end(verification); });
  return options_.drive ? startDriver() : "";
}

std::string VerifyProgram::startDriver() {
  auto parsed = readDrive(options_);
  if (const auto* problem = std::get_if<std::string>(&parsed)) return *problem;
  Driver::Hooks hooks;
  hooks.picture = [this](const std::string& name) { return writePicture(options_, name); };
  hooks.outcomes = [] { return 0; };
  hooks.done = [this](const std::string& failure) {
    if (!failure.empty())
      end({Verification::Result::Failed, {}, failure});
    else if (options_.offscreen) // nobody else can go on
      DispatchQueue::main().asyncAfter(timeToEnd, [this] {
        end({Verification::Result::Failed, {}, "the script ended before the verification"});
      });
  };
  driver_.emplace(*options_.drive, std::get<std::vector<DriveCommand>>(std::move(parsed)),
                  std::move(hooks));
  driver_->start();
  return "";
}

void VerifyProgram::end(const Verification& verification) {
  const Ending ending = endingOf(verification.result);
  Value::Dictionary event{{"event", "outcome"}, {"result", ending.name}};
  if (!verification.identityId.empty()) event["identityId"] = verification.identityId;
  if (!verification.problem.empty()) event["problem"] = verification.problem;
  output_.write(event);
  finished_(ending.exitStatus);
}

} // namespace zuvi::demo
