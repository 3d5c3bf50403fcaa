// Whole roads by pointer, wheel and keyboard.

#include "tests/desktop/DesktopFixture.h"

namespace zuvi::test {
namespace {

using DesktopTest = DesktopFixture;

TEST_F(DesktopTest, AVerificationIsClickedThrough) {
  open({420, 860});
  launch(R"drive(
wait HostViewController
expect launchButton.title "Login" 30
sleep 0.5
dump MARK/host
wait ZVMainViewController 30
sleep 1
dump MARK/start
wait ZVLiveCameraViewController 30
sleep 1
dump MARK/recorder
wait ZVLivenessVerifyViewController 60
sleep 1
dump MARK/review
wait ZVKYCCameraViewController 60
expect cardImageView.alpha 0 10
dump MARK/passport
wait ZVVerifiedViewController 60
sleep 1
dump MARK/verified
outcome 30
)drive");
  clickWhenDumped("host", "launchButton");
  clickWhenDumped("start", "bottomButton");
  clickWhenDumped("recorder", "recordButton");
  clickWhenDumped("review", "bottomButton");
  clickWhenDumped("passport", "bottomButton");
  // Out of sight and back, alone on the output, and again among others.
  dumped("verified");
  compositor_->run("workspace 2; workspace 1; fullscreen enable");
  compositor_->run("fullscreen disable");
  clickWhenDumped("verified", "bottomButton");
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(events("outcome", "call"), std::vector<std::string>{"zvKYCLoginSuccess"});
}

TEST_F(DesktopTest, TheChatIsTypedInto) {
  open({420, 860});
  launch(R"drive(
wait HostViewController
expect launchButton.title "Login" 30
tap launchButton
wait ZVMainViewController 30
sleep 1
dump MARK/start
wait LiveChatOverlayViewController 30
script "document.querySelectorAll('.line').length" 1 60
expect loadingView.alpha 0 10
sleep 1
dump MARK/chat
script "document.activeElement.id" "text" 30
dump MARK/text
script "document.querySelectorAll('.line').length" 3 60
script "document.querySelectorAll('.line p')[1].textContent" "Größe 5 €"
script "window.list = document.getElementById('lines'); const tall = document.createElement('p'); tall.style.height = '9000px'; list.replaceChildren(tall); list.scrollTop = 0"
dump MARK/long
script "list.scrollTop > 0" "true" 30
dump MARK/scrolled
script "list.scrollTop" 0 30
dump MARK/back
)drive");
  clickWhenDumped("start", "infoButtonTap");
  dumped("chat");
  Pointer& pointer = compositor_->pointer();
  // The line to write on lies above the page's last one.
  pointer.moveTo({size_.width / 3, size_.height - 75});
  pointer.click();
  dumped("text");
  compositor_->type("-s 300 'Größe 5 €' -k Return");
  dumped("long");
  pointer.moveTo({size_.width / 2, size_.height / 2});
  const auto leadsTo = [&](const char* dump, const std::function<void()>& move) {
    return reaches([&] {
      move();
      return std::filesystem::exists(folder_.path(dump));
    });
  };
  EXPECT_TRUE(leadsTo("scrolled", [&] { pointer.turnWheel(1); }));
  EXPECT_TRUE(leadsTo("back", [&] { pointer.swipe(0, -40); }));
  ASSERT_TRUE(endsWell());
}

} // namespace
} // namespace zuvi::test
