// The upload screen while its request runs, and the ways out of the flow meanwhile.

#include "kit/Helper/ZVLocalization.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

class UploadTest : public FlowTest {
protected:
  void SetUp() override {
    registerMerchant(R"({"required":["national-id"],"optional":["passport"]})");
    openRecorder();
    record();
  }
  void uploadFilm() {
    before_ = backend.requests().size();
    backend.hold();
    tapBottom();
    expectRequest();
  }
  void expectRequest() {
    ASSERT_EQ(top(), "ZVUploadViewController");
    EXPECT_TRUE(time.waitUntil([this] { return backend.requests().size() > before_; }));
    left_ = shell().mainNC()->topViewController();
  }
  /// The request under way reaches its answer, which finds its screen gone.
  void answerLate() {
    const auto before = backend.requests().size();
    EXPECT_FALSE(left_.expired()) << "the request holds it";
    backend.release();
    EXPECT_TRUE(time.waitUntil([this] { return left_.expired(); }));
    settle();
    EXPECT_EQ(backend.requests().size(), before) << "no second request";
  }
  std::size_t depth() { return shell().mainNC()->viewControllers().size(); }

  std::weak_ptr<UIViewController> left_;
  std::size_t before_ = 0;
};

TEST_F(UploadTest, DropsWhatComesAfterItsFilmWasLeft) {
  for (const std::string way : {"retakeButton", "backButton", "closeButtonTap"}) {
    uploadFilm();
    tap(way);
    if (way == "closeButtonTap") {
      tap("cancelButton");
      EXPECT_EQ(delegate->calls, std::vector<std::string>{"cancelled"});
    } else { // the first leads past the review
      EXPECT_EQ(depth(), way == "retakeButton" ? 2U : 3U);
    }
    const auto screen = top();
    answerLate();
    EXPECT_EQ(top(), screen) << way;
    EXPECT_FALSE(ZVKYCHelper::instance().tempIdentity);
    if (way == "retakeButton") record();
  }
  EXPECT_EQ(delegate->calls.size(), 1U);
}

TEST_F(UploadTest, DropsWhatComesAfterItsDocumentWasLeft) {
  tapBottom();
  arrive("ZVKYCCameraViewController");
  shoot(jpeg(1));
  for (const std::string side : {"POST", "PUT"}) { // the front's request, the back's
    before_ = backend.requests().size() + (side == "PUT");
    backend.hold(side);
    shoot(jpeg(2));
    expectRequest();
    tap(side == "POST" ? "retakeButton" : "backButton");
    const int left = page();
    EXPECT_EQ(left, side == "POST" ? 2 : 3) << "the front's camera again, or the back's";
    EXPECT_FALSE(step<ZVKYCCameraViewController>()->isErrorShown);
    answerLate();
    EXPECT_EQ(page(), left);
    if (side == "POST") shoot(jpeg(3));
  }
  shoot(jpeg(4)); // and goes on from there
  arrive("ZVDocumentListViewController");
}

TEST_F(UploadTest, GoesOnUnderTheCancelAlert) {
  uploadFilm();
  tap("closeButtonTap");
  backend.release();
  arrive("ZVKYCCameraViewController");
  EXPECT_TRUE(shell().presentedViewController());
  tap("continueButton");
  EXPECT_FALSE(shell().presentedViewController());
  EXPECT_TRUE(delegate->calls.empty());
  shoot(jpeg(1));
  EXPECT_EQ(page(), 3) << "the flow works on";

  tap("closeButtonTap");
  tap("cancelButton");
  EXPECT_FALSE(host->presentedViewController());
  EXPECT_EQ(delegate->calls, std::vector<std::string>{"cancelled"});
}

TEST_F(UploadTest, EachScreenTakesTheMerchantOfItsOwnTime) {
  backend.hold("POST");
  tapBottom();
  registerMerchant(R"({"required":["passport"],"optional":[]})"); // while the film is on its way
  backend.release();
  arrive("ZVKYCCameraViewController");
  EXPECT_EQ(documentOf(title()), "passport");
  registerMerchant("{}"); // no documents any more: there is nothing to send
  shoot(jpeg(1));
  arrive("ZVVerifiedViewController");
  for (const auto& request : backend.requests())
    EXPECT_EQ(request.path.find("documents"), std::string::npos) << request.path;
  tapBottom();
  EXPECT_EQ(delegate->calls, std::vector<std::string>{"success identity-1"});
}

TEST_F(UploadTest, OffersNoListThatHasNoRow) {
  for (const std::string upload : {"film", "document"}) {
    SCOPED_TRACE(upload);
    registerMerchant(upload == "film" ? R"({"optional":["passport"]})"
                                      : R"({"required":["passport"],"optional":["passport"]})");
    if (upload == "document") {
      launchToUpload();
      arrive("ZVKYCCameraViewController");
    }
    backend.hold("POST");
    upload == "film" ? tapBottom() : shoot(jpeg(1));
    registerMerchant(R"({"required":["passport"]})"); // meanwhile another, without a list
    backend.release();
    arrive("ZVVerifiedViewController");
    tapBottom();
  }
  EXPECT_EQ(delegate->calls, std::vector<std::string>(2, "success identity-1"));
}

} // namespace
} // namespace zuvi
