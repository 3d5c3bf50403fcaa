#include "tests/pipewire/MediaServer.h"
#include "tests/sandbox/ServerFixture.h"

namespace zuvi::sandbox::test {
namespace {

using zuvi::test::ChildProcess;
using zuvi::test::MediaServer;
using zuvi::test::VirtualCamera;

/// The real program with this machine's cameras and a sandbox. A script does what the person does.
class VerificationTest : public ServerFixture {
protected:
  VerificationTest() {
    MediaServer::instance();
    ServerOptions options;
    options.merchants = *Merchants::fromText(R"({"demo": {"name": "Casa", "photo": "",
        "configurations": [{"color": "blue", "language": "en",
        "documents": {"required": ["driving-license"], "optional": []}}]}})");
    // An upload that is over at once is not seen by the script.
    options.failRules = *FailPlan::parse({"identity:*:delay=0.5", "document:*:delay=0.5"});
    start(std::move(options));
  }
  /// `MARK` in the script stands for the folder of dumps.
  void launch(std::string script) {
    for (auto at = script.find("MARK"); at != std::string::npos; at = script.find("MARK"))
      script.replace(at, 4, folder_.path());
    program_.emplace(std::vector<std::string>{ZUVI_DEMO_PROGRAM, "--client-id", "demo", "--server",
                                              server_->address() + "/", "--tracking",
                                              server_->address() + "/track/", "--cameras", "real",
                                              "--offscreen", "--drive",
                                              folder_.write("a.drive", script)},
                     folder_.path("program.log"));
  }
  /// Waits until the script dumps under that name.
  bool reaches(const std::string& name) {
    for (int i = 0; i < 3000 && program_->isRunning(); i++) {
      if (std::filesystem::exists(folder_.path(name))) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return std::filesystem::exists(folder_.path(name));
  }
  std::string log() const { return zuvi::test::TemporaryFolder::read(folder_.path("program.log")); }

  std::optional<ChildProcess> program_;
};

TEST_F(VerificationTest, TakesItsFilmInFrontAndItsDocumentsAtTheBack) {
  const VirtualCamera front("Front", {"front", "red"}), back("Back", {"back", "blue"});
  launch(R"(tap launchButton
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
  EXPECT_EQ(program_->wait(), 0) << log();
}

TEST_F(VerificationTest, GoesOnWithCamerasThatWerePulledOutOnEachScreen) {
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
)");
  for (const auto& [before, after] : {std::pair("filming", "lost"), {"document", "lost-again"}}) {
    ASSERT_TRUE(reaches(before)) << log();
    camera->unplug();
    ASSERT_TRUE(reaches(after)) << log();
    camera.reset();
    camera.emplace("Webcam", VirtualCamera::Traits{});
  }
  EXPECT_EQ(program_->wait(), 0) << log();
}

} // namespace
} // namespace zuvi::sandbox::test
