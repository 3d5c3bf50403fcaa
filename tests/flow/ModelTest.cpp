// Taps, answers, losses and messages at random over the whole flow, beside a plain model of what
// must hold after each of them. A seed gives the same run again; `./test --model STEPS [SEED]`
// takes more.

#include <ZuviSDK/LiveChat.h>
#include "kit/Helper/LiveChat/Manager.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "platform/UIKit/UIScreen.h"
#include "sandbox/core/api/Tracking.h"
#include "tests/flow/FlowTest.h"

#include <cstdlib>
#include <random>
#include <set>

namespace zuvi {
namespace {

constexpr int stepsEach = 400;

/// What `./test --model` hands over; a run of its own has no command line of ours.
int asked(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text ? std::atoi(text) : otherwise;
}

const int steps = asked("ZUVI_MODEL_STEPS", 8 * stepsEach);
const int firstSeed = asked("ZUVI_MODEL_SEED", 1);

class ModelTest : public FlowTest, public testing::WithParamInterface<int> {
protected:
  ModelTest() : random_(unsigned(GetParam())) {}

  void TearDown() override {
    cameras->front = front;
    cameras->back = back;
    if (window->isVisible()) LiveChat::dismissChat(false);
    window->makeKeyAndVisible();
    settle();
    FlowTest::TearDown();
  }

  int upTo(int count) { return int(random_() % unsigned(count)); } // the same on every machine
  bool isOn() const { return host->presentedViewController() != nullptr; }
  void note(const std::string& what) {
    trace_.push_back(what);
    if (steps <= stepsEach) std::fprintf(stderr, "%s\n", what.c_str()); // also before a crash
  }

  /// The controls that a touch would reach, front or back.
  static void collect(const UIView& view, std::vector<const UIControl*>& found) {
    if (view.isHidden() || view.alpha() < 0.01) return;
    const auto* control = dynamic_cast<const UIControl*>(&view);
    if (control && control->isEnabled()) {
      const UIView* hit = UIApplication::shared().hitTest(middleOf(view));
      if (hit && hit->isDescendantOf(view)) found.push_back(control);
    }
    for (const auto& subview : view.subviews())
      collect(*subview, found);
  }
  static CGPoint middleOf(const UIView& view) {
    return view.convertToScreen(view.bounds()).center();
  }
  static std::vector<const UIControl*> reachable() {
    std::vector<const UIControl*> found;
    UIScreen::main().layoutIfNeeded();
    for (const UIWindow* each : UIScreen::main().windows())
      collect(*each, found);
    return found;
  }
  static std::string nameOf(const UIControl& control) {
    const auto* titled = dynamic_cast<const UIButton*>(&control);
    return className(control) + " " + control.outletName + " " +
           (titled ? titled->title().value_or("") : "");
  }
  void touch(CGPoint place) {
    UIApplication::shared().touchBegan(place);
    UIApplication::shared().touchEnded(place);
  }
  void touch(const UIControl& control) {
    note("tap " + nameOf(control));
    touch(middleOf(control));
  }

  /// Answers what waits, or what comes next, and sees it arrive.
  void answer(int kind) {
    const char* kinds[] = {"right", "right", "wrong", "nothing", "broken off"};
    note(std::string("answer ") + kinds[kind]);
    if (kind < 2)
      backend.answer(&FlowTest::succeed);
    else if (kind < 4)
      backend.answer(kind == 2 ? R"({"message":"Not sharp"})" : "[]");
    else
      backend.answer(
          [](const auto&) { return test::Reply{.mode = test::Reply::Mode::DropConnection}; });
    backend.release();
    time.waitUntil(
        [&] {
          return std::none_of(uploads_.begin(), uploads_.end(), [&](const auto& upload) {
            const auto screen = upload.lock();
            return screen && (!isOn() || shell().mainNC()->topViewController() == screen);
          });
        },
        window->isVisible() ? 3 : 0.03); // out of sight the answer waits
    std::erase_if(uploads_, [](const auto& upload) { return upload.expired(); });
    backend.hold();
  }

  void say() {
    note("a message");
    Manager::sharedInstance().webViewBridge()->handle(
        {{"messageType", "newMessage"},
         {"text", "Hello"},
         {"id", std::to_string(GetParam()) + "-" + std::to_string(trace_.size())},
         {"timestamp", 1},
         {"author", Value::Dictionary{{"name", "Ann"}}}});
  }

  void plug(std::shared_ptr<ScriptedCamera>& place, const std::shared_ptr<ScriptedCamera>& camera) {
    note(place ? "a camera goes" : "a camera comes");
    place = place ? nullptr : camera;
    if (!place) camera->unplug();
    NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange);
  }

  void changeMerchant() {
    answer(0);
    note("another merchant");
    backend.release();
    const char* wishes[] = {R"({"required":["national-id"],"optional":["passport"]})",
                            R"({"required":["passport","driving-license"]})",
                            R"({"optional":["national-id","passport"]})", "{}"};
    registerMerchant(wishes[upTo(4)], "en");
    backend.hold();
  }

  /// One thing that happens.
  void happen() {
    const auto controls = reachable();
    switch (const int choice = upTo(44)) {
    case 0:
      touch(CGPoint{double(upTo(375)), double(upTo(812))});
      break;
    case 1:
    case 2:
    case 3:
      answer(upTo(5));
      break;
    case 4:
      plug(cameras->front, front);
      break;
    case 5:
      plug(cameras->back, back);
      break;
    case 6:
      say();
      break;
    case 7:
      note("the chat");
      LiveChat::isChatPresented() ? LiveChat::dismissChat(upTo(2) == 0)
                                  : LiveChat::presentChat(upTo(2) == 0);
      break;
    case 8:
      note(window->isVisible() ? "hide" : "show");
      window->isVisible() ? window->setVisible(false) : window->makeKeyAndVisible();
      break;
    case 10: {
      const CGSize sizes[] = {{375, 812}, {812, 375}, {240, 480}, {768, 1024}};
      note("another size");
      UIScreen::main().configure(sizes[upTo(4)], 2);
      break;
    }
    case 11: {
      const char* keys[] = {"Escape", "Tab", "Return"};
      note("a key");
      UIApplication::shared().keyPressed({keys[upTo(3)], {}});
      break;
    }
    case 12:
      note("a still that fails or does not");
      back->still = upTo(2) ? std::optional(Data(jpeg(1))) : std::nullopt;
      break;
    case 13:
      note("a film that fails or does not");
      front->film = upTo(2) ? std::optional(Data(film)) : std::nullopt;
      break;
    case 14:
      if (upTo(4) == 0) changeMerchant();
      break;
    case 15:
      if (upTo(4) != 0) break;
      note("the host dismisses");
      dismissed_ = true;
      host->dismiss(upTo(2) == 0);
      break;
    case 9:
      window->makeKeyAndVisible();
      break;
    case 16:
    case 17:
    case 18:
      time.advance(13);
      break;
    default: {
      if (controls.empty()) break;
      // Every second time as somebody who wants to get on.
      const auto leading = std::find_if(controls.begin(), controls.end(), [](const auto* control) {
        return control->outletName == "bottomButton" || control->outletName == "recordButton" ||
               control->outletName == "documentButton";
      });
      const std::size_t any = std::size_t(upTo(100)) % controls.size();
      const bool leads = choice < 30 && leading != controls.end();
      touch(leads ? **leading : *controls[any]);
      if (leads && upTo(3) > 0) time.advance(13); // until the film is there
    }
    }
    const double pauses[] = {0, 0.02, 0.3, 0.6, 1.5};
    time.advance(pauses[upTo(5)]);
  }

  /// A person who wants out touches what closes, until it is over.
  bool findsAWayOut() {
    note("a way out");
    if (!window->isVisible()) window->makeKeyAndVisible();
    for (int taps = 0; taps < 12 && (isOn() || LiveChat::isChatPresented()); taps++) {
      time.advance(4); // the chat's way out comes after three seconds
      const auto controls = reachable();
      const UIControl* best = nullptr;
      for (const UIControl* control : controls) {
        const auto* titled = dynamic_cast<const UIButton*>(control);
        const bool closes =
            className(*control) == "CloseButton" || control->actionName == "closeButtonTap" ||
            control->outletName == "cancelButton" || (titled && titled->title() == "Cancel");
        if (closes) best = control; // the one in front
      }
      if (!best) return false;
      touch(*best);
      time.advance(1);
    }
    return !isOn() && !LiveChat::isChatPresented();
  }

  /// What does not hold, in words.
  std::string wrong(bool wasOn, std::size_t callsBefore) {
    if (wasOn && !isOn()) settle();
    const std::size_t calls = delegate->calls.size() - callsBefore;
    if (calls > 1) return "two delegate calls";
    if (calls == 1 && !wasOn) return "a delegate call without a run";
    if (wasOn && !isOn() && calls == 0 && !dismissed_) return "no delegate call";
    if (calls == 1 && isOn()) return "a delegate call and the flow stays";
    if (!isOn()) dismissed_ = false;
    if (!isOn()) return front->isRunning() || back->isRunning() ? "a camera runs" : "";
    int above = 0;
    for (auto screen = shell().presentedViewController(); screen;
         screen = screen->presentedViewController())
      above++;
    if (above > 1) return "two alerts";
    if (front->isRunning() && back->isRunning() && top() != "ZVKYCCameraViewController" &&
        top() != "ZVLiveCameraViewController")
      return "both cameras run on " + top();
    if (shell().mainNC()->viewControllers().empty()) return "no step";
    return "";
  }

  std::mt19937 random_;
  std::vector<std::string> trace_;
  std::vector<std::weak_ptr<UIViewController>> uploads_;
  bool dismissed_ = false;
};

TEST_P(ModelTest, HoldsWhateverHappens) {
  registerMerchant(R"({"required":["national-id"],"optional":["passport","driving-license"]})");
  backend.hold();
  for (int step = 0; step < stepsEach; step++) {
    const bool wasOn = isOn();
    const std::size_t calls = delegate->calls.size();
    bool leads = true;
    if (upTo(60) == 0)
      leads = findsAWayOut();
    else
      happen();
    if (isOn()) {
      const auto& stack = shell().mainNC()->viewControllers();
      if (!stack.empty() && className(*stack.back()) == "ZVUploadViewController")
        uploads_.emplace_back(stack.back());
    }
    const std::string problem = leads ? wrong(wasOn, calls) : "no way out";
    if (problem.empty() && !HasFailure()) continue;
    std::string last;
    for (std::size_t i = trace_.size() > 40 ? trace_.size() - 40 : 0; i < trace_.size(); i++)
      last += trace_[i] + '\n';
    FAIL() << problem << "\nseed " << GetParam() << ", step " << step << ":\n" << last;
  }
  using Event = MixpanelEvent;
  const std::set<std::string> known{Event::zuviButtonClicked,
                                    Event::livenessRecordClicked,
                                    Event::livenessUploadConfirmClicked,
                                    Event::livenessUploadCancelRetake,
                                    Event::nationalIdFrontTakePhotoClicked,
                                    Event::nationalIdBackTakePhotoClicked,
                                    Event::passportTakePhotoClicked,
                                    Event::driverLicenseFrontTakePhotoClicked,
                                    Event::driverLicenseBackTakePhotoClicked,
                                    Event::finishButtonClicked,
                                    Event::zuviCancelButtonClicked,
                                    Event::zuviCancelConfirmClicked,
                                    Event::zuviCancelCancelClicked};
  for (const auto& event : backend.events()) {
    const auto tracked = sandbox::readTrackedEvent(event.query);
    EXPECT_TRUE(tracked && known.contains(tracked->name)) << event.query;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelTest,
                         testing::Range(firstSeed, firstSeed + std::max(1, steps / stepsEach)));

} // namespace
} // namespace zuvi
