#include "kit/Helper/ZVLocalization.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

/// Cameras that are missing, go, and come.
class CameraLossTest : public FlowTest {
protected:
  void open() {
    registerMerchant(R"({"required":["passport"],"optional":[]})", "fr");
    openRecorder();
  }
  static void changeDevices() {
    NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange);
  }
};

TEST_F(CameraLossTest, RecorderWaitsForTheCameraThatWasPulledOut) {
  open();
  for (const double second : {2.0, 7.0, 11.5}) { // counting, filming, just before its end
    SCOPED_TRACE(second);
    const auto films = front->films.size();
    EXPECT_EQ(notice(), "");
    tap("recordButton");
    time.advance(second - 0.5);
    cameras->front = nullptr;
    front->unplug();
    settle();
    EXPECT_EQ(notice(), localized("cameraGone"));
    EXPECT_EQ(findView("recordLabel", false)->alpha(), 1);
    EXPECT_EQ(filesLeft(), 0U);
    time.advance(30);
    ASSERT_EQ(top(), "ZVLiveCameraViewController");
    EXPECT_EQ(front->films.size(), films + (second > 5 ? 1 : 0));
    EXPECT_FALSE(front->isRunning());
    cameras->front = front;
    if (second == 2) changeDevices();
    time.advance(second == 2 ? 0.1 : 2.5); // one that is not announced is found as well
    EXPECT_TRUE(front->isRunning());
    EXPECT_EQ(notice(), "");
  }
  record();
  EXPECT_EQ(step<ZVLivenessVerifyViewController>()->video.value().string(), film);

  // It goes while the review lies over the recorder.
  front->unplug();
  time.advance(30);
  EXPECT_FALSE(front->isRunning()) << "nobody looks";
  tap("retakeButton");
  time.advance(0.5);
  EXPECT_TRUE(front->isRunning());

  // Another one takes its place before the news of the first arrives.
  tap("recordButton");
  time.advance(7);
  const auto other = cameras->front = make<ScriptedCamera>();
  other->id = "another";
  other->film = Data(film);
  front->unplug();
  changeDevices();
  time.advance(20);
  ASSERT_EQ(top(), "ZVLiveCameraViewController") << "half a film goes nowhere";
  EXPECT_TRUE(other->isRunning());
  record();
}

TEST_F(CameraLossTest, RefusalSaysNothing) {
  for (const bool atFirst : {true, false}) { // nobody has asked for the camera yet, or just now
    using Status = AVAuthorizationStatus;
    cameras->status = atFirst ? Status::Denied : Status::NotDetermined;
    front->opens = !atFirst;
    open();
    cameras->status = Status::Denied;
    front->refuse();
    time.advance(10);
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(front->starts, !atFirst) << "nobody tries again";
    leave();
  }
}

TEST_F(CameraLossTest, CameraThatComesLateIsTakenUp) {
  cameras->front = cameras->back = nullptr;
  open();
  EXPECT_EQ(notice(), "") << "it may be on its way";
  time.advance(2.5);
  EXPECT_EQ(notice(), localized("cameraMissing"));
  cameras->front = front;
  changeDevices();
  settle();
  EXPECT_TRUE(front->isRunning());
  EXPECT_EQ(notice(), "");
  record();
  tapBottom();
  arrive("ZVKYCCameraViewController");
  time.advance(2.5);
  EXPECT_EQ(notice(), localized("cameraMissing"));
  back->fails = true; // it is there and does not work yet
  cameras->back = back;
  changeDevices();
  time.advance(5);
  EXPECT_EQ(notice(), localized("cameraFails"));
  back->fails = false;
  time.advance(2.5);
  EXPECT_EQ(notice(), "");
  back->fails = true; // pulled out while a picture is on its way, and listed all the same
  back->answersStills = false;
  tapBottom();
  back->unplug();
  time.advance(10);
  EXPECT_EQ(notice(), localized("cameraGone"));
  back->fails = false;
  back->answersStills = true;
  time.advance(2.5);
  EXPECT_EQ(notice(), "");
  shoot(jpeg(0));
  arrive("ZVVerifiedViewController");
}

TEST_F(CameraLossTest, CameraThatComesDuringATakeServesTheNext) {
  cameras->front = nullptr;
  open();
  tap("recordButton");
  time.advance(6); // the count-down is over, and nothing is filmed
  cameras->front = front;
  changeDevices();
  time.advance(8);
  EXPECT_EQ(top(), "ZVLiveCameraViewController");
  record();
}

} // namespace
} // namespace zuvi
