// Texts, fonts, colours and small views.

#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "platform/Foundation/PropertyList.h"
#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

using PresentationTest = KitTest;

void setLanguage(ZVLanguage language) {
  const auto merchant = std::make_shared<ZVKYCMerchant>();
  merchant->currentLanguage = language;
  ZVKYCHelper::instance().merchant = merchant;
}

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
    for (const auto& language : RawValues<ZVLanguage>::all)
      EXPECT_TRUE(stringValue(*texts.at(key).dictionary(), std::string(language.text)))
          << key << " " << language.text;
  }
}

} // namespace
} // namespace zuvi
