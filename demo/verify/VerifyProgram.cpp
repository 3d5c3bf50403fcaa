#include "demo/verify/VerifyProgram.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/LiveChat.h>
#include "demo/core/HostSetup.h"
#include "kit/Main/Private/VerificationRun.h"
#include "kit/Main/Private/ZVKYCMerchant.h"

#include <utility>

namespace zuvi::demo {

namespace {

constexpr double timeToEnd = 5;   // seconds, for the flow to slide away
constexpr double timeToSend = 1;  // seconds
constexpr double longestWait = 5; // seconds, for the merchant

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
  std::string problem = preparePictures(options_);
  if (problem.empty() && options_.drive) problem = readScript();
  if (!problem.empty()) return problem;
  merchantObserver_ = NotificationCenter::defaultCenter().observe(
      merchantUpdatedNotification, [this](const Notification&) { begin(); });
  setUpKit(options_);
  LiveChat::groupId = options_.chatGroup;
  LiveChat::name = options_.chatName;
  LiveChat::email = options_.chatEmail;
  watcher_.emplace([this](const std::string& name) {
    if (!name.empty() && name != "VerificationRun")
      output_.write({{"event", "screen"}, {"name", name}});
  });
  DispatchQueue::main().asyncAfter(longestWait, [this] { begin(); });
  return problem;
}

/// The first screen has the merchant's colour and language only if they are known by then.
void VerifyProgram::begin() {
  if (std::exchange(begun_, true)) return;
  VerificationRun::start(nullptr, {options_.screen, options_.fullScreen},
                         [this](const Verification& verification) { end(verification); });
  if (driver_) driver_->start();
}

std::string VerifyProgram::readScript() {
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
  return "";
}

void VerifyProgram::end(const Verification& verification) {
  if (std::exchange(hasEnded_, true)) return;
  const Ending ending = endingOf(verification.result);
  Value::Dictionary event{{"event", "outcome"}, {"result", ending.name}};
  if (!verification.identityId.empty()) event["identityId"] = verification.identityId;
  if (!verification.problem.empty()) event["problem"] = verification.problem;
  output_.write(event);
  // The last event is still on its way.
  DispatchQueue::main().asyncAfter(timeToSend,
                                   [this, status = ending.exitStatus] { finished_(status); });
}

} // namespace zuvi::demo
