// The support chat without a display and without a browser: what our own drawing takes of each
// frame while the chat and the keyboard move, at 375 x 812 points, scale 2, in processor time of
// one core; and what a message takes that the page posts. The baselines are copying as many pixels
// and a set in memory.

#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "bench/Measure.h"
#include "kit/Helper/LiveChat/Manager.h"
#include "platform/Foundation/UserDefaults.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/WebKit/ScriptedWebEngine.h"
#include "testing/backend/LoopbackServer.h"
#include "testing/support/TemporaryFolder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_set>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr int width = 375, height = 812, scale = 2;
constexpr int stored = 10000;

/// Draws `seconds` of what moves, sixty frames a second.
void measure(const char* name, VirtualTime& time, OffscreenSurface& surface, double seconds) {
  std::vector<double> frames;
  for (int i = 0; i < int(seconds * 60); i++) {
    time.advance(1.0 / 60);
    const double start = processorSeconds();
    if (surface.drawFrame()) frames.push_back(processorSeconds() - start);
  }
  const double slowest = *std::max_element(frames.begin(), frames.end());
  std::printf("%-44s %3zu frames  median %8.3f ms  slowest %8.3f ms\n", name, frames.size(),
              figuresOf(frames).median * 1e3, slowest * 1e3);
}

/// Something like a page of text.
std::shared_ptr<const UIImage> pagePicture() {
  constexpr int across = width * scale, down = height * scale;
  std::string pixels(3ul * across * down, '\xff');
  for (std::size_t i = 0; i < pixels.size() / 3; i++)
    if (i / across % 40 < 20 && i % 7 < 3) std::memset(&pixels[3 * i], 40, 3);
  return UIImage::fromCGImage(CGImage::fromPixels(Data(std::move(pixels)), across, down,
                                                  3ul * across, CGImage::Format::RGB),
                              scale);
}

void moveKeyboard(double from, double to) {
  const auto frame = [](double visible) -> Value {
    return Value::Dictionary{
        {"x", 0.0}, {"y", height - visible}, {"width", double(width)}, {"height", 300.0}};
  };
  NotificationCenter::defaultCenter().post(
      to > 0 ? UIKeyboardWillShowNotification : UIKeyboardWillHideNotification,
      Value::Dictionary{{UIKeyboardFrameBeginUserInfoKey, frame(from)},
                        {UIKeyboardFrameEndUserInfoKey, frame(to)},
                        {UIKeyboardAnimationDurationUserInfoKey, 0.25},
                        {UIKeyboardAnimationCurveUserInfoKey, 0}});
}

void measureFrames() {
  VirtualTime time;
  OffscreenSurface surface({width, height}, scale);
  const auto engine = std::make_shared<test::ScriptedWebEngine>();
  WebEngine::install(engine);
  test::LoopbackServer server([](const test::Request&) {
    return test::Reply{200, {}, R"({"chat_url":"chat.host/open"})"};
  });
  ZVEndpoints::chatTemplateURL() = server.url("/");

  std::vector<double> fills;
  std::vector<unsigned char> from(4ul * width * scale * height * scale, 7), to(from.size());
  for (int i = 0; i < 60; i++) {
    const double start = processorSeconds();
    std::memcpy(to.data(), from.data(), from.size());
    fills.push_back(processorSeconds() - start);
  }
  report("memcpy of one frame's pixels", figuresOf(fills));

  const auto window = make<UIWindow>();
  window->setBackgroundColor(UIColor{0.2, 0.5, 0.4});
  window->makeKeyAndVisible();
  LiveChat::licenseId = "1";
  surface.drawFrame();
  const auto chat = Manager::sharedInstance().overlayViewController()->chatView();
  LiveChat::presentChat();
  measure("first slide, with the loading view", time, surface, 0.7);
  if (!time.waitUntil([&] { return !engine->pages.empty(); })) std::abort();
  const auto picture = pagePicture();
  engine->pages.front()->image = picture;
  // The browser draws the page; a picture in its place shows what it takes to put that on screen.
  const auto pixels = make<UIImageView>(picture);
  pixels->setFrame(chat->webView()->bounds());
  pixels->setAutoresizingMask(FlexibleWidth | FlexibleHeight);
  chat->webView()->addSubview(pixels);
  chat->didFinish(*chat->webView());
  time.advance(0.9);
  measure("loading view fades over the page", time, surface, 0.5);
  for (const bool withPixels : {false, true}) {
    pixels->setHidden(!withPixels);
    time.advance(1);
    surface.drawFrame();
    const std::string page = withPixels ? ", with a page" : "";
    LiveChat::dismissChat(true, [](bool) {});
    measure(("slide out" + page).c_str(), time, surface, 0.3);
    LiveChat::presentChat(true, [](bool) {});
    measure(("second slide" + page).c_str(), time, surface, 0.7);
    moveKeyboard(0, 300);
    measure(("keyboard comes" + page).c_str(), time, surface, 0.3);
    moveKeyboard(300, 0);
    measure(("keyboard goes" + page).c_str(), time, surface, 0.3);
  }
  window->setVisible(false);
  WebEngine::install(nullptr);
}

// Messages

std::string idOf(int number) {
  return "9f3c6a1e-5d52-4e0b-8f54-" + std::to_string(100000000000 + number);
}

double secondsOf(const std::function<void()>& work) {
  const double start = wallSeconds();
  work();
  return wallSeconds() - start;
}

class Counter final : public LiveChatDelegate {
public:
  void received(const LiveChatMessage&) override { messages++; }
  int messages = 0;
};

void measureMessages() {
  const auto counter = std::make_shared<Counter>();
  LiveChat::delegate = counter;
  const auto receive = [](int first, int end) {
    for (int i = first; i < end; i++)
      Manager::sharedInstance().received({idOf(i), "How can I help you?", Date{0}, "Support", {}});
  };
  const double bare = secondsOf([] {
    std::unordered_set<std::string> seen;
    for (int i = 0; i < stored; i++)
      seen.insert(idOf(i));
  });
  const auto line = [bare](const char* name, double seconds, int count) {
    std::printf("%-44s %9.4f ms a message  ratio %.1f\n", name, seconds / count * 1e3,
                seconds / count / (bare / stored));
  };
  line("set in memory", bare, stored);
  line("10,000 messages, none stored before", secondsOf([&] { receive(0, stored); }), stored);
  line("1,000 more", secondsOf([&] { receive(stored, stored + 1000); }), 1000);
  line("1,000 of them again", secondsOf([&] { receive(stored, stored + 1000); }), 1000);
  // What is read is another list.
  Manager::sharedInstance().presentChat(false, {});
  LiveChat::dismissChat(false);
  line("1,000 of them again, all read", secondsOf([&] { receive(0, 1000); }), 1000);
  line("1,000 new ones, the others read", secondsOf([&] { receive(20000, 21000); }), 1000);
  if (counter->messages != stored + 2000) std::abort();
  UserDefaults::standard().synchronize();
}

} // namespace

int main() {
  const test::TemporaryFolder home;
  for (const char* name : {"HOME", "XDG_CONFIG_HOME"})
    setenv(name, home.path().c_str(), 1);
  measureFrames();
  measureMessages();
}
