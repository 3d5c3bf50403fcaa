// Which event each tap sends, and the shorter road of a host's own identity.

#include <ZuviSDK/LiveChat.h>
#include "sandbox/core/api/Tracking.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class StepsTest : public FlowTest {};

TEST_F(StepsTest, NoWayLeadsBackIntoTheFilmOfAHostsOwnIdentity) {
  registerMerchant(R"({"required":["passport"]})");
  ZVKYC::instance().identityId = "own";
  launchToUpload();
  arrive("ZVKYCCameraViewController");
  EXPECT_FALSE(isShown(*findView("backButton", false)));
  EXPECT_EQ(page(), 0) << "its own steps are all that is left";
  shoot(jpeg(1));
  arrive("ZVVerifiedViewController");
  settle();
  tapBottom();
  EXPECT_EQ(delegate->calls.back(), "success own");
  EXPECT_THAT(printed, testing::Not(testing::Contains(testing::HasSubstr(".xml:"))));
}

TEST_F(StepsTest, EachTapTellsItsEvent) {
  registerMerchant(
      R"({"required":["national-id","driving-license","passport","proof-of-residency"]})");
  const std::pair<const char*, const char*> rows[] = {
      {"ZVKYCButton", "mobilesdk_button_initscreen_clicked"},
      {"closeButtonTap", "cancel_button_clicked"},
      {"continueButton", "cancel_confirm"},
      {"infoButtonTap", ""},
      {"bottomButton", ""},
      {"recordButton", "liveness_record_clicked"},
      {"retakeButton", "liveness_upload_cancel_retake"},
      {"recordButton", "liveness_record_clicked"},
      {"bottomButton", "liveness_upload_confirm_clicked"},
      {"bottomButton", "nationalid_front_takephoto_clicked"},
      {"bottomButton", "nationalid_back_takephoto_clicked"},
      {"bottomButton", "driverlicense_front_takephoto_clicked"},
      {"bottomButton", "driverlicense_back_takephoto_clicked"},
      {"bottomButton", "passport_takephoto_clicked"},
      {"bottomButton", "proofofresidency_takephoto_clicked"},
      {"bottomButton", "finish_button_clicked"},
      {"ZVKYCButton", "mobilesdk_button_initscreen_clicked"},
      {"closeButtonTap", "cancel_button_clicked"},
      {"cancelButton", "cancel_canceled"},
  };
  std::size_t sent = 0;
  for (const auto& [control, event] : rows) {
    SCOPED_TRACE(control + std::string(" ") + event);
    tap(control);
    LiveChat::dismissChat(false);
    if (control == std::string("recordButton")) time.advance(12);
    if (*event) sent++;
    ASSERT_TRUE(time.waitUntil([&] { return backend.events().size() == sent; }));
    const auto last = sandbox::readTrackedEvent(backend.events().back().query);
    EXPECT_TRUE(!*event || last->name == std::string("zuvi_") + event) << last->name;
    EXPECT_TRUE(time.waitUntil([this] { return top() != "ZVUploadViewController"; }));
    settle();
  }
  EXPECT_EQ(delegate->calls, (std::vector<std::string>{"success identity-1", "cancelled"}));
}

} // namespace
} // namespace zuvi
