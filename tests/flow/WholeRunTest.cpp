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

  sandbox::Arrivals arrived() const { return *server_->arrivals(); }

  /// What is stored, in words.
  std::string stored() const {
    std::string text;
    for (const auto& identity : arrived().identities) {
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
  std::string lastIdentity() const { return arrived().identities.back().id; }

  std::unique_ptr<sandbox::Server> server_;
  int starts_ = 0;
};

TEST_F(WholeRunTest, TakeEachMerchantsRoad) {
  const std::string begin = "start(0) recorder(0) review(-1) upload(-1) ";
  const struct {
    std::string client, pick, steps, stored;
  } rows[] = {
      {"none", "", "verified(-1) ", "film"},
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
    registerClient(row.client);
    launch();
    EXPECT_EQ(walk(row.pick), begin + row.steps) << row.client;
    EXPECT_EQ(stored(), row.stored) << row.client;
    EXPECT_TRUE(delegate->calls.empty());
    // Both ways to finish tell the same, once.
    tap((closes = !closes) ? "closeButtonTap" : "bottomButton");
    EXPECT_EQ(delegate->calls, std::vector<std::string>{"success " + lastIdentity()});
    EXPECT_FALSE(host->presentedViewController());
    for (const auto& request : server_->requests())
      EXPECT_LT(request.status, 300) << request.path << " " << request.message;
  }
}

TEST_F(WholeRunTest, CarriesMetadataAsItStands) {
  start();
  registerClient("none", Value::Dictionary{{"plan", "a \"b\"\r\nc é"},
                                           {"flag", true},
                                           {"count", 3},
                                           {"real", 2.5},
                                           {"tree", Value::Dictionary{{"k", Value::List{true}}}}});
  ZVKYC::instance().identityId = "host's own";
  launch();
  EXPECT_TRUE(shell().isOnlyFaceScan);
  tapBottom();
  record();
  tapBottom();
  arrive("ZVVerifiedViewController");
  tapBottom();
  EXPECT_EQ(stored(), "film count=3 flag=true plan=a \"b\"\r\nc é real=2.5 tree=[\"k\": [true]]");
  EXPECT_EQ(delegate->calls, std::vector<std::string>{"success host's own"});
  EXPECT_EQ(ZVKYCHelper::instance().tempIdentity, lastIdentity());
  EXPECT_FALSE(host->presentedViewController());
}

TEST_F(WholeRunTest, FallsBackWhenNoIdentityComes) {
  for (const std::string failure :
       {"drop", "cut", "nonjson", "empty", "truncate", "message=Too dark", "status=500",
        "json={\"id\":7}", "json=[]"}) {
    start({"identity:1:" + failure});
    registerClient("none");
    launchToUpload();
    arrive("ZVLiveCameraViewController");
    ASSERT_EQ(top(), "ZVLiveCameraViewController") << failure;
    EXPECT_EQ(shell().mainNC()->viewControllers().size(), 2U) << failure;
    EXPECT_FALSE(ZVKYCHelper::instance().tempIdentity) << failure;
    EXPECT_EQ(step<ZVLiveCameraViewController>()->startTimerLabel.lock()->text(), "5");
    record(); // the next take goes through
    tapBottom();
    arrive("ZVVerifiedViewController");
    EXPECT_TRUE(ZVKYCHelper::instance().tempIdentity);
    tapBottom();
    ZVKYCHelper::instance().tempIdentity = std::nullopt;
  }
}

TEST_F(WholeRunTest, FallsBackToTheFrontWhenADocumentFails) {
  const std::string again = "film national-id front:1 national-id front:3 back:4";
  const struct {
    std::string client, rule, stored;
  } rows[] = {
      {"only-required", "document:1:drop", "film passport front:2"},
      {"only-required", "document:1:message=Not sharp", "film passport front:2"},
      {"bare", "document:1:nonjson", "film national-id front:3 back:4"},
      {"bare", "photo:1:nonjson", again},
      {"bare", "photo:1:message=Not sharp", again},
      {"bare", "photo:1:json={\"fields\":{}}", again},
  };
  for (const auto& row : rows) {
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
    EXPECT_TRUE(time.waitUntil([&] { return first.lock()->isErrorShown; })) << row.rule;
    settle();

    const auto expectError = [&](bool shown) {
      const auto camera = step<ZVKYCCameraViewController>();
      EXPECT_EQ(camera, first.lock()) << "the same screen, with its front side";
      EXPECT_EQ(camera->isErrorShown, shown) << row.rule;
      EXPECT_EQ(camera->errorView.lock()->alpha(), shown);
      EXPECT_EQ(camera->cardView.lock()->alpha(), !shown);
      EXPECT_EQ(camera->cameraView.lock()->layer()->sublayers()[0]->opacity(), !shown);
      EXPECT_EQ(camera->cardImageView.lock()->alpha(), 0) << "the outline stays away";
      EXPECT_EQ(bottomTitle(), localized(shown ? "retakePhoto" : "takePhoto")) << row.rule;
    };
    time.advance(2);
    expectError(true);
    const int stills = back->stills;
    tapBottom(); // the first tap only clears the panel
    EXPECT_EQ(back->stills, stills);
    expectError(false);
    shootAll();
    arrive("ZVVerifiedViewController");
    EXPECT_EQ(stored(), row.stored) << row.rule;
    tapBottom();
  }
}

} // namespace
} // namespace zuvi
