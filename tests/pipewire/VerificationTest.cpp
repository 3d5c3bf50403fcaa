#include "testing/demo/ProgramFixture.h"
#include "testing/mediaserver/MediaServer.h"

namespace zuvi::sandbox::test {
namespace {

using zuvi::test::MediaServer;
using zuvi::test::VirtualCamera;

using VerificationTest = ProgramFixture;

// The real program with this machine's cameras.
TEST_F(VerificationTest, GoesOnWithCamerasThatWerePulledOutOnEachScreen) {
  const zuvi::test::ScopedEnvironment media("XDG_RUNTIME_DIR",
                                            MediaServer::instance().folder().path("run"));
  // An upload that is over at once is not seen by the script.
  startWith({"identity:*:delay=0.5", "document:*:delay=0.5"},
            merchant("en", R"({"required": ["driving-license"], "optional": []})"));
  std::optional<VirtualCamera> camera(std::in_place, "Webcam", VirtualCamera::Traits{});
  launch(R"(tap launchButton
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
)",
         {"--cameras", "real", "--offscreen"});
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
