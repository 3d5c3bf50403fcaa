// The review of a document's picture, and the cut of a picture.

#include "kit/Helper/UIImage+Crop.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "testing/UIKit/Pixels.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

constexpr const char* svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="4"/>)";

class CardReviewTest : public FlowTest {
protected:
  /// Lays the review over the start screen.
  std::shared_ptr<ZVCardVerifyViewController> open(bool isRequired, int index,
                                                   const std::string& picture = svg) {
    registerMerchant(R"({"required":["passport"],"optional":["passport","national-id"]})", "es");
    launch();
    const auto screen = make<ZVCardVerifyViewController>();
    screen->isRequired = isRequired;
    screen->documentIndex = index;
    screen->imageData = Data(picture);
    screen->identityId = "identity-1";
    shell().mainNC()->pushViewController(screen, true);
    settle();
    EXPECT_EQ(top(), "ZVCardVerifyViewController");
    return screen;
  }
};

TEST_F(CardReviewTest, SendsADocumentWithoutBackSide) {
  const auto screen = open(true, 0);
  EXPECT_EQ(bottomTitle(), "continue");
  EXPECT_EQ(page(), 2);
  EXPECT_EQ(screen->imageView.lock()->image()->size(), (CGSize{8, 4}));
  const auto prompt = [&] { return screen->titleLabel.lock()->text().value_or("-"); };
  EXPECT_EQ(prompt(), localized("verifyTitle"));
  backend.answer(R"({"message":"Not sharp"})");
  tapBottom();
  EXPECT_EQ(title(), "Pasaporte.");
  arrive("ZVCardVerifyViewController");
  EXPECT_EQ(prompt(), localized("faceErrorTitle")) << "a failure is told here";
  EXPECT_THAT(backend.requests().back().body, testing::HasSubstr(svg));
  backend.answer(&FlowTest::succeed);
  tapBottom();
  arrive("ZVDocumentListViewController");
}

TEST_F(CardReviewTest, PhotographsTheBackNext) {
  const auto screen = open(false, 1);
  tapBottom();
  EXPECT_EQ(title(), "Documento de identidad.");
  EXPECT_EQ(page(), 3);
  tap("backButton");
  EXPECT_EQ(step<ZVCardVerifyViewController>(), screen);
  EXPECT_EQ(bottomTitle(), "continue") << "the frame is as at first";
  tapBottom();
  shoot(jpeg(1));
  arrive("ZVVerifiedViewController");
  const auto requests = backend.requests();
  EXPECT_THAT(requests.end()[-2].body, testing::HasSubstr(svg));
  EXPECT_THAT(requests.back().body, testing::HasSubstr(jpeg(1)));
}

TEST_F(CardReviewTest, BearsWhatItCannotShow) {
  const auto screen = open(true, 7, "no picture");
  EXPECT_FALSE(screen->imageView.lock()->image());
  tapBottom();
  EXPECT_EQ(step<ZVCardVerifyViewController>(), screen) << "there is no such document";
  tap("retakeButtonTap");
  EXPECT_EQ(top(), "ZVMainViewController");
}

TEST_F(CardReviewTest, CutsFromTheTopLeftWhateverTheOrigin) {
  // Two rows: red and green, blue and white
  const Data pixels(std::string("\xff\0\0\0\xff\0\0\0\xff\xff\xff\xff", 12));
  const auto image =
      UIImage::fromCGImage(CGImage::fromPixels(pixels, 2, 2, 6, CGImage::Format::RGB));
  const auto cut = crop(*image, {1, 1, 3, 1});
  ASSERT_TRUE(cut);
  const double scale = UIScreen::main().scale();
  const test::Pixels seen(cut->pixels(cut->size(), scale), scale);
  EXPECT_TRUE(seen.at(0.2, 0).isNear(test::red)) << seen.at(0.2, 0);
  EXPECT_TRUE(seen.at(1.7, 0).isNear(test::green)) << seen.at(1.7, 0);
  EXPECT_EQ(seen.at(2.5, 0).alpha, 0);
  for (const double width : {0.0, 1e9})
    EXPECT_FALSE(crop(*image, {0, 0, width, 5}));
}

} // namespace
} // namespace zuvi
