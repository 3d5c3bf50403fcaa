#include "demo/core/Driver.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIView.h>
#include "kit/Helper/LiveChat/Manager.h"
#include "platform/Foundation/Decimal.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/WebKit/WKWebView.h"
#include "testing/UIKit/ScreenWatcher.h"
#include "testing/UIKit/ViewTree.h"

#include <algorithm>
#include <utility>

namespace zuvi::demo {

namespace {

// Seconds
constexpr double lookEvery = 0.02;
constexpr double waitForScreen = 10;
constexpr double waitForOutcome = 30;
constexpr double waitForTransition = 5;
constexpr double waitForScript = 10;

double seconds(const std::string& text, double otherwise) {
  return decimalNumber(text).value_or(otherwise);
}

/// Numbers without needless digits, texts as they are.
std::string readable(const Value& value) {
  if (const auto* list = value.list()) {
    std::string text;
    for (const Value& element : *list)
      text += (text.empty() ? "" : " ") + readable(element);
    return text;
  }
  if (const auto number = value.number()) return decimalText(*number, 6);
  return value.description();
}

} // namespace

Driver::Driver(std::string file, std::vector<DriveCommand> commands, Hooks hooks)
    : file_(std::move(file)), commands_(std::move(commands)), hooks_(std::move(hooks)) {}

void Driver::start() {
  commandStart_ = DispatchQueue::main().now();
  timer_ = Timer::scheduled(lookEvery, Timer::Repeats::Yes, [this] { step(); });
}

double Driver::elapsed() const {
  return DispatchQueue::main().now() - commandStart_;
}

void Driver::step() {
  while (at_ < commands_.size()) {
    const Step step = run(commands_[at_]);
    if (step.state == Step::State::Wait) return;
    if (step.state == Step::State::Failed) {
      const auto timer = std::exchange(timer_, nullptr);
      hooks_.done(file_ + ":" + std::to_string(commands_[at_].line) + ": " + step.problem);
      return;
    }
    at_++;
    commandStart_ = DispatchQueue::main().now();
  }
  const auto timer = std::exchange(timer_, nullptr);
  hooks_.done("");
}

Driver::Step Driver::run(const DriveCommand& command) {
  const bool busy = UIApplication::shared().isIgnoringInteractionEvents();
  if (command.name == "wait") return wait(command);
  if (command.name == "outcome") return outcome(command);
  if (command.name == "sleep")
    return {elapsed() < seconds(command.word(0), 0) ? Step::State::Wait : Step::State::Done, ""};
  // Nobody taps while screens change places.
  if (busy && (command.name == "tap" || command.name == "key") && elapsed() < waitForTransition)
    return {Step::State::Wait, ""};
  if (command.name == "tap") return tap(command);
  if (command.name == "expect") return expect(command);
  if (command.name == "key") {
    UIApplication::shared().keyPressed(
        {command.word(0), command.word(0).size() == 1 ? command.word(0) : "", false});
    return {};
  }
  if (command.name == "script") return script(command);
  if (command.name == "keyboard") {
    if (keyboard_.slide(seconds(command.word(1), 0))) return {};
    return {Step::State::Failed, "a keyboard that moves was expected, it was there already"};
  }
  if (command.name == "picture") {
    if (hooks_.picture(command.word(0))) return {};
    return {Step::State::Failed, "a picture was expected, it could not be written"};
  }
  // dump
  const auto json = JSONSerialization::data(describeScreen());
  if (json && FileManager::writeAtomically(command.word(0), json->view())) return {};
  return {Step::State::Failed, "a dump was expected, " + command.word(0) + " could not be written"};
}

Driver::Step Driver::wait(const DriveCommand& command) const {
  const std::string top = topScreen();
  if (top == command.word(0) && !UIApplication::shared().isIgnoringInteractionEvents()) return {};
  if (elapsed() < seconds(command.word(1), waitForScreen)) return {Step::State::Wait, ""};
  return {Step::State::Failed, "the screen " + command.word(0) + " was expected, there was " + top};
}

Driver::Step Driver::tap(const DriveCommand& command) {
  const std::string& name = command.words[0].text;
  const auto fail = [&](const std::string& problem) {
    return Step{Step::State::Failed, name + " was expected to take a tap, " + problem};
  };
  const auto view = findView(name, command.words[0].quoted);
  if (!view) return fail("there was no such view");
  if (!isShown(*view)) return fail("it was hidden or transparent");
  const CGPoint middle = view->convertToScreen(view->bounds()).center();
  const UIView* hit = UIApplication::shared().hitTest(middle);
  // A text lets touches through to the control that it lies on.
  const bool reaches = hit && (hit->isDescendantOf(*view) || view->isDescendantOf(*hit) ||
                               (command.words[0].quoted && hit->superview() == view->superview()));
  if (!reaches) return fail("it was covered");
  UIApplication::shared().touchBegan(middle);
  UIApplication::shared().touchEnded(middle);
  return {};
}

Driver::Step Driver::expect(const DriveCommand& command) const {
  const std::string subject = command.word(0), wanted = command.word(1);
  const auto dot = subject.rfind('.');
  const auto view = findView(subject.substr(0, dot), false);
  std::string there = "no such view";
  if (view) {
    const Value::Dictionary description = describeView(*view);
    const Value* value = valueForKey(description, subject.substr(dot + 1));
    there = value ? readable(*value) : "no such property";
    if (value && there == wanted) return {};
  }
  if (elapsed() < seconds(command.word(2), 0)) return {Step::State::Wait, ""};
  return {Step::State::Failed, subject + " " + wanted + " was expected, there was " + there};
}

Driver::Step Driver::outcome(const DriveCommand& command) {
  if (hooks_.outcomes() > outcomesSeen_) {
    outcomesSeen_++;
    return {};
  }
  if (elapsed() < seconds(command.word(0), waitForOutcome)) return {Step::State::Wait, ""};
  return {Step::State::Failed, "an outcome was expected, there was none"};
}

Driver::Step Driver::script(const DriveCommand& command) {
  const double patience = seconds(command.word(2), 0);
  const auto fail = [&](const std::string& there) {
    scriptResult_ = nullptr;
    if (elapsed() < patience) return Step{Step::State::Wait, ""}; // asked again
    const std::string wanted = command.words.size() > 1 ? command.word(1) : "an end";
    return Step{Step::State::Failed, command.word(0) + ": " + wanted + " was expected, " + there};
  };
  if (!scriptResult_) {
    // Also while the chat is closed: its page lives on out of sight.
    const auto chat = Manager::sharedInstance().overlayViewController();
    const auto page = chat->chatView() ? chat->chatView()->webView() : nullptr;
    if (!page) return fail("there was no web view");
    scriptResult_ = std::make_shared<std::optional<std::string>>();
    page->evaluateJavaScript(
        command.word(0), [result = scriptResult_](const std::optional<Value>& value,
                                                  const std::optional<Error>& error) {
          *result = error ? "the error " + error->description : readable(value.value_or(Value()));
        });
  }
  if (!*scriptResult_) {
    if (elapsed() < std::max(patience, waitForScript)) return {Step::State::Wait, ""};
    return fail("it did not end");
  }
  const std::string there = **std::exchange(scriptResult_, nullptr);
  if (command.words.size() > 1 ? there == command.word(1) : there.rfind("the error ", 0) != 0)
    return {};
  return fail("there was " + there);
}

} // namespace zuvi::demo
