// A hostile chat page: posts anything of any shape, loads, fails, hangs, dies, opens windows and
// clicks links, in any order, while a person opens and closes the chat.

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "fuzz/Json.h"
#include "kit/Helper/LiveChat/Manager.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/WebKit/ScriptedWebEngine.h"

#include <cstdio>
#include <cstdlib>

using namespace zuvi;

namespace {

struct Host final : LiveChatDelegate {
  void received(const LiveChatMessage&) override { messages++; }
  void handleURL(const URL&) override { links++; }
  int messages = 0, links = 0;
};

/// One input is lines: a letter says what happens, the rest of the line is its message.
class Run {
public:
  Run() {
    WebEngine::install(engine_);
    manager_ = make<Manager>();
    engine_->results["LiveChatWidget_emitFocus();"] = nullptr;
    engine_->results["LiveChatWidget_emitBlur();"] = nullptr;
    manager_->overlayViewController()->view(); // loads it
    window_->makeKeyAndVisible();
    manager_->delegate = host_;
    web().load(URLRequest(*URL::fromString("https://chat.invalid/")));
  }
  ~Run() {
    manager_ = nullptr;
    window_->setVisible(false);
    time_.advance(10);
    fuzz::expect(engine_->pages.empty());
    WebEngine::install(nullptr);
  }

  void step(char what, std::string_view rest) {
    if (engine_->pages.empty()) return;
    WebPageClient& main = engine_->pages.front()->client;
    WebPageClient& last = engine_->pages.back()->client;
    switch (what) {
    case 'm':
    case 'p':
      if (const auto body =
              JSONSerialization::jsonObject(rest, JSONSerialization::Fragments::Allow))
        (what == 'm' ? main : last).didReceiveScriptMessage({"iosMobileWidget", *body});
      break;
    case 'c':
      main.didCommit();
      break;
    case 'f':
      main.didFinish();
      break;
    case 'e':
      main.didFailProvisionalNavigation({NSURLErrorDomain, -int(rest.size()), "failed"});
      break;
    case 'x':
      main.processDidTerminate();
      break;
    case 'h':
      main.didChangeResponsiveness(!rest.empty());
      break;
    case 'w':
      if (engine_->pages.size() < 8) last.createPage({WKNavigationType::Other, {}, false});
      break;
    case 'q':
      last.didClose();
      break;
    case 'i':
      main.didRefuseFiles();
      break;
    case 'l':
      main.decidePolicy(
          {WKNavigationType::LinkActivated, URL::fromString(std::string(rest)), true});
      break;
    case 'o':
      manager_->presentChat(rest.empty(), {});
      break;
    case 'd':
      manager_->dismissChat(rest.empty(), {});
      break;
    case 't':
      time_.advance(0.05 * double(rest.size()));
      break;
    default:
      break;
    }
    fuzz::expect(host_->links == 0); // nobody has tapped
  }

  /// Whatever the page did, the chat can be left, and then no window of it is in the way.
  void leave() {
    time_.advance(5);
    manager_->dismissChat(false, {});
    time_.advance(5);
    fuzz::expect(!manager_->window()->isVisible());
    fuzz::expect(UIApplication::shared().keyWindow() == window_.get());
  }

private:
  WKWebView& web() { return *manager_->overlayViewController()->chatView()->webView(); }

  VirtualTime time_;
  OffscreenSurface surface_{{375, 812}, 1};
  std::shared_ptr<test::ScriptedWebEngine> engine_ = std::make_shared<test::ScriptedWebEngine>();
  std::shared_ptr<UIWindow> window_ = make<UIWindow>();
  std::shared_ptr<Manager> manager_;
  std::shared_ptr<Host> host_ = std::make_shared<Host>();
};

} // namespace

// Text is drawn, and its library keeps what it has read.
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0";
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Messages are remembered from run to run; here nothing may be, and nobody's are touched.
  ::setenv("XDG_CONFIG_HOME", "/proc/nowhere", 1);
  ZVEndpoints::chatTemplateURL() = "";
  return std::freopen("/dev/null", "w", stdout) ? 0 : 1; // each wrong message prints a line
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  std::string_view text = fuzz::textOf(bytes, size);
  Run run;
  for (int lines = 0; !text.empty() && lines < 64; lines++) {
    const auto end = std::min(text.find('\n'), text.size());
    run.step(text[0], text.substr(0, end).substr(end > 0));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  run.leave();
  return 0;
}
