// The support chat as a person meets it: the real program in a window, the real browser engine, and
// the sandbox over TLS. A drive script does what the person does; the test is the world around it.

#include "platform/ImageIO/ImageFile.h"
#include "tests/UIKit/Pixels.h"
#include "tests/sandbox/ServerFixture.h"
#include "tests/support/PageProcesses.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace zuvi::sandbox::test {
namespace {

using Clock = std::chrono::steady_clock;
using zuvi::test::ScopedEnvironment;

constexpr auto patience = std::chrono::seconds(60);

// Until the button speaks the merchant's language, nobody knows the merchant's name.
const std::string intoTheFlow = R"drive(
wait HostViewController
expect launchButton.title "Iniciar sesión" 30
tap launchButton
wait ZVMainViewController 20
)drive";
const std::string intoTheChat = R"drive(
tap infoButton
wait LiveChatOverlayViewController
script "document.title" "Sandbox chat" 30
script "document.getElementById('focus').textContent" "In front" 20
)drive";
const std::string hideByThePage = R"drive(
script "document.getElementById('hide').click()"
wait ZVMainViewController
)drive";

class ChatRun : public ServerFixture {
protected:
  void startWith(const std::vector<std::string>& failRules = {}) {
    ASSERT_NE(std::getenv("DISPLAY"), nullptr) << "this test wants a display, such as Xvfb's";
    ServerOptions options;
    options.tlsFolder = folder_.path("tls");
    options.failRules = *FailPlan::parse(failRules);
    options.merchants = *Merchants::fromText(
        R"({"demo": {"name": "Casa & Mar = 100 %", "photo": "", "configurations": [{"color": "blue",
            "language": "es", "documents": {"required": ["passport"], "optional": []}}]}})");
    start(std::move(options));
    URLSession::setAdditionalAuthorities(server_->certificateAuthority());
    std::filesystem::create_directory(folder_.path("home"));
    std::filesystem::permissions(folder_.path("home"), std::filesystem::perms::owner_all);
  }

  void TearDown() override {
    if (program_ > 0) kill(program_, SIGKILL);
    if (program_ > 0) waitpid(program_, nullptr, 0);
    URLSession::setAdditionalAuthorities("");
  }

  /// Starts the program with a script, in which "MARK" stands for the folder of dumps.
  void launch(std::string script) {
    for (auto i = script.find("MARK"); i != std::string::npos; i = script.find("MARK", i))
      script.replace(i, 4, folder_.path());
    const std::string address = server_->address(), tracking = address + "/track/",
                      root = address + "/", page = address + "/app/mobile/urls.json",
                      ca = server_->certificateAuthority(), pictures = folder_.path("pictures"),
                      drive = folder_.write("a.drive", script);
    events_ = folder_.path("events-") + std::to_string(++runs_);
    program_ = fork();
    if (program_ != 0) return;
    execl(ZUVI_DEMO_PROGRAM, "zuvi-demo", "--client-id", "demo", "--server", root.c_str(),
          "--tracking", tracking.c_str(), "--chat-template", page.c_str(), "--ca", ca.c_str(),
          "--chat-name", "Ana Lú + 100 %", "--chat-email", "ana+1@example.org", "--chat-license",
          "77", "--chat-group", "3", "--front-camera", "simulated", "--back-camera", "simulated",
          "--pictures", pictures.c_str(), "--drive", drive.c_str(), "--events", events_.c_str(),
          nullptr);
    _exit(127);
  }

  /// Waits for something while the program runs.
  bool reaches(const std::function<bool()>& holds) {
    const auto deadline = Clock::now() + patience;
    while (!holds() && isRunning() && Clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return holds();
  }

  /// What the program's script dumped under that name, as soon as it is there; the program goes on.
  std::string dumped(const std::string& name) {
    reaches([&] { return std::filesystem::exists(folder_.path(name)); });
    std::string dump = zuvi::test::TemporaryFolder::read(folder_.path(name));
    EXPECT_NE(dump, "") << name << " never came";
    return dump;
  }

  bool isRunning() {
    siginfo_t info{};
    return waitid(P_PID, id_t(program_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
  }

  /// Whether the script came to its end; the program says on its standard error where it stopped.
  bool endsWell() {
    reaches([] { return false; });
    if (isRunning()) kill(program_, SIGKILL);
    int status = -1;
    waitpid(program_, &status, 0);
    program_ = -1;
    EXPECT_EQ(status, 0) << "as waitpid gives it";
    return status == 0;
  }

  /// One entry of each event of that kind, of the latest run.
  std::vector<std::string> events(const std::string& kind, const char* entry) {
    std::vector<std::string> found;
    std::ifstream file(events_);
    for (std::string line; std::getline(file, line);)
      if (const Json event = parseJson(line).value_or(Json()); stringMember(event, "event") == kind)
        found.push_back(stringMember(event, entry).value_or(""));
    return found;
  }

  long served(const std::string& operation) {
    const auto requests = server_->requests();
    return std::count_if(requests.begin(), requests.end(),
                         [&](const RequestRecord& r) { return r.operation == operation; });
  }

  const std::string home_ = folder_.path("home");
  const ScopedEnvironment environment_[5]{{"HOME", home_},
                                          {"XDG_CONFIG_HOME", home_ + "/config"},
                                          {"XDG_DATA_HOME", home_ + "/data"},
                                          {"XDG_CACHE_HOME", home_ + "/cache"},
                                          {"XDG_RUNTIME_DIR", home_}};
  pid_t program_ = -1;
  int runs_ = 0;
  std::string events_;
};

bool has(const std::string& dump, const char* text) {
  return dump.find(text) != std::string::npos;
}

std::string times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; i++)
    all += text;
  return all;
}

TEST_F(ChatRun, OnePageServesAsLongAsTheChatIsUsed) {
  startWith();
  launch(intoTheFlow + "sleep 1.5\n");
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(served("chat-template"), 1);
  EXPECT_EQ(served("chat-page"), 0) << "nobody has opened the chat";

  launch(intoTheFlow + intoTheChat + R"drive(
script "[...document.querySelectorAll('#details dd')].map(d => d.textContent).join('|')" "77|3|Ana Lú + 100 %|ana+1@example.org|Casa & Mar = 100 %"
expect loadingView.alpha 0 10
script "window.kept = 7; window.tall = innerHeight"
keyboard show 300
script "tall - innerHeight" 300 10
sleep 0.5
keyboard hide
script "tall - innerHeight" 0 10
)drive" + times(10, hideByThePage + intoTheChat) +
         R"drive(
script "document.getElementById('link').click()"
script "const open = window.open; window.open = (url) => window.kid = open.call(window, url); 1"
script "document.getElementById('window').click()"
script "[...kid.document.querySelectorAll('#details dd')].map(d => d.textContent).join()" "0,0,Second window" 20
dump MARK/two-windows
script "kid.document.getElementById('hide').click()"
script "kid.closed" "true" 10
sleep 0.2
dump MARK/one-window
script "const link = document.createElement('a'); link.href = 'nobody-knows:this'; document.body.append(link); link.click()"
expect errorView.alpha 1 10
script "kept" 7
tap reloadButton
script "document.querySelectorAll('.line').length + typeof kept" "1undefined" 30
)drive");
  const std::string two = dumped("two-windows"), one = dumped("one-window");
  EXPECT_TRUE(has(two, "name=Second"));
  EXPECT_FALSE(has(one, "name=Second"));
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(events("opened", "url"), std::vector<std::string>{"https://www.debian.org/"});
  EXPECT_EQ(served("chat-page"), 3) << "with the second window and the reload at the end";
}

TEST_F(ChatRun, AHiddenChatTellsOfAMessageOnce) {
  startWith();
  launch(intoTheFlow + intoTheChat);
  ASSERT_TRUE(endsWell());
  launch(intoTheFlow + R"drive(
wait UIAlertController 60
dump MARK/alert
tap "Go to Chat"
wait LiveChatOverlayViewController
script "document.getElementById('focus').textContent" "In front" 20
script "window.old = 1; location.reload()"
script "window.old + document.querySelector('#lines .line:last-child p').textContent" "undefinedYour boat & you" 20
)drive" + hideByThePage +
         "sleep 1\nwait ZVMainViewController 0\n");
  // The visitor enters once for each load.
  EXPECT_TRUE(reaches([&] { return served("chat-message") == 2; })) << "it waits for a tap";
  EXPECT_EQ(served("chat-page"), 2);
  const Json rooms = json(ask("GET", "/chat/conversations"));
  ASSERT_EQ(rooms.size(), 1U) << "the visitor is known by the profile";
  ask("POST", "/chat/operator", {},
      jsonText({{"visitor", rooms[0]["visitor"]}, {"text", "Your boat & you"}}));
  const std::string alert = dumped("alert");
  for (const char* text : {"\"Support\"", "Your boat & you", "Go to Chat"})
    EXPECT_TRUE(has(alert, text)) << text;
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(events("chat-message", "text"), std::vector<std::string>{"Your boat & you"})
      << "neither what the run before knew, nor twice";
}

TEST_F(ChatRun, EveryFailureLeavesAWayOn) {
  startWith({"chat-template:*:drop"});
  launch(intoTheFlow + R"drive(
sleep 1
tap infoButton
wait LiveChatOverlayViewController
expect errorView.alpha 1 20
dump MARK/no-template
sleep 0.7
tap reloadButton
sleep 3.5
tap closeButton
wait ZVMainViewController
tap closeButton
wait ZVCancelAlertViewController
tap cancelButton
outcome
)drive" + intoTheFlow +
         R"drive(
sleep 1
tap infoButton
wait LiveChatOverlayViewController
sleep 1
expect errorView.alpha 1 20
dump MARK/no-page
tap reloadButton
script "document.querySelectorAll('.line').length" 1 30
expect loadingView.alpha 0 10
dump MARK/page
expect errorView.alpha 1 30
dump MARK/no-process
tap reloadButton
script "document.querySelectorAll('.line').length" 1 30
expect loadingView.alpha 0 10
script "document.getElementById('hide').click()"
wait ZVMainViewController
)drive");
  EXPECT_TRUE(has(dumped("no-template"), "Empty reply from server"));
  server_->setFailRules(*FailPlan::parse({"chat-page:1:drop"}));
  EXPECT_TRUE(has(dumped("no-page"), "Connection terminated"));
  dumped("page");
  const auto pages = zuvi::test::pageProcesses(program_);
  EXPECT_FALSE(pages.empty());
  for (const int page : pages)
    kill(page, SIGKILL);
  EXPECT_TRUE(has(dumped("no-process"), "The chat has stopped unexpectedly."));
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(served("chat-page"), 3);
}

TEST_F(ChatRun, TheCloseButtonComesAfterAWhile) {
  startWith({"chat-template:*:json={}"});
  launch(intoTheFlow + R"drive(
tap infoButton
wait LiveChatOverlayViewController
sleep 0.7
picture early
sleep 3.2
picture late
expect activityIndicator.animating true
tap closeButton
wait ZVMainViewController
)drive");
  ASSERT_TRUE(endsWell());
  const auto showsButton = [&](const std::string& name) {
    const auto bytes = zuvi::test::TemporaryFolder::read(folder_.path("pictures/" + name + ".png"));
    const auto picture = decodeImage(Data(bytes));
    return picture && zuvi::test::Pixels(picture).at(343, 32).isNear(zuvi::test::black, 60);
  };
  EXPECT_FALSE(showsButton("early"));
  EXPECT_TRUE(showsButton("late"));
  EXPECT_EQ(served("chat-page"), 0);
}

} // namespace
} // namespace zuvi::sandbox::test
