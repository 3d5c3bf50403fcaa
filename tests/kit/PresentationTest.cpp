// Texts, fonts, colours and small views.

#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVGradientView.h"
#include "kit/Helper/ZVLocalization.h"
#include "platform/Foundation/PropertyList.h"
#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

class PresentationTest : public KitTest {
protected:
  static void setLanguage(ZVLanguage language) {
    auto merchant = std::make_shared<ZVKYCMerchant>();
    merchant->currentLanguage = language;
    ZVKYCHelper::instance().merchant = merchant;
  }
};

TEST_F(PresentationTest, FallsBackToEnglishThenToTheKey) {
  const auto file = folder.write("texts.plist", R"(<?xml version="1.0"?><plist><dict>
    <key>both</key><dict><key>en</key><string>E</string><key>es</key><string>S</string></dict>
    <key>english</key><dict><key>en</key><string>E</string></dict>
    <key>empty</key><dict><key>en</key><string>E</string><key>es</key><string/></dict>
    <key>french</key><dict><key>fr</key><string>F</string></dict>
    <key>blank</key><dict><key>en</key><string/><key>es</key><string/></dict>
    <key>mixed</key><dict><key>en</key><string>E</string><key>es</key><true/></dict>
    <key>text</key><string>E</string></dict></plist>)");
  const ZVLocalizationManager texts(file);
  setLanguage(ZVLanguage::spanish);
  const std::pair<const char*, const char*> rows[] = {
      {"both", "S"},      {"english", "E"},   {"empty", "E"},   {"french", "french"},
      {"blank", "blank"}, {"mixed", "mixed"}, {"text", "text"}, {"", ""}};
  for (const auto& [key, text] : rows)
    EXPECT_EQ(texts.translation(key), text) << key;
  setLanguage(ZVLanguage::french);
  EXPECT_EQ(texts.translation("french"), "F") << "looked up anew each time";
  for (const auto& path : {std::optional<std::string>(), std::optional(folder.path("none")),
                           std::optional(folder.write("list.plist", "<plist><array/></plist>")),
                           std::optional(folder.write("damaged.plist", "<plist><dict><key>both"))})
    EXPECT_EQ(ZVLocalizationManager(path).translation("both"), "both");
}

TEST_F(PresentationTest, HasEveryTextInEveryLanguage) {
  std::istringstream keys(
      "login nationalId drivingLicense passport proofOfResidency startStepTitle startStep1 "
      "startStep2 startInfo startTitle startButton documentsTitle sides verifyTitle uploadText "
      "retake livenessTitle continue livenessConfirmText verifiedTitle done cancelTitle cancel "
      "documentDescription takePhoto retakePhoto faceErrorTitle frontSide backSide "
      "documentWarning1 documentWarning2 record livenessCameraTitle");
  const auto list = propertyListFromFile(zvKitBundle()->path("Localization", "plist").value());
  const Value::Dictionary& texts = *list.value().dictionary();
  for (std::string key; keys >> key;) {
    ASSERT_TRUE(texts.contains(key)) << key;
    for (const auto& language : RawValues<ZVLanguage>::all) {
      const auto text = stringValue(*texts.at(key).dictionary(), std::string(language.text));
      EXPECT_FALSE(text.value_or("").empty()) << key << " " << language.text;
      setLanguage(language.value);
      EXPECT_EQ(localized(key), text) << key;
    }
  }
}

TEST_F(PresentationTest, ReadsHexColours) {
  for (const char* red : {"#FF0000", "FF0000", "  #ff0000\n", "0xff0000", "11FF0000", "ff0000 zz"})
    EXPECT_EQ(colorFromHex(red), UIColor::bytes(255, 0, 0)) << red;
  for (const char* black : {"", "#", "##FF0000", "zz"})
    EXPECT_EQ(colorFromHex(black, 0.25), UIColor::black().withAlpha(0.25)) << black;
  EXPECT_EQ(colorFromHex("1g"), UIColor::bytes(0, 0, 1));
}

TEST_F(PresentationTest, AGradientKeepsOneLayerAsLargeAsItsView) {
  const auto view = make<ZVGradientView>();
  view->addGradient({"#FF0000", "0000FF"});
  view->addGradient({"00FF00"});
  EXPECT_EQ(view->layer()->sublayers().size(), 1U);
  view->setFrame({5, 5, 40, 30});
  view->layoutIfNeeded();
  EXPECT_EQ(view->gradient->frame(), (CGRect{0, 0, 40, 30}));
}

TEST_F(PresentationTest, DownloadsPictures) {
  const std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="4"/>)";
  backend.answer([&](const test::Request& request) {
    if (request.path == "/drop") return test::Reply{.mode = test::Reply::Mode::DropConnection};
    return test::Reply{200, {}, request.path == "/picture" ? svg : "no picture"};
  });
  const std::tuple<std::string, bool, std::size_t> rows[] = {
      // whether it comes, lines printed
      {backend.url("/picture"), true, 0},
      {backend.url("/text"), false, 0},
      {backend.url("/drop"), false, 1},
      {"file://" + folder.path("none"), false, 1}};
  for (const auto& [address, comes, lines] : rows) {
    printed.clear();
    std::vector<std::shared_ptr<const UIImage>> answers;
    downloadImage(URL::fromString(address).value(),
                  [&](const auto& image) { answers.push_back(image); });
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(time.waitUntil([&] { return !answers.empty(); }));
    time.settle();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0] != nullptr, comes) << address;
    EXPECT_EQ(printed.size(), lines) << address;
  }
}

} // namespace
} // namespace zuvi
