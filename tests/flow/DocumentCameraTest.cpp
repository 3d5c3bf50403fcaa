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
  open("passport", ZVKYCCameraType::ineFront, std::nullopt); // no identity to send it to
  shoot(jpeg(1));
  EXPECT_TRUE(stays());
  EXPECT_EQ(back->stills, 1);
  leave();
  open("national-id", ZVKYCCameraType::ineBack); // a back without a front
  shoot(jpeg(1));
  EXPECT_TRUE(stays());
  leave();
  open("passport"); // no picture, or an empty one
  back->still = std::nullopt;
  tapBottom();
  shoot("");
  EXPECT_TRUE(stays());
  back->unplug();
  shoot(jpeg(1));
  EXPECT_TRUE(stays());
}

TEST_F(DocumentCameraTest, TakesTheFirstOfTwoQuickPictures) {
  open("national-id");
  back->answersStills = false;
  tapBottom();
  tapBottom();
  EXPECT_EQ(back->stills, 2);
  back->answerStills();
  settle();
  EXPECT_EQ(shell().mainNC()->viewControllers().size(), 3U);
  EXPECT_EQ(back->starts - back->stops, 1) << "only the one on show runs";
  // Left while the still is on its way: nothing is pushed.
  tap("backButton");
  tapBottom();
  const auto late = back->stills;
  tap("backButton");
  back->answerStills();
  settle();
  EXPECT_EQ(back->stills, late);
  EXPECT_EQ(top(), "ZVMainViewController");
}

TEST_F(DocumentCameraTest, DoesWithoutACamera) {
  for (const bool missing : {true, false}) {
    cameras->back = missing ? nullptr : back;
    back->opens = missing;
    open("passport");
    shell().bottomButton.lock()->sendActions(UIControlEvent::TouchUpInside);
    EXPECT_EQ(camera.lock()->snapshotEffectView.lock()->layer()->presentedOpacity(), 1);
    settle();
    EXPECT_TRUE(stays());
    camera.lock()->showError(true); // there is no preview to hide
    leave();
  }
  EXPECT_EQ(back->stills, 0);
  EXPECT_FALSE(time.waitUntil([this] { return backend.events().size() > 2; }, 0.2))
      << "the two launches; no picture was begun";
}

TEST_F(DocumentCameraTest, AsksForPermission) {
  using Status = AVAuthorizationStatus;
  for (const Status status : {Status::Denied, Status::Restricted}) {
    cameras->status = status;
    opened.clear();
    open("passport");
    tapBottom();
    EXPECT_EQ(opened, std::vector<std::string>{UIApplicationOpenSettingsURLString});
    EXPECT_TRUE(stays());
    leave();
  }
  EXPECT_EQ(cameras->requests + back->stills, 0);
  for (const bool grants : {true, false}) {
    cameras->status = Status::NotDetermined;
    cameras->grants = grants;
    cameras->answersRequests = false;
    opened.clear();
    open("passport");
    EXPECT_TRUE(camera.lock()->cardView.lock()->isHidden());
    time.advance(3);
    cameras->answerRequests();
    settle();
    EXPECT_FALSE(camera.lock()->cardView.lock()->isHidden());
    EXPECT_EQ(camera.lock()->cardImageView.lock()->alpha(), 1) << "two seconds from now";
    backend.hold();
    shoot(jpeg(1));
    EXPECT_EQ(top(), grants ? "ZVUploadViewController" : "ZVKYCCameraViewController");
    EXPECT_EQ(opened.size(), grants ? 0U : 1U);
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
