// The program that hosts in any language run, and the call that runs it.

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/Verification.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include "demo/core/Options.h"
#include "kit/Main/Private/VerificationProgram.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "platform/Foundation/ProgramRun.h"
#include "testing/demo/ProgramFixture.h"

#include <csignal>
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

TEST_F(VerifyProgramTest, HandsOverWhatTheHostSaid) {
  ZVKYC& kit = ZVKYC::instance();
  const std::string id = R"(a/b?c#d"e\)";
  ZVKYCHelper::instance().clinetId = "demo";
  kit.identityId = id;
  kit.metadata = Value::Dictionary{{id, 7}};
  kit.textsFile = folder_.write("texts.plist", "");
  kit.language = "de";
  kit.userInterfaceStyle = UIUserInterfaceStyle::Dark;
  LiveChat::groupId = "3";
  LiveChat::name = "Ana";
  LiveChat::email = "ana@host";
  ZVEndpoints::chatDomain() = "chat.host";
  Bundle::main().setInfoDictionary(
      {{"CFBundleVersion", "42"}, {"CFBundleShortVersionString", "1.3"}});
  const auto parsed = demo::parseOptions({"--input", folder_.write("input", verificationInput())},
                                         demo::Program::Verify);
  ASSERT_TRUE(std::holds_alternative<demo::Options>(parsed)) << std::get<std::string>(parsed);
  const auto& options = std::get<demo::Options>(parsed);
  EXPECT_EQ(options.identity, id);
  EXPECT_EQ(*stringValue(options.metadata, id), "7");
  EXPECT_EQ(options.style, UIUserInterfaceStyle::Dark);
  const std::vector<std::optional<std::string>> texts{
      options.clientId,   options.texts,       options.language,
      options.chatGroup,  options.chatName,    options.chatEmail,
      options.chatDomain, options.hostVersion, options.hostBuild};
  EXPECT_EQ(texts, (std::vector<std::optional<std::string>>{"demo", kit.textsFile, "de", "3", "Ana",
                                                            "ana@host", "chat.host", "1.3", "42"}));
  for (auto* field : {&LiveChat::groupId, &LiveChat::name, &LiveChat::email})
    *field = std::nullopt;
  kit.identityId = std::nullopt;
  kit.metadata = std::nullopt;
  kit.textsFile = kit.language = "";
}

TEST_F(VerifyProgramTest, AMerchantThatComesLateStartsNoSecondRun) {
  startWith({"merchant:1:delay=5.5"});
  const Ended end = run({"--input", "-", "--offscreen", "--drive",
                         folder_.write("late.drive", std::string("wait ZVMainViewController 30\n") +
                                                         "sleep 1.5\n" + leaving)},
                        input());
  EXPECT_EQ(end.status, 3) << end.lines.back();
}

/// How a program ends that the kit runs, and what it printed.
std::string endOf(const std::vector<std::string>& command, const std::string& input = {}) {
  std::string lines;
  runProgram(
      command, input, [&](const std::string& line) { lines += line.substr(0, 20) + '|'; },
      [&](int status) {
        lines += std::to_string(status);
        MainLoop::stop();
      });
  MainLoop::run();
  return lines;
}

TEST(ProgramRun, OutlivesWhatAProgramDoesWrong) {
  MainLoop::attach();
  std::signal(SIGPIPE, SIG_DFL); // as a host has it
  const std::string much(1 << 20, 'x');
  EXPECT_EQ(endOf({"sh", "-c", "exit 7"}, much), "7") << "ended before it read";
  EXPECT_EQ(endOf({"sh", "-c", "printf 'a\n\nb'; exit 3"}), "a||b|3");
  EXPECT_EQ(endOf({"sh", "-c", "cat; kill -9 $$"}, "c\n"), "c|-1");
  EXPECT_EQ(endOf({"sh", "-c", "yes | tr -d '\\n'"}), "-1") << "a line without an end";
}

} // namespace
} // namespace zuvi::test
