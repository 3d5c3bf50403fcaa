#include "tests/demo/ProgramFixture.h"
#include "tests/pipewire/MediaServer.h"

namespace zuvi::sandbox::test {
namespace {

using zuvi::test::MediaServer;
using zuvi::test::VirtualCamera;

/// The real program with this machine's cameras.
class VerificationTest : public ProgramFixture {
protected:
  void SetUp() override {
    // An upload that is over at once is not seen by the script.
    startWith({"identity:*:delay=0.5", "document:*:delay=0.5"},
              *Merchants::fromText(R"({"demo": {"name": "Casa", "photo": "",
                  "configurations": [{"color": "blue", "language": "en",
                  "documents": {"required": ["driving-license"], "optional": []}}]}})"));
  }
  void verify(const std::string& script) { launch(script, {"--cameras", "real", "--offscreen"}); }

  const zuvi::test::ScopedEnvironment media_{"XDG_RUNTIME_DIR",
                                             MediaServer::instance().folder().path("run")};
};

TEST_F(VerificationTest, TakesItsFilmInFrontAndItsDocumentsAtTheBack) {
  const VirtualCamera front("Front", {"front", "red"}), back("Back", {"back", "blue"});
  verify(R"(tap launchButton
wait ZVMainViewController
tap bottomButton
wait ZVLiveCameraViewController
expect cameraNotice.hidden true
tap recordButton
wait ZVLivenessVerifyViewController 30
tap bottomButton
wait ZVKYCCameraViewController 30
expect pageControl.page 2
sleep 1
tap bottomButton
sleep 2
wait ZVKYCCameraViewController
expect pageControl.page 3 10
sleep 1
tap bottomButton
wait ZVVerifiedViewController 30
tap bottomButton
outcome 10
)");
  EXPECT_TRUE(endsWell());
}

TEST_F(VerificationTest, GoesOnWithCamerasThatWerePulledOutOnEachScreen) {
  std::optional<VirtualCamera> camera(std::in_place, "Webcam", VirtualCamera::Traits{});
  verify(R"(tap launchButton
wait ZVMainViewController
tap bottomButton
wait ZVLiveCameraViewController
sleep 1
tap recordButton
sleep 7
dump MARK/filming
expect cameraNotice.hidden false 20
expect recordLabel.text "Record"
dump MARK/lost
expect cameraNotice.hidden true 30
sleep 1
tap recordButton
wait ZVLivenessVerifyViewController 30
tap bottomButton
wait ZVKYCCameraViewController 30
sleep 1
dump MARK/document
expect cameraNotice.hidden false 20
tap bottomButton
sleep 1
wait ZVKYCCameraViewController
dump MARK/lost-again
expect cameraNotice.hidden true 30
sleep 1
tap bottomButton
sleep 2
expect pageControl.page 3 10
sleep 1
tap bottomButton
wait ZVVerifiedViewController 30
tap bottomButton
outcome 10
)");
  for (const auto& [before, after] : {std::pair("filming", "lost"), {"document", "lost-again"}}) {
    ASSERT_NE(dumped(before), "");
    camera->unplug();
    ASSERT_NE(dumped(after), "");
    camera.reset();
    camera.emplace("Webcam", VirtualCamera::Traits{});
  }
  EXPECT_TRUE(endsWell());
}

} // namespace
} // namespace zuvi::sandbox::test
