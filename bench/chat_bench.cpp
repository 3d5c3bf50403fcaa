// The support chat in a window, beside the toolkit's bare web view on the same page: from the tap
// until the page has finished, messages of the page, memory, and the second opening. Each opening
// is a process of its own with an empty profile. Wants a display.

#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/ScreenWidget.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "bench/BarePage.h"
#include "bench/ChatScripts.h"
#include "bench/Measure.h"
#include "kit/Helper/LiveChat/Manager.h"
#include "platform/UIKit/ScreenPicture.h"
#include "platform/UIKit/UIScreen.h"
#include "sandbox/core/Server.h"
#include "testing/UIKit/Pixels.h"
#include "testing/support/TemporaryFolder.h"

#include <algorithm>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <string>

using namespace zuvi;
using namespace zuvi::bench;
using test::Pixel;
using test::Pixels;

namespace {

constexpr int rounds = 9;
constexpr double slideTime = 0.5; // seconds

void waitFor(const std::function<bool()>& holds) {
  const guint tick = g_timeout_add(
      5, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  while (!holds())
    g_main_context_iteration(nullptr, TRUE);
  g_source_remove(tick);
}

void runFor(double seconds) {
  const double end = wallSeconds() + seconds;
  waitFor([end] { return wallSeconds() >= end; });
}

GtkWindow* openWindow() {
  if (!gtk_init_check()) return nullptr;
  auto* window = GTK_WINDOW(gtk_window_new());
  gtk_window_set_default_size(window, 375, 812);
  return window;
}

// The bare web view

int showBare(const char* address) {
  GtkWindow* window = openWindow();
  if (!window) return 2;
  gtk_window_present(window);
  runFor(0.5);
  const double start = wallSeconds();
  void* module = dlopen(ZUVI_BARE_PAGE, RTLD_NOW | RTLD_LOCAL);
  auto* browser = module ? reinterpret_cast<BareBrowser*>(dlsym(module, "bareBrowser")) : nullptr;
  return browser ? browser(window, address, start) : 3;
}

// The chat

/// Notes when the page has finished, before the chat hears of it.
class Watcher final : public WKNavigationDelegate {
public:
  explicit Watcher(WKNavigationDelegate& chat) : chat_(chat) {}
  WKNavigationActionPolicy decidePolicy(WKWebView& view,
                                        const WKNavigationAction& action) override {
    return chat_.decidePolicy(view, action);
  }
  void didFinish(WKWebView& view) override {
    finished = wallSeconds();
    chat_.didFinish(view);
  }
  double finished = 0;

private:
  WKNavigationDelegate& chat_;
};

class Counter final : public LiveChatDelegate {
public:
  void received(const LiveChatMessage&) override { messages++; }
  int messages = 0;
};

/// When the window's frames were drawn.
std::vector<double> frames;
std::function<void()> onFrame;

void afterPaint(GdkFrameClock*, gpointer) {
  frames.push_back(wallSeconds());
  if (onFrame) onFrame();
}

/// The longest time without a frame during the slide that began then.
double longestGap(double start) {
  double gap = 0, last = start;
  for (const double frame : frames) {
    if (frame < start || frame > start + slideTime) continue;
    gap = std::max(gap, frame - last);
    last = frame;
  }
  return std::max(gap, start + slideTime - last);
}

double residentMiB() {
  long pages = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return double(resident * sysconf(_SC_PAGESIZE)) / (1 << 20);
}

/// Whether a library of the browser engine is in this process.
bool engineIsMapped() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);)
    if (line.find("webkitgtk") != std::string::npos ||
        line.find("javascriptcore") != std::string::npos)
      return true;
  return false;
}

/// Of the pixels below `top` where `page` is not white, the share that shows it, laid over `before`
/// with that opacity.
double likeness(const Pixels& screen, const Pixels& before, const Pixels& page, double top,
                double opacity) {
  int alike = 0, all = 0;
  const int shift = int(std::lround(top));
  const auto mix = [opacity](int below, int above) {
    return int(std::lround(below * (1 - opacity) + above * opacity));
  };
  for (int y = shift + 2; y < 812; y++)
    for (int x = 0; x < 375; x++) {
      const Pixel below = before.pixel(x, y), above = page.pixel(x, y - shift);
      if (above.isNear(test::white, 20)) continue;
      const Pixel wanted{mix(below.red, above.red), mix(below.green, above.green),
                         mix(below.blue, above.blue)};
      all++;
      alike += screen.pixel(x, y).isNear(wanted, 12);
    }
  return all > 0 ? double(alike) / all : 0;
}

/// Opens the chat again and looks at the first frame of the slide that has some of the page.
double secondOpening() {
  const auto& webView = Manager::sharedInstance().overlayViewController()->chatView()->webView();
  runFor(1.5); // the loading view has faded
  const auto page = webView->drawHierarchy({375, 812});
  bool done = false;
  LiveChat::dismissChat(true, [&](bool) { done = true; });
  waitFor([&] { return done; });
  runFor(0.3);
  const Pixels before(pictureOfScreen());
  double seen = -1;
  done = false;
  const double start = wallSeconds();
  onFrame = [&] {
    CGAffineTransform place;
    for (const CALayer* layer = webView->layer().get(); layer; layer = layer->superlayer())
      place = place.concatenating(layer->presentedTransformToSuperlayer());
    const double top = place.apply(CGPoint{0, 0}).y;
    if (seen >= 0 || !page || top > 812 - 40) return;
    const Pixels screen(pictureOfScreen()), drawn(page->pixels({375, 812}, 1));
    // It has moved on between the two.
    for (int moved = -16; moved <= 16; moved++)
      seen = std::max(
          seen, likeness(screen, before, drawn, top + moved, webView->layer()->presentedOpacity()));
    std::printf("first-seen %f\n", wallSeconds() - start);
  };
  LiveChat::presentChat(true, [&](bool) { done = true; });
  waitFor([&] { return done; });
  onFrame = nullptr;
  return seen;
}

void exchangeMessages(WKWebView& webView, const Counter& counter) {
  const int before = counter.messages; // the page's greeting
  for (int i = 0; i < pings; i++) {
    const double asked = wallSeconds();
    webView.evaluateJavaScript(postScript(i, i + 1));
    while (counter.messages <= before + i)
      g_main_context_iteration(nullptr, TRUE);
    std::printf("ping %f\n", wallSeconds() - asked);
  }
  const double asked = wallSeconds();
  webView.evaluateJavaScript(postScript(pings, pings + flood));
  while (counter.messages < before + pings + flood)
    g_main_context_iteration(nullptr, TRUE);
  std::printf("flood %f\n", wallSeconds() - asked);
}

int showChat(const char* server, const char* authority) {
  GtkWindow* top = openWindow();
  if (!top) return 2;
  gtk_window_set_child(top, screenWidgetNew());
  gtk_window_present(top);
  g_signal_connect(gdk_surface_get_frame_clock(gtk_native_get_surface(GTK_NATIVE(top))),
                   "after-paint", G_CALLBACK(afterPaint), nullptr);
  const auto window = make<UIWindow>();
  window->setBackgroundColor(UIColor{0.2, 0.5, 0.4});
  window->makeKeyAndVisible();

  ZVEndpoints::chatTemplateURL() = std::string(server) + "/app/mobile/urls.json";
  ZVEndpoints::setAdditionalAuthorities(authority);
  const auto counter = std::make_shared<Counter>();
  LiveChat::delegate = counter;
  LiveChat::name = "Ana Torres";
  LiveChat::licenseId = "4173052";
  runFor(0.5);
  const auto chat = Manager::sharedInstance().overlayViewController()->chatView();
  if (!chat->webView()) return 3;
  const auto watcher = std::make_shared<Watcher>(*chat);
  chat->webView()->navigationDelegate = watcher;
  std::printf("mapped %d\nbefore %f\n", engineIsMapped(), residentMiB());

  bool presented = false;
  const double start = wallSeconds();
  LiveChat::presentChat(true, [&](bool) { presented = true; });
  waitFor([&] { return watcher->finished > 0 && presented; });
  std::printf("opening %f\ngap %f\nmapped-after %d\n", watcher->finished - start, longestGap(start),
              engineIsMapped());
  std::printf("address %s\n", chat->webView()->url()->absoluteString().c_str());
  runFor(1);
  std::printf("after %f\nlikeness %f\n", residentMiB(), secondOpening());
  exchangeMessages(*chat->webView(), *counter);
  return 0;
}

// Both of them, turn by turn

using Readings = std::map<std::string, std::vector<double>>;

/// Runs this program with those arguments and an empty profile, and reads the figures it prints.
bool run(std::vector<const char*> arguments, Readings& readings, std::string* address = nullptr) {
  const test::TemporaryFolder home;
  for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
    setenv(name, home.path().c_str(), 1);
  int ends[2];
  if (pipe(ends) != 0) return false;
  arguments.insert(arguments.begin(), "chat_bench");
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], 1);
    close(ends[0]);
    execv("/proc/self/exe", const_cast<char**>(arguments.data()));
    _exit(127);
  }
  close(ends[1]);
  std::FILE* lines = fdopen(ends[0], "r");
  char line[4096];
  while (std::fgets(line, sizeof line, lines)) {
    const char* space = std::strchr(line, ' ');
    if (!space) continue;
    const std::string name(line, std::size_t(space - line));
    if (name != "address")
      readings[name].push_back(std::atof(space + 1));
    else if (address)
      *address = std::string(space + 1, std::strcspn(space + 1, "\n"));
  }
  std::fclose(lines);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void print(const Readings& chat, const Readings& bare) {
  const auto figures = [](const Readings& from, const char* name) {
    return figuresOf(from.at(name));
  };
  const auto compare = [&](const char* what, const char* chatName, const char* bareName) {
    const Figures baseline = figures(bare, bareName);
    report((std::string("bare web view, ") + what).c_str(), baseline);
    const Figures ours = figures(chat, chatName);
    report((std::string("chat, ") + what).c_str(), ours, &baseline);
  };
  compare("tap to finish", "opening", "opening");
  compare("tap to finish, engine loaded before", "opening", "opening-loaded");
  compare("one message", "ping", "ping");
  compare("10,000 messages", "flood", "flood");
  report("first slide, longest time without a frame", figures(chat, "gap"));
  report("second slide, until the page is in sight", figures(chat, "first-seen"));
  std::printf("%-44s at least %.1f %%\n", "second slide, pixels that are the page's",
              figures(chat, "likeness").minimum * 100);
  std::printf("%-44s before %.1f MiB  after %.1f MiB\n", "resident memory",
              figures(chat, "before").median, figures(chat, "after").median);
  std::printf("%-44s before %.0f  after %.0f\n", "engine's libraries mapped in any process",
              *std::max_element(chat.at("mapped").begin(), chat.at("mapped").end()),
              figures(chat, "mapped-after").minimum);
}

} // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--bare") == 0) return showBare(argv[2]);
  if (argc == 4 && std::strcmp(argv[1], "--chat") == 0) return showChat(argv[2], argv[3]);

  const test::TemporaryFolder folder;
  sandbox::ServerOptions options;
  options.dataFolder = folder.path("data");
  options.tlsFolder = folder.path("tls");
  const auto server = sandbox::Server::start(std::move(options));
  if (!server) {
    std::fprintf(stderr, "chat_bench: %s\n", server.error().message.c_str());
    return 1;
  }
  const std::string from = (*server)->address();
  const std::string authority = (*server)->certificateAuthority().string();
  Readings chat, bare;
  std::string address;
  for (int i = 0; i < rounds; i++)
    if (!run({"--chat", from.c_str(), authority.c_str()}, chat, &address) ||
        !run({"--bare", address.c_str()}, bare)) {
      std::fprintf(stderr, "chat_bench: no page could be shown; is there a display?\n");
      return 1;
    }
  print(chat, bare);
}
