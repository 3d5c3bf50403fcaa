#include "kit/Helper/ZVLocalization.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class DocumentCameraTest : public FlowTest {
protected:
  /// Lays a camera for a required document over the start screen.
  void open(const std::string& document, ZVKYCCameraType side = ZVKYCCameraType::ineFront,
            const std::optional<std::string>& identity = "identity-1") {
    registerMerchant(R"({"required":[")" + document + R"("]})");
    launch();
    const auto screen = make<ZVKYCCameraViewController>();
    screen->type = side;
    screen->objectId = identity;
    camera = screen;
    shell().mainNC()->pushViewController(screen, true);
    settle();
    ASSERT_EQ(top(), "ZVKYCCameraViewController");
  }
  bool stays() { return step<ZVKYCCameraViewController>() == camera.lock(); }

  std::weak_ptr<ZVKYCCameraViewController> camera;
};

TEST_F(DocumentCameraTest, StaysWhenThereIsNothingToHandOn) {
  using Side = ZVKYCCameraType;
  const struct {
    const char* document;
    Side side;
    std::optional<std::string> identity;
    std::optional<Data> still;
  } rows[] = {{"passport", Side::ineFront, std::nullopt, Data(jpeg(1))},
              {"national-id", Side::ineBack, "i", Data(jpeg(1))}, // a back without a front
              {"passport", Side::ineFront, "i", std::nullopt},
              {"passport", Side::ineFront, "i", Data()}};
  for (const auto& [document, side, identity, still] : rows) {
    open(document, side, identity);
    back->still = still;
    tapBottom();
    EXPECT_TRUE(stays());
    leave();
  }
  EXPECT_EQ(back->stills, 4);
}

TEST_F(DocumentCameraTest, TakesTheFirstOfTwoQuickPictures) {
  open("national-id");
  back->answersStills = false;
  tapBottom();
  tapBottom();
  EXPECT_EQ(back->stills, 2);
  back->answerStills();
  time.advance(0);
  EXPECT_EQ(surface.spoken, localized("pictureTaken"));
  settle();
  EXPECT_EQ(shell().mainNC()->viewControllers().size(), 3U);
  EXPECT_EQ(back->starts - back->stops, 1) << "only the one on show runs";
}

TEST_F(DocumentCameraTest, DoesWithoutACamera) {
  back->opens = false;
  open("passport");
  shell().bottomButton.lock()->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_EQ(camera.lock()->snapshotEffectView.lock()->layer()->presentedOpacity(), 1);
  settle();
  EXPECT_TRUE(stays());
  camera.lock()->showError(true); // there is no preview to hide
  EXPECT_FALSE(time.waitUntil([this] { return backend.events().size() > 1; }, 0.2))
      << "the launch; no picture was begun";
}

TEST_F(DocumentCameraTest, AsksForPermission) {
  using Status = AVAuthorizationStatus;
  for (const Status status : {Status::Denied, Status::Restricted}) {
    cameras->status = status;
    open("passport");
    tapBottom();
    EXPECT_EQ(std::exchange(opened, {}),
              std::vector<std::string>{UIApplicationOpenSettingsURLString});
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(stays());
    leave();
  }
  EXPECT_EQ(cameras->requests + back->stills, 0);
  for (const bool grants : {true, false}) {
    cameras->status = Status::NotDetermined;
    cameras->grants = grants;
    cameras->answersRequests = false;
    open("passport");
    EXPECT_TRUE(camera.lock()->cardView.lock()->isHidden());
    time.advance(3);
    cameras->answerRequests();
    settle();
    EXPECT_FALSE(camera.lock()->cardView.lock()->isHidden());
    EXPECT_EQ(camera.lock()->cardImageView.lock()->alpha(), 1) << "two seconds from now";
    UIApplication::shared().setURLOpener([](const URL&) { return false; });
    backend.hold();
    shoot(jpeg(1));
    EXPECT_EQ(top(), grants ? "ZVUploadViewController" : "ZVKYCCameraViewController");
    EXPECT_EQ(notice(), grants ? "" : localized("cameraForbidden")) << "no settings open";
    leave();
    backend.release();
  }
  // The answer finds nobody.
  cameras->status = Status::NotDetermined;
  open("passport");
  tap("backButton");
  EXPECT_TRUE(camera.expired());
  cameras->answerRequests();
}

} // namespace
} // namespace zuvi
