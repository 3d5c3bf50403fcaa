// The support chat as a person meets it, with the real browser engine.

#include "testing/demo/ProgramFixture.h"
#include "testing/support/EngineAsRoot.h"

#include <algorithm>

namespace zuvi::sandbox::test {
namespace {

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

class ChatRun : public ProgramFixture {
protected:
  long served(const std::string& operation) {
    const auto requests = server_->requests();
    return std::count_if(requests.begin(), requests.end(),
                         [&](const RequestRecord& r) { return r.operation == operation; });
  }
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

/// The processes below one whose names begin so.
std::vector<int> processes(const char* name, int below) {
  std::map<int, std::pair<int, std::string>> all; // parent and name by id
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string line;
    if (!std::getline(file, line)) continue;
    const auto open = line.find('('), close = line.rfind(')');
    all[std::stoi(line)] = {std::stoi(line.substr(close + 4)),
                            line.substr(open + 1, close - open - 1)};
  }
  std::vector<int> found;
  for (const auto& [id, process] : all) {
    if (process.second.rfind(name, 0) != 0) continue;
    for (int above = id; above > 1; above = all[above].first)
      if (above == below) found.push_back(id);
  }
  return found;
}

TEST_F(ChatRun, OnePageServesAsLongAsTheChatIsUsed) {
  // A greeting that comes while the chat slides in raises the alert.
  startWith({"chat-page:1:delay=1"});
  launch(intoTheFlow + "sleep 1.5\n");
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(served("chat-template"), 1);
  EXPECT_EQ(served("chat-page"), 0) << "nobody has opened the chat";

  launch(intoTheFlow + intoTheChat + R"drive(
script "[...document.querySelectorAll('#details dd')].map(d => d.textContent).join('|')" "77|3|Ana Lú + 100 %|ana+1@example.org|Casa & Mar = 100 %"
expect loadingView.alpha 0 10
sleep 0.5
picture chat
script "window.kept = 7; window.tall = innerHeight"
keyboard show 300
script "tall - innerHeight" 300 10
sleep 0.5
keyboard hide
script "tall - innerHeight" 0 10
)drive" + times(10, hideByThePage + intoTheChat) +
         R"drive(
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
  EXPECT_TRUE(std::filesystem::exists(folder_.path("pictures/chat.png")));
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

TEST_F(ChatRun, GoesOnWhereNoSandboxIsAllowed) {
  folder_.write("bwrap", "#!/bin/sh\nexit 1\n"); // as in many containers
  std::filesystem::permissions(folder_.path("bwrap"), std::filesystem::perms::owner_all);
  const zuvi::test::ScopedEnvironment path("PATH", folder_.path() + ":" + std::getenv("PATH"));
  startWith();
  launch(intoTheFlow + intoTheChat + "dump MARK/chat\nsleep 1\n");
  dumped("chat");
  EXPECT_EQ(processes("WebKitWebProces", program_->id()).size(), 1U);
  EXPECT_TRUE(processes("bwrap", program_->id()).empty())
      << "it would end the program on such a machine";
  ASSERT_TRUE(endsWell());
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
tap closeButton
wait ZVMainViewController
tap infoButton
wait LiveChatOverlayViewController
script "document.querySelectorAll('.line').length" 1 30
expect loadingView.alpha 0 10
sleep 1
script "document.getElementById('hide').click()"
wait ZVMainViewController
)drive");
  EXPECT_TRUE(has(dumped("no-template"), "Comprueba la conexión"));
  server_->setFailRules(*FailPlan::parse({"chat-page:1:drop", "chat-page:2:drop"}));
  EXPECT_TRUE(has(dumped("no-page"), "Comprueba la conexión"));
  dumped("page");
  const auto pages = processes("WebKitWebProces", program_->id());
  EXPECT_FALSE(pages.empty());
  for (const int page : pages)
    kill(page, SIGKILL);
  EXPECT_TRUE(has(dumped("no-process"), "El chat se ha detenido"));
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(served("chat-page"), 4);
}

} // namespace
} // namespace zuvi::sandbox::test
