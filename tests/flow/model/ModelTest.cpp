// Taps, answers, losses and messages at random over the whole flow, beside a plain model of what
// must hold after each of them. A seed gives the same walk again; `./test --model STEPS [SEED]`
// takes more.

#include <ZuviSDK/LiveChat.h>
#include "kit/Helper/LiveChat/Manager.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/UIScreen.h"
#include "tests/flow/FlowTest.h"

#include <atomic>
#include <cstdlib>
#include <random>

namespace zuvi {
namespace {

constexpr int stepsEach = 800;

/// What `./test --model` hands over; a run of its own has no command line of ours.
int asked(const char* name, int otherwise) {
  const char* text = std::getenv(name);
  return text ? std::atoi(text) : otherwise;
}

const int steps = asked("ZUVI_MODEL_STEPS", 6 * stepsEach);
const int firstSeed = asked("ZUVI_MODEL_SEED", 1);

class ModelTest : public FlowTest, public testing::WithParamInterface<int> {
protected:
  ModelTest() : random_(unsigned(GetParam())) {
    for (const char* key : {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey"})
      UserDefaults::standard().set(key, nullptr); // an earlier walk had the same messages
  }
  void TearDown() override {
    calmDown();
    FlowTest::TearDown();
  }
  static void TearDownTestSuite() { tell("in all", totals_); }

  int upTo(int count) { return int(random_() % unsigned(count)); } // the same on every machine
  bool isOn() const { return host->presentedViewController() != nullptr; }
  static bool moves() { return UIApplication::shared().isIgnoringInteractionEvents(); }
  static const auto& stack() { return shell().mainNC()->viewControllers(); }
  std::string step() { return isOn() ? top() : ""; }
  std::shared_ptr<UIViewController> alert() const {
    return isOn() ? shell().presentedViewController() : nullptr;
  }
  /// The step, and what of it a willing person's tap changes.
  std::string place() {
    const auto camera = isOn() ? FlowTest::step<ZVKYCCameraViewController>() : nullptr;
    return (camera && camera->isErrorShown ? "refused document " : step() + " ") +
           (isOn() ? std::to_string(std::uintptr_t(stack().back().get())) : "");
  }
  /// The controls that a touch would reach, back to front, by what they are called.
  static std::vector<std::pair<std::string, CGPoint>> reachable() {
    std::vector<std::pair<std::string, CGPoint>> found;
    const std::function<void(const UIView&)> collect = [&](const UIView& view) {
      if (view.isHidden() || view.alpha() < 0.01) return;
      const auto* control = dynamic_cast<const UIControl*>(&view);
      const auto* titled = dynamic_cast<const UIButton*>(&view);
      const CGPoint middle = view.convertToScreen(view.bounds()).center();
      const UIView* hit = control ? UIApplication::shared().hitTest(middle) : nullptr;
      if (hit && control->isEnabled() && hit->isDescendantOf(view))
        found.emplace_back(className(view) + " " + view.outletName + " " + control->actionName +
                               (titled ? " " + titled->title().value_or("") : ""),
                           middle);
      for (const auto& subview : view.subviews())
        collect(*subview);
    };
    UIScreen::main().layoutIfNeeded();
    for (const UIWindow* each : UIScreen::main().windows())
      collect(*each);
    return found;
  }

  // What happens. Each says whether something comes of it where something must.

  void note(const std::string& what) {
    trace_.push_back(what);
    if (steps <= stepsEach) std::fprintf(stderr, "%s\n", what.c_str()); // also before a crash
  }
  static void touch(CGPoint at) {
    UIApplication::shared().touchBegan(at);
    UIApplication::shared().touchEnded(at);
  }
  /// The control in front that bears one of these names.
  bool touch(const std::vector<std::string>& names) {
    const auto all = reachable();
    const auto found = std::find_if(all.rbegin(), all.rend(), [&](const auto& one) {
      return std::any_of(names.begin(), names.end(), [&](const auto& name) {
        return one.first.find(name) != std::string::npos;
      });
    });
    if (found == all.rend()) return false;
    note("tap " + found->first);
    touch(found->second);
    return true;
  }

  bool answer(int kind) {
    const char* kinds[] = {"right", "wrong", "nothing", "broken off"};
    note(std::string("answer ") + kinds[kind]);
    backend.answer([this, kind](const test::Request& request) {
      if (kind == 3) return test::Reply{.mode = test::Reply::Mode::DropConnection};
      if (kind > 0) return test::Reply{200, {}, kind == 1 ? R"({"message":"Not sharp"})" : "[]"};
      if (request.path != "/v1/identities") return succeed(request);
      return test::Reply{200, {}, R"({"id":"identity-)" + std::to_string(++identities_) + "\"}"};
    });
    backend.release();
    // The upload on top goes, and one that was left dies, unless it still moves away. Out of sight
    // an answer waits, where nobody sees whether it is there.
    const bool moved = moves();
    const auto onTop = isOn() ? stack().back() : nullptr;
    const auto arrived = [&](const std::weak_ptr<UIViewController>& upload) {
      const auto screen = upload.lock();
      return !screen || (screen == onTop ? stack().back() != onTop : moved);
    };
    const bool came =
        time.waitUntil([&] { return std::all_of(awaited_.begin(), awaited_.end(), arrived); },
                       window->isVisible() ? 5 : 0.03);
    backend.hold();
    return came || !window->isVisible();
  }

  bool say() {
    note("a message");
    const bool heard = isOn() && window->isVisible() && !LiveChat::isChatPresented() && !moves();
    const bool waits = heard && alert();
    Manager::sharedInstance().webViewBridge()->handle(
        {{"messageType", "newMessage"},
         {"text", "Hello"},
         {"id", std::to_string(GetParam()) + "-" + std::to_string(trace_.size())},
         {"timestamp", 1},
         {"author", Value::Dictionary{{"name", "Ann"}}}});
    return waits ? !ZVKYCHelper::instance().supportMessages.empty() : !heard || alert();
  }

  void plug(std::shared_ptr<ScriptedCamera>& socket,
            const std::shared_ptr<ScriptedCamera>& camera) {
    note(socket ? "a camera goes" : "a camera comes");
    socket = socket ? nullptr : camera;
    if (!socket) camera->unplug();
    NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange);
  }
  void changeMerchant() {
    note("another merchant");
    answer(0);
    backend.release();
    const char* wishes[] = {R"({"required":["national-id"],"optional":["passport"]})",
                            R"({"required":["passport","proof-of-residency"]})",
                            R"({"optional":["driving-license","passport"]})", "{}"};
    registerMerchant(wishes[upTo(4)]);
    backend.hold();
  }

  /// Takes away whatever keeps a willing person from going on.
  void calmDown() {
    if (!window->isVisible()) window->makeKeyAndVisible();
    if (!cameras->front) plug(cameras->front, front);
    if (!cameras->back) plug(cameras->back, back);
    front->film = Data(film);
    back->still = Data(jpeg(1));
    settle(); // the chat may be on its way in
    if (LiveChat::isChatPresented()) LiveChat::dismissChat(false);
    for (int alerts = 0; alerts < 22 && alert(); alerts++) {
      touch({"continueButton", "Cancel"});
      settle();
    }
    time.advance(2.5); // a camera is looked for every two seconds
  }

  /// A take that comes to nothing, of which the next one must know nothing.
  void failTake() {
    note("a take that fails");
    calmDown();
    front->film = std::nullopt;
    touch({"recordButton"});
    time.advance(upTo(13));
    if (upTo(2)) plug(cameras->front, front);
    time.advance(upTo(13));
  }

  /// A willing person comes to the next step, wherever the flow is.
  bool goesOn() {
    note("on from " + step());
    calmDown();
    const std::string before = place();
    for (int attempt = 0; attempt < 3 && place() == before; attempt++) {
      look();
      const std::map<std::string, const char*> leading{
          {"", "ZVKYCButton"},
          {"ZVLiveCameraViewController", "recordButton"},
          {"ZVDocumentListViewController", "documentButton"},
          {"ZVUploadViewController", "retakeButton"}}; // back on one that has its answer
      const auto found = leading.find(step());
      const bool waits = isOn() && std::any_of(awaited_.begin(), awaited_.end(), [](auto& upload) {
                           return upload.lock() == stack().back();
                         });
      if (!(waits ? answer(0) : touch({found == leading.end() ? "bottomButton" : found->second})))
        return false;
      time.advance(step() == "ZVLiveCameraViewController" ? 13 : 0.5);
    }
    return place() != before;
  }

  /// A person who wants out touches what closes, until it is over.
  bool getsOut() {
    note("a way out");
    if (!window->isVisible()) window->makeKeyAndVisible();
    const auto isOver = [this] { return !isOn() && !LiveChat::isChatPresented(); };
    for (int taps = 0; taps < 26 && !isOver(); taps++) {
      time.advance(4); // the chat's way out comes after three seconds
      if (!isOver() && !touch({"CloseButton", "closeButtonTap", "cancelButton", "Cancel"}))
        return false;
      settle();
    }
    return isOver();
  }

  bool happen() {
    const auto one = upTo(100);
    if (one < 34) {
      if (step() == "ZVLiveCameraViewController" && upTo(4) == 0) failTake();
      const auto upload = isOn() ? FlowTest::step<ZVUploadViewController>() : nullptr;
      const bool refuses = upload && upTo(upload->video ? 5 : 2) == 0;
      return refuses ? answer(1 + upTo(3)) : goesOn();
    }
    if (one < 36) return getsOut();
    if (one < 60) {
      const auto controls = reachable();
      return controls.empty() || touch({controls[unsigned(upTo(100)) % controls.size()].first});
    }
    if (one < 68) return answer(upTo(4));
    if (one < 72) return say();
    if (one < 75) {
      plug(cameras->front, front);
    } else if (one < 78) {
      plug(cameras->back, back);
    } else if (one < 80) {
      note("the chat");
      LiveChat::isChatPresented() ? LiveChat::dismissChat(upTo(2) == 0)
                                  : LiveChat::presentChat(upTo(2) == 0);
    } else if (one < 84) {
      note(window->isVisible() ? "hide" : "show");
      window->isVisible() ? window->setVisible(false) : window->makeKeyAndVisible();
    } else if (one < 87) {
      note("stills and films that fail or do not");
      back->still = upTo(2) ? std::optional(Data(jpeg(1))) : std::nullopt;
      front->film = upTo(2) ? std::optional(Data(film)) : std::nullopt;
    } else if (one == 87) {
      changeMerchant();
    } else if (one == 88 && upTo(3) == 0) {
      note("the host dismisses");
      dismissed_ = true;
      host->dismiss(upTo(2) == 0);
    } else if (one == 89) {
      const CGSize sizes[] = {{375, 812}, {812, 375}, {240, 480}, {768, 1024}};
      note("another size");
      UIScreen::main().configure(sizes[upTo(4)], 2);
    } else if (one < 92) {
      const char* keys[] = {"Escape", "Tab", "Return"};
      note("a key");
      UIApplication::shared().keyPressed({keys[upTo(3)], {}});
    } else if (one < 94) {
      touch(CGPoint{double(upTo(375)), double(upTo(812))});
    } else {
      time.advance(upTo(13));
    }
    return true;
  }

  /// What does not hold, in words.
  std::string wrong(const std::string& before, std::size_t callsBefore) {
    if (!before.empty() && !isOn()) settle();
    const std::size_t calls = delegate->calls.size() - callsBefore;
    const std::string call = calls ? delegate->calls.back() : "";
    if (calls > 1) return "two delegate calls";
    if (calls == 1 && before.empty()) return "a delegate call without a run";
    if (calls == 1 && isOn()) return "a delegate call and the flow stays";
    if (!before.empty() && !isOn() && calls == 0 && !dismissed_) return "no delegate call";
    const auto identity = ZVKYCHelper::instance().tempIdentity;
    if (identity != std::exchange(identity_, identity) && before != "ZVUploadViewController")
      return "an answer to what was left counts";
    if (before.empty() && isOn()) earlier_ = identities_;
    if (calls && call != "cancelled" &&
        (call != "success " + identity.value_or("?") || std::stoi(call.substr(17)) <= earlier_))
      return "another identity";
    if (calls) reach(call.substr(0, call.find(' ')));
    if (!isOn()) {
      dismissed_ = false;
      return front->isRunning() || back->isRunning() ? "a camera runs" : "";
    }
    if (alert() && alert()->presentedViewController()) return "two alerts";
    if (moves()) return "";
    if (step() == "ZVVerifiedViewController" && shell().backButton.lock()->alpha() > 0)
      return "a way back from the end";
    const bool recorder = std::any_of(stack().begin(), stack().end(), [](const auto& screen) {
      return className(*screen) == "ZVLiveCameraViewController";
    });
    if (front->isRunning() && !recorder) return "the front camera runs for nobody";
    if (back->isRunning() && (step() != "ZVKYCCameraViewController" || !window->isVisible()))
      return "the back camera runs for nobody";
    return "";
  }

  /// Notes what is on show for the first time, and which uploads wait for an answer.
  void look() {
    const std::string now[] = {place(), alert() ? className(*alert()) : "",
                               LiveChat::isChatPresented() ? "chat" : "",
                               isOn() && !window->isVisible() ? "hidden" : "",
                               isOn() && !notice().empty() ? "camera notice" : ""};
    for (std::size_t i = 0; i < std::size(now); i++)
      if (now[i] != std::exchange(seen_[i], now[i]) && !now[i].empty() && (i > 0 || isOn()))
        reach(i > 0 ? now[i] : now[i].substr(0, now[i].rfind(' ')));
    if (!isOn()) return;
    for (const auto& screen : stack()) {
      if (className(*screen) != "ZVUploadViewController") continue;
      const auto same = [&](const auto& upload) { return upload.lock() == screen; };
      if (std::none_of(uploads_.begin(), uploads_.end(), same)) {
        uploads_.emplace_back(screen);
        awaited_.emplace_back(screen);
      }
      if (screen != stack().back()) std::erase_if(awaited_, same); // its answer brought the next
    }
  }
  void reach(const std::string& what) {
    reached_[what]++;
    totals_[what]++;
  }
  static void tell(const std::string& name, const std::map<std::string, int>& counts) {
    std::printf("%s", name.c_str());
    for (const auto& [what, count] : counts)
      std::printf(", %s %d", what.c_str(), count);
    std::printf("\n");
  }

  std::mt19937 random_;
  std::vector<std::string> trace_;
  std::vector<std::weak_ptr<UIViewController>> uploads_, awaited_; ///< all, and unanswered ones
  std::optional<std::string> identity_;
  std::atomic<int> identities_ = 0; ///< given out by the back end
  int earlier_ = 0;                 ///< of them, when the run began
  bool dismissed_ = false;
  std::string seen_[5];
  std::map<std::string, int> reached_;
  inline static std::map<std::string, int> totals_;
};

TEST_P(ModelTest, HoldsWhateverHappens) {
  registerMerchant(R"({"required":["national-id"],"optional":["passport","driving-license"]})");
  backend.hold();
  for (int count = 0; count < stepsEach; count++) {
    const std::string before = step();
    const std::size_t calls = delegate->calls.size();
    const bool happens = happen();
    const double pauses[] = {0, 0.02, 0.3, 0.6, 1.5};
    time.advance(pauses[upTo(5)]);
    const std::string problem = happens ? wrong(before, calls) : "nothing comes of it";
    look();
    if (problem.empty() && !HasFailure()) continue;
    std::string last;
    for (std::size_t i = trace_.size() > 40 ? trace_.size() - 40 : 0; i < trace_.size(); i++)
      last += trace_[i] + '\n';
    FAIL() << problem << "\nseed " << GetParam() << ", step " << count << ", on " << step() << ":\n"
           << last;
  }
  tell("seed " + std::to_string(GetParam()), reached_);
  if (std::getenv("ZUVI_MODEL_STEPS")) return; // any seed may miss what is rare
  for (const char* what :
       {"ZVMainViewController", "ZVLiveCameraViewController", "ZVLivenessVerifyViewController",
        "ZVUploadViewController", "ZVKYCCameraViewController", "ZVDocumentListViewController",
        "ZVVerifiedViewController", "ZVCancelAlertViewController", "UIAlertController",
        "camera notice", "refused document", "chat", "hidden", "cancelled", "success"})
    EXPECT_GT(reached_[what], 0) << what;
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelTest,
                         testing::Range(firstSeed, firstSeed + std::max(1, steps / stepsEach)));

} // namespace
} // namespace zuvi
