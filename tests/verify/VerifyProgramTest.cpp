// The program that hosts in any language run, and the call that runs it.

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/Verification.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include "kit/Main/Private/ZVKYCHelper.h"
#include "testing/demo/ProgramFixture.h"

#include <gmock/gmock.h>

namespace zuvi::test {
namespace {

constexpr const char* wholeRun = R"(wait ZVMainViewController 30
tap bottomButton
wait ZVLiveCameraViewController 30
tap recordButton
wait ZVLivenessVerifyViewController 60
tap bottomButton
wait ZVKYCCameraViewController 60
expect cardImageView.alpha 0 20
tap bottomButton
wait ZVVerifiedViewController 60
tap bottomButton
)";
constexpr const char* leaving = R"(wait ZVMainViewController 30
tap closeButtonTap
wait ZVCancelAlertViewController 10
tap cancelButton
)";

class VerifyProgramTest : public sandbox::test::ProgramFixture {
protected:
  struct Ended {
    int status;
    std::vector<std::string> lines;
  };
  /// Runs the program to its end.
  Ended run(const std::vector<std::string>& options, const std::string& input) {
    const std::string output = folder_.path("output");
    std::string command = "exec " ZUVI_VERIFY_PROGRAM " \"$@\" <" +
                          folder_.write("input.json", input) + " >" + output;
    std::vector<std::string> whole{"sh", "-c", command, "sh"};
    whole.insert(whole.end(), options.begin(), options.end());
    program_.emplace(std::move(whole));
    reaches([] { return false; });
    Ended end{program_->wait(), {}};
    std::ifstream file(output);
    for (std::string line; std::getline(file, line);)
      end.lines.push_back(line);
    return end;
  }
  std::string input() const {
    return R"({"client-id": "demo", "metadata": {"booking": "77"}, "cameras": "drawn", "server": ")" +
           server_->address() + R"(/", "tracking": ")" + server_->address() +
           R"(/track/", "ca": ")" + std::string(server_->certificateAuthority()) + "\"}";
  }
};

TEST_F(VerifyProgramTest, TellsHowItEndedInLinesAndByItsStatus) {
  startWith();
  const auto drive = [&](const std::string& script) {
    return run({"--input", "-", "--offscreen", "--drive", folder_.write("a.drive", script)},
               input());
  };
  const Ended verified = drive(wholeRun);
  EXPECT_EQ(verified.status, 0);
  ASSERT_GE(verified.lines.size(), 6U);
  EXPECT_EQ(verified.lines.front(), R"({"event":"screen","name":"ZVMainViewController"})");
  for (const std::string& line : verified.lines)
    EXPECT_TRUE(sandbox::parseJson(line)) << line;
  EXPECT_THAT(verified.lines.back(), testing::HasSubstr(R"("result":"verified")"));
  EXPECT_THAT(verified.lines.back(), testing::HasSubstr(R"("identityId":")"));

  const Ended cancelled = drive(leaving);
  EXPECT_EQ(cancelled.status, 3);
  EXPECT_EQ(cancelled.lines.back(), R"({"event":"outcome","result":"cancelled"})");

  const Ended failed = drive("wait NoSuchScreen 1\n");
  EXPECT_EQ(failed.status, 1);
  EXPECT_THAT(failed.lines.back(), testing::HasSubstr("NoSuchScreen"));

  for (const auto& [options, text] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"--input", "-", "--offscreen"}, input()},
           {{"--input", "-"}, "[1]"},
           {{"--input", "-"}, R"({"client-id": 1})"},
           {{"--input", "-"}, R"({"input": "-"})"},
           {{"--events", "x"}, ""},
           {{}, ""}})
    EXPECT_EQ(run(options, text).status, 2) << text;
}

TEST_F(VerifyProgramTest, RunsForAHostInAProcessOfItsOwn) {
  startWith();
  ZVEndpoints::serverURL() = server_->address() + "/";
  ZVEndpoints::trackingURL() = server_->address() + "/track/";
  ZVEndpoints::setAdditionalAuthorities(server_->certificateAuthority());
  ZVKYCHelper::instance().clinetId = "demo";
  const auto verify = [&](const std::string& program, const std::string& script) {
    std::optional<Verification> end;
    verifyInProcessOfItsOwn(
        [&](const Verification& verification) {
          end = verification;
          MainLoop::stop();
        },
        {program, "--cameras", "drawn", "--offscreen", "--drive",
         folder_.write("b.drive", script)});
    MainLoop::run();
    return *end;
  };
  const Verification verified = verify(ZUVI_VERIFY_PROGRAM, wholeRun);
  EXPECT_EQ(verified.result, Verification::Result::Verified);
  EXPECT_FALSE(verified.identityId.empty());
  EXPECT_EQ(verify(ZUVI_VERIFY_PROGRAM, leaving).result, Verification::Result::Cancelled);
  const Verification missing = verify("no-such-program", leaving);
  EXPECT_EQ(missing.result, Verification::Result::Failed);
  EXPECT_EQ(missing.problem, "zuvi-verify could not be run, or a signal ended it");
  ZVEndpoints::setAdditionalAuthorities("");
}

} // namespace
} // namespace zuvi::test
