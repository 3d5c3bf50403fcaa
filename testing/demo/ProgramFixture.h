#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include "testing/backend/ServerFixture.h"
#include "testing/support/ChildProcess.h"

namespace zuvi::sandbox::test {

/// The real program in a window, beside a sandbox over TLS. A drive script does what the person
/// does; the test is the world around it.
class ProgramFixture : public ServerFixture {
protected:
  /// The merchant "demo", whose texts are in that language.
  static Merchants merchant(const std::string& language,
                            const std::string& documents = R"({"required": ["passport"],
                                                               "optional": []})") {
    return *Merchants::fromText(
        R"({"demo": {"name": "Casa & Mar = 100 %", "photo": "", "configurations": [{"color": "blue",
        "documents": )" +
        documents + R"(, "language": ")" + language + "\"}]}}");
  }

  void startWith(const std::vector<std::string>& failRules = {},
                 Merchants merchants = merchant("es")) {
    ServerOptions options;
    options.tlsFolder = folder_.path("tls");
    options.failRules = *FailPlan::parse(failRules);
    options.merchants = std::move(merchants);
    start(std::move(options));
    URLSession::setAdditionalAuthorities(server_->certificateAuthority());
    std::filesystem::create_directory(home_);
    std::filesystem::permissions(home_, std::filesystem::perms::owner_all);
  }

  void TearDown() override {
    program_.reset();
    URLSession::setAdditionalAuthorities("");
  }

  /// Starts the program with a script, in which "MARK" stands for the folder of dumps.
  void launch(std::string script,
              const std::vector<std::string>& cameras = {"--front-camera", "simulated",
                                                         "--back-camera", "simulated"}) {
    for (auto i = script.find("MARK"); i != std::string::npos; i = script.find("MARK", i))
      script.replace(i, 4, folder_.path());
    const std::string address = server_->address();
    events_ = folder_.path("events-") + std::to_string(++runs_);
    std::vector<std::string> command{ZUVI_DEMO_PROGRAM};
    for (const auto& [option, value] :
         std::map<std::string, std::string>{{"--client-id", "demo"},
                                            {"--server", address + "/"},
                                            {"--tracking", address + "/track/"},
                                            {"--chat-template", address + "/app/mobile/urls.json"},
                                            {"--ca", server_->certificateAuthority()},
                                            {"--chat-name", "Ana Lú + 100 %"},
                                            {"--chat-email", "ana+1@example.org"},
                                            {"--chat-license", "77"},
                                            {"--chat-group", "3"},
                                            {"--pictures", folder_.path("pictures")},
                                            {"--drive", folder_.write("a.drive", script)},
                                            {"--events", events_}})
      command.insert(command.end(), {option, value});
    command.insert(command.end(), cameras.begin(), cameras.end());
    program_.emplace(std::move(command));
  }

  /// Waits for something while the program runs.
  bool reaches(const std::function<bool()>& holds) {
    return zuvi::test::comesToHold(holds, [this] { return program_->isRunning(); });
  }

  /// What the program's script dumped under that name, as soon as it is there; the program goes on.
  std::string dumped(const std::string& name) {
    reaches([&] { return std::filesystem::exists(folder_.path(name)); });
    std::string dump = zuvi::test::TemporaryFolder::read(folder_.path(name));
    EXPECT_NE(dump, "") << name << " never came";
    return dump;
  }

  /// The middle of a view, by outlet or action, on a screen that the script dumps: in points from
  /// the left and from the bottom, as a title bar may lie above.
  std::optional<CGPoint> middleOf(const std::string& dump, const std::string& view) {
    const Json tree = parseJson(dumped(dump)).value_or(Json());
    if (!tree.contains("windows")) return std::nullopt;
    const Json& root = tree["windows"][0];
    const auto frame = frameOf(root, view);
    EXPECT_TRUE(frame) << view;
    if (!frame) return std::nullopt;
    const auto& [x, y, width, height] = *frame;
    return CGPoint{x + width / 2, double(root["frame"][3]) - y - height / 2};
  }

  /// Whether the script came to its end; the program says on its standard error where it stopped.
  bool endsWell() {
    reaches([] { return false; });
    if (program_->isRunning()) program_.reset();
    const int status = program_ ? program_->wait() : -1;
    EXPECT_EQ(status, 0) << "as it exits; -1 when a signal ended it";
    return status == 0;
  }

  /// The frame of the view of that outlet or action, below a view.
  static std::optional<std::array<double, 4>> frameOf(const Json& view, const std::string& name) {
    if (stringMember(view, "outlet") == name || stringMember(view, "action") == name)
      return view["frame"];
    for (const Json& child : view["children"])
      if (const auto frame = frameOf(child, name)) return frame;
    return std::nullopt;
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

  const std::string home_ = folder_.path("home");
  const zuvi::test::ScopedEnvironment environment_[5]{{"HOME", home_},
                                                      {"XDG_CONFIG_HOME", home_ + "/config"},
                                                      {"XDG_DATA_HOME", home_ + "/data"},
                                                      {"XDG_CACHE_HOME", home_ + "/cache"},
                                                      {"XDG_RUNTIME_DIR", home_}};
  std::optional<zuvi::test::ChildProcess> program_;
  int runs_ = 0;
  std::string events_;
};

} // namespace zuvi::sandbox::test
