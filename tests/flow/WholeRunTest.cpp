// Whole verifications against the sandbox, and what has arrived there afterwards.

#include "kit/Helper/ZVLocalization.h"
#include "sandbox/core/Server.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class WholeRunTest : public FlowTest {
protected:
  void start(const std::vector<std::string>& rules = {}) {
    server_.reset();
    sandbox::ServerOptions options;
    options.dataFolder = folder.path("sandbox" + std::to_string(++starts_));
    options.failRules = *sandbox::FailPlan::parse(rules);
    auto started = sandbox::Server::start(std::move(options));
    ASSERT_TRUE(started) << started.error().message;
    server_ = std::move(*started);
    useServer(server_->address() + "/");
  }

  /// What is stored, in words.
  std::string stored() const {
    const sandbox::Arrivals arrived = *server_->arrivals();
    std::string text;
    for (const auto& identity : arrived.identities) {
      text += *server_->file(identity.film) == film ? "film" : "another film";
      for (const auto& [key, value] : identity.metadata)
        text += " " + key + "=" + value;
      for (const auto& document : identity.documents) {
        text += " " + document.type;
        for (const auto& side : document.sides)
          text += " " + side.side + ":" + (*server_->file(side.picture)).substr(jpeg(0).size() - 1);
      }
    }
    return text;
  }

  std::unique_ptr<sandbox::Server> server_;
  int starts_ = 0;
};

TEST_F(WholeRunTest, TakeEachMerchantsRoad) {
  const std::string begin = "start(0) recorder(0) review(-1) upload(-1) ";
  const struct {
    std::string client, pick, steps, stored;
  } rows[] = {
      {"none", "", "verified(-1) ", "film count=3 flag=true plan=a \"b\"\r\nc é"},
      {"only-required", "", "passport(2) upload(-1) verified(-1) ", "film passport front:1"},
      {"only-optional", "passport", "list(2) passport(2) upload(-1) verified(-1) ",
       "film passport front:1"},
      {"both", "passport",
       "driving-license(2) driving-license(3) upload(-1) proof-of-residency(2) upload(-1) "
       "list(2) passport(2) upload(-1) verified(-1) ",
       "film driving-license front:1 back:2 proof-of-residency front:3 passport front:4"},
      {"repeated-documents", "national-id",
       "passport(2) upload(-1) passport(2) upload(-1) list(2) national-id(2) national-id(3) "
       "upload(-1) verified(-1) ",
       "film passport front:1 passport front:2 national-id front:3 back:4"},
  };
  bool closes = false;
  for (const auto& row : rows) {
    start();
    shots = 0;
    delegate->calls.clear();
    std::optional<Value::Dictionary> metadata;
    if (row.client == "none")
      metadata = Value::Dictionary{{"plan", "a \"b\"\r\nc é"}, {"flag", true}, {"count", 3}};
    registerClient(row.client, metadata);
    launch();
    EXPECT_EQ(walk(row.pick), begin + row.steps) << row.client;
    EXPECT_EQ(stored(), row.stored) << row.client;
    EXPECT_TRUE(delegate->calls.empty());
    // Both ways to finish tell the same, once.
    tap((closes = !closes) ? "closeButtonTap" : "bottomButton");
    const auto id = server_->arrivals()->identities.back().id;
    EXPECT_EQ(delegate->calls, std::vector<std::string>{"success " + id});
    EXPECT_FALSE(host->presentedViewController());
    for (const auto& request : server_->requests())
      EXPECT_LT(request.status, 300) << request.path << " " << request.message;
  }
}

TEST_F(WholeRunTest, FallsBackWhenNoIdentityComes) {
  for (const std::string failure : {"drop", "message=Too dark", "json={\"id\":7}"}) {
    start({"identity:1:" + failure});
    registerClient("none");
    launchToUpload();
    arrive("ZVLiveCameraViewController");
    EXPECT_EQ(shell().mainNC()->viewControllers().size(), 2U) << failure;
    EXPECT_FALSE(ZVKYCHelper::instance().tempIdentity) << failure;
    record(); // the next take goes through
    tapBottom();
    arrive("ZVVerifiedViewController");
    tapBottom();
    ZVKYCHelper::instance().tempIdentity = std::nullopt;
  }
}

TEST_F(WholeRunTest, FallsBackToTheFrontWhenADocumentFails) {
  const struct {
    std::string client, rule, stored;
  } rows[] = {
      {"only-required", "document:1:message=Not sharp", "film passport front:2"},
      {"bare", "document:1:nonjson", "film national-id front:3 back:4"},
      {"bare", "photo:1:nonjson", "film national-id front:1 national-id front:3 back:4"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.rule);
    start({row.rule});
    shots = 0;
    registerClient(row.client);
    launchToUpload();
    arrive("ZVKYCCameraViewController");
    const std::weak_ptr<ZVKYCCameraViewController> first = step<ZVKYCCameraViewController>();
    const auto shootAll = [&] {
      for (int i = 0; i < (row.client == "bare" ? 2 : 1); i++)
        shoot(jpeg(++shots));
    };
    shootAll();
    EXPECT_TRUE(time.waitUntil([&] { return first.lock()->isErrorShown; }));

    const auto expectError = [&](bool shown) {
      const auto camera = step<ZVKYCCameraViewController>();
      ASSERT_EQ(camera, first.lock()) << "the same screen, with its front side";
      EXPECT_EQ(camera->errorView.lock()->alpha(), shown);
      EXPECT_EQ(camera->cardView.lock()->alpha(), !shown);
      EXPECT_EQ(camera->cameraView.lock()->layer()->sublayers()[0]->opacity(), !shown);
      EXPECT_EQ(bottomTitle(), localized(shown ? "retakePhoto" : "takePhoto"));
    };
    time.advance(2);
    expectError(true);
    EXPECT_EQ(step<ZVKYCCameraViewController>()->cardImageView.lock()->alpha(), 0);
    tapBottom(); // the first tap only clears the panel
    expectError(false);
    shootAll();
    arrive("ZVVerifiedViewController");
    EXPECT_EQ(stored(), row.stored);
    tapBottom();
  }
}

} // namespace
} // namespace zuvi
