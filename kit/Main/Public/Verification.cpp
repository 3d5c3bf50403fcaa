#include <ZuviSDK/Verification.h>

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/ZVKYC.h>
#include <ZuviSDK/ZVKYCButton.h>
#include "kit/Main/Private/Launch.h"
#include "kit/Main/Private/VerificationProgram.h"
#include "kit/Main/Private/VerificationRun.h"
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProgramRun.h"
#include "platform/UIKit/ViewButton.h"

#include <utility>

namespace zuvi {

namespace {

/// Absent: the line tells of something else.
std::optional<Verification> readOutcome(const std::string& line) {
  const auto json = JSONSerialization::jsonObject(line);
  const auto* event = json ? json->dictionary() : nullptr;
  if (!event || stringValue(*event, "event") != "outcome") return std::nullopt;
  const auto result = stringValue(*event, "result");
  Verification end{Verification::Result::Failed, stringValue(*event, "identityId").value_or(""),
                   stringValue(*event, "problem").value_or("")};
  if (result == "verified" && !end.identityId.empty()) end.result = Verification::Result::Verified;
  if (result == "cancelled") end.result = Verification::Result::Cancelled;
  return end;
}

/// The program ended without an outcome.
Verification failedProgram(int status) {
  const std::string problem =
      status < 0 ? "zuvi-verify could not be run, or a signal ended it"
                 : "zuvi-verify ended without an outcome, exit status " + std::to_string(status);
  return {Verification::Result::Failed, {}, problem};
}

void tellDelegate(const Verification& end) {
  const auto delegate = ZVKYC::instance().delegate.lock();
  if (!delegate || end.result == Verification::Result::Failed) return;
  if (end.result == Verification::Result::Verified)
    delegate->zvKYCLoginSuccess(end.identityId);
  else
    delegate->zvKYCLoginCancelled();
}

} // namespace

void verify(GtkWindow* parent, VerificationCompletion completion) {
  assertMainQueue("verify");
  MainLoop::attach();
  VerificationRun::start(parent, {}, std::move(completion));
}

void verifyInProcessOfItsOwn(VerificationCompletion completion,
                             const std::vector<std::string>& command) {
  assertMainQueue("verifyInProcessOfItsOwn");
  MainLoop::attach();
  static bool isUnderWay = false;
  const char* obstacle = nullptr;
  if (isUnderWay) obstacle = "another verification is under way";
  if (!obstacle && !canLaunch()) obstacle = "no client id is registered";
  if (obstacle) {
    DispatchQueue::main().async([obstacle, completion = std::move(completion)] {
      if (completion) completion({Verification::Result::Failed, {}, obstacle});
    });
    return;
  }
  isUnderWay = true;
  std::vector<std::string> whole = locateProgram(command);
  whole.insert(whole.end(), {"--input", "-"});
  const auto end = std::make_shared<std::optional<Verification>>();
  runProgram(
      whole, verificationInput(),
      [end](const std::string& line) {
        if (const auto read = readOutcome(line)) *end = read;
      },
      [end, completion = std::move(completion)](int status) {
        isUnderWay = false;
        const Verification told = end->value_or(failedProgram(status));
        tellDelegate(told);
        if (completion) completion(told);
      });
}

GtkWidget* launchButtonNew(VerificationCompletion completion) {
  assertMainQueue("launchButtonNew");
  const auto button = make<ZVKYCButton>();
  return viewButtonNew(button, button->intrinsicContentSize(),
                       [completion = std::move(completion)](GtkWindow* window) {
                         if (!VerificationRun::bringForward())
                           VerificationRun::start(window, {}, completion);
                       });
}

} // namespace zuvi
