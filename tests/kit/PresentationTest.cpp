// Texts, fonts, colours and small views.

#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/ZVKYCButton.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVNibs.h"
#include "platform/Foundation/PropertyList.h"
#include "testing/kit/KitTest.h"

namespace zuvi {
namespace {

class PresentationTest : public KitTest {
protected:
  static void setLanguage(ZVLanguage language) {
    const auto merchant = std::make_shared<ZVKYCMerchant>();
    merchant->currentLanguage = language;
    ZVKYCHelper::instance().merchant = merchant;
  }
};

TEST_F(PresentationTest, FallsBackToEnglishThenToTheKey) {
  const auto file = folder.write("texts.plist", R"(<?xml version="1.0"?><plist><dict>
    <key>both</key><dict><key>en</key><string>E</string><key>es</key><string>S</string></dict>
    <key>empty</key><dict><key>en</key><string>E</string><key>es</key><string/></dict>
    <key>french</key><dict><key>fr</key><string>F</string></dict>
    <key>blank</key><dict><key>en</key><string/><key>es</key><string/></dict>
    <key>mixed</key><dict><key>en</key><string>E</string><key>es</key><true/></dict>
    <key>text</key><string>E</string></dict></plist>)");
  const ZVLocalizationManager texts(file);
  setLanguage(ZVLanguage::spanish);
  for (const auto& [key, text] : {std::pair("both", "S"),
                                  {"empty", "E"},
                                  {"french", "french"},
                                  {"blank", "blank"},
                                  {"mixed", "mixed"},
                                  {"text", "text"},
                                  {"", ""}})
    EXPECT_EQ(texts.translation(key), text) << key;
  setLanguage(ZVLanguage::french);
  EXPECT_EQ(texts.translation("french"), "F") << "looked up anew each time";
  EXPECT_EQ(texts.translation("both"), "E");
  for (const auto& path : {std::optional<std::string>(), std::optional(folder.path("none")),
                           std::optional(folder.write("list.plist", "<plist><array/></plist>"))})
    EXPECT_EQ(ZVLocalizationManager(path).translation("both"), "both");
}

TEST_F(PresentationTest, TakesTheHostsTextsAndLanguageFirst) {
  const auto file = [this](const std::string& name, const std::string& entries) {
    return folder.write(name, "<?xml version=\"1.0\"?><plist><dict>" + entries + "</dict></plist>");
  };
  ZVKYC& kit = ZVKYC::instance();
  const std::string kits = localized("cancel"); // before there is a file
  kit.textsFile = file("a.plist", R"(<key>login</key><dict><key>de</key><string>Anmelden</string>
    <key>en</key><string>Sign in</string></dict><key>done</key><string>no texts</string>
    <key>retake</key><dict><key>de</key><string>größer</string></dict>
    <key>lgoin</key><dict><key>de</key><string>x</string></dict>)");
  testing::internal::CaptureStderr();
  EXPECT_EQ(localized("login"), "Sign in");
  EXPECT_EQ(localized("cancel"), kits);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZuviSDK: " + kit.textsFile + ": the kit has no text lgoin.\n");
  setLanguage(ZVLanguage::spanish);
  EXPECT_EQ(localized("login"), "Iniciar sesión") << "the kit's own is nearer than English";
  kit.language = "de";
  EXPECT_EQ(localized("login"), "Anmelden");
  EXPECT_EQ(localized("done"), "Done") << "its entry is none, and nobody has German";
  EXPECT_EQ(uppercased(localized("retake")), "GRÖSSER");
  EXPECT_EQ(*ZVKYCButton().title, "Anmelden");
  kit.textsFile = folder.path("none");
  testing::internal::CaptureStderr();
  EXPECT_EQ(localized("login"), "Login");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZuviSDK: " + kit.textsFile + " has no texts, or can't be read.\n");
}

TEST_F(PresentationTest, DownloadsPictures) {
  const std::string picture = R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="4"/>)";
  backend.answer(picture);
  const std::pair<std::string, bool> rows[] = {
      {backend.url("/picture"), true},
      {"file://" + folder.write("picture.svg", picture), true},
      {"file://" + folder.write("text", "no picture"), false},
      {"file://" + folder.path("none"), false},
      {"ftp://host/", false}};
  for (const auto& row : rows) {
    std::optional<std::shared_ptr<const UIImage>> image;
    downloadImage(URL::fromString(row.first).value(), [&](auto given) { image = given; });
    ASSERT_TRUE(time.waitUntil([&] { return image.has_value(); })) << row.first;
    EXPECT_EQ(*image != nullptr, row.second) << row.first;
  }
  EXPECT_THAT(printed, testing::Each(testing::StartsWith("Unable to load data: ")));
  EXPECT_EQ(printed.size(), 2U);
}

TEST_F(PresentationTest, HasEveryTextInEveryLanguage) {
  const auto list = propertyListFromFile(zvKitBundle()->path("Localization", "plist").value());
  for (const auto& [key, texts] : *list.value().dictionary())
    for (const auto& language : RawValues<ZVLanguage>::all)
      EXPECT_TRUE(stringValue(*texts.dictionary(), std::string(language.text)))
          << key << " " << language.text;
}

TEST_F(PresentationTest, NibsNameOnlyTextsAndColoursThatThereAre) {
  int nibs = 0;
  for (const auto& file : std::filesystem::directory_iterator(zvNibBundle()->folder())) {
    if (file.path().extension() != ".xml") continue;
    nibs++;
    for (const auto& language : RawValues<ZVLanguage>::all) {
      setLanguage(language.value);
      // Its views are made before it is found that nobody declares their outlets.
      const auto [view, error] = UINib(file.path().stem(), zvNibBundle()).instantiate({});
      EXPECT_TRUE(view || error.find(": the owner has no ") != error.npos) << error;
    }
  }
  EXPECT_GE(nibs, 11);
}

TEST_F(PresentationTest, APaletteLeavesOutWhatIsNoColour) {
  const auto list = propertyListFromFile(zvKitBundle()->path("Palette", "plist").value());
  for (const bool dark : {true, false}) {
    setDark(dark);
    for (const auto& [name, text] : *list.value().dictionary())
      EXPECT_TRUE(Palette::shared().color(name)) << name << dark;
  }
  const Palette palette(folder.write("p.plist", R"(<plist><dict>
    <key>ink</key><string>#01020380</string><key>red</key><string>red</string>
    <key>flag</key><true/></dict></plist>)"));
  EXPECT_EQ(palette.color("ink"), UIColor::bytes(1, 2, 3, 128 / 255.0));
  for (const char* name : {"red", "flag", "none", ""})
    EXPECT_FALSE(palette.color(name)) << name;
  EXPECT_FALSE(Palette(std::nullopt).color("ink"));
}

} // namespace
} // namespace zuvi
