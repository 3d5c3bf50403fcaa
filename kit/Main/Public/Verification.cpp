#include <ZuviSDK/Verification.h>

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/ZVKYC.h>
#include <ZuviSDK/ZVKYCButton.h>
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
  VerificationRun::start(parent, {}, std::move(completion));
}

void verifyInProcessOfItsOwn(VerificationCompletion completion,
                             const std::vector<std::string>& command) {
  assertMainQueue("verifyInProcessOfItsOwn");
  MainLoop::attach();
  std::vector<std::string> whole = locateProgram(command);
  whole.insert(whole.end(), {"--input", "-"});
  const auto end = std::make_shared<Verification>(
      Verification{Verification::Result::Failed, {}, "zuvi-verify could not be run"});
  runProgram(
      whole, verificationInput(),
      [end](const std::string& line) {
        if (const auto read = readOutcome(line)) *end = *read;
      },
      [end, completion = std::move(completion)](int) {
        tellDelegate(*end);
        if (completion) completion(*end);
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
