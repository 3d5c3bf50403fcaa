// Texts, fonts, colours and small views.

#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVField.h"
#include "kit/Helper/ZVGradientView.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVPointView.h"
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
  for (const auto& [key, text] : std::map<std::string, std::string>{{"both", "S"},
                                                                    {"english", "E"},
                                                                    {"empty", "E"},
                                                                    {"french", "french"},
                                                                    {"blank", "blank"},
                                                                    {"mixed", "mixed"},
                                                                    {"text", "text"},
                                                                    {"absent", "absent"},
                                                                    {"", ""}})
    EXPECT_EQ(texts.translation(key), text) << key;
  setLanguage(ZVLanguage::french);
  EXPECT_EQ(texts.translation("french"), "F") << "looked up anew each time";
  for (const auto& path : {std::optional<std::string>(), std::optional(folder.path("none")),
                           std::optional(folder.write("list.plist", "<plist><array/></plist>")),
                           std::optional(folder.write("damaged.plist", "<plist><dict><key>both"))})
    EXPECT_EQ(ZVLocalizationManager(path).translation("both"), "both");
}

TEST_F(PresentationTest, HasEveryTextInEveryLanguage) {
  const std::vector<std::string> keys{"login",
                                      "nationalId",
                                      "drivingLicense",
                                      "passport",
                                      "proofOfResidency",
                                      "startStepTitle",
                                      "startStep1",
                                      "startStep2",
                                      "startInfo",
                                      "startTitle",
                                      "startButton",
                                      "documentsTitle",
                                      "sides",
                                      "verifyTitle",
                                      "uploadText",
                                      "retake",
                                      "livenessTitle",
                                      "continue",
                                      "livenessConfirmText",
                                      "verifiedTitle",
                                      "done",
                                      "cancelTitle",
                                      "cancel",
                                      "documentDescription",
                                      "takePhoto",
                                      "retakePhoto",
                                      "faceErrorTitle",
                                      "frontSide",
                                      "backSide",
                                      "documentWarning1",
                                      "documentWarning2",
                                      "record",
                                      "livenessCameraTitle"};
  const auto list = propertyListFromFile(zvKitBundle()->path("Localization", "plist").value());
  const Value::Dictionary& texts = *list.value().dictionary();
  EXPECT_EQ(keys.size(), 33U);
  for (const std::string& key : keys) {
    ASSERT_TRUE(texts.contains(key)) << key;
    for (const auto& language : RawValues<ZVLanguage>::all) {
      const auto text = stringValue(*texts.at(key).dictionary(), std::string(language.text));
      EXPECT_FALSE(text.value_or("").empty()) << key << " " << language.text;
      setLanguage(language.value);
      EXPECT_EQ(localized(key), text) << key;
    }
  }
}

TEST_F(PresentationTest, RegistersItsFonts) {
  registerZVFonts();
  registerZVFonts();
  for (const FontStyle style : {FontStyle::semiBold, FontStyle::bold, FontStyle::regular})
    EXPECT_EQ(zvSFProText(style, 13.5)->pointSize(), 13.5);
  EXPECT_EQ(zvSFProText(FontStyle::semiBold, 9)->name(), "SFProText-SemiBold");
  EXPECT_FALSE(UIFont::named("SFProText-Black", 12)) << "no other face stands in";
}

TEST_F(PresentationTest, ReadsHexColours) {
  const UIColor red = UIColor::bytes(255, 0, 0);
  for (const auto& [text, color] :
       std::vector<std::pair<std::string, UIColor>>{{"#FF0000", red},
                                                    {"FF0000", red},
                                                    {"  #ff0000\n", red},
                                                    {"0xff0000", red},
                                                    {"11FF0000", red},
                                                    {"ff0000 zz", red},
                                                    {"12", UIColor::bytes(0, 0, 0x12)},
                                                    {"1g", UIColor::bytes(0, 0, 1)},
                                                    {"", UIColor::black()},
                                                    {"#", UIColor::black()},
                                                    {"##FF0000", UIColor::black()},
                                                    {"zz", UIColor::black()}})
    EXPECT_EQ(colorFromHex(text), color) << text;
  EXPECT_EQ(colorFromHex("zz", 0.25), UIColor::black().withAlpha(0.25));
  EXPECT_EQ(colorFromHex("#0000ff", 0.5), UIColor::bytes(0, 0, 255, 0.5));
}

TEST_F(PresentationTest, MakesTheSmallViews) {
  const auto gradient = make<ZVGradientView>();
  gradient->layer()->addSublayer(std::make_shared<CALayer>());
  gradient->addGradient({});
  EXPECT_EQ(gradient->layer()->sublayers().size(), 1U);
  gradient->addGradient({"#FF0000", "0000FF"});
  gradient->addGradient({"00FF00"});
  ASSERT_EQ(gradient->layer()->sublayers().size(), 2U) << "the same layer, once";
  EXPECT_EQ(gradient->layer()->sublayers()[0], gradient->gradient);
  EXPECT_EQ(gradient->gradient->colors(), std::vector<CGColor>{CGColor::bytes(0, 255, 0)});
  gradient->setFrame({5, 5, 40, 30});
  gradient->layoutIfNeeded();
  EXPECT_EQ(gradient->gradient->frame(), (CGRect{0, 0, 40, 30}));

  const auto point = make<ZVPointView>();
  point->awakeFromNib();
  point->setFrame({3, 3, 30, 30});
  point->layoutIfNeeded();
  EXPECT_TRUE(point->clipsToBounds());
  EXPECT_EQ(point->layer()->cornerRadius(), 15);

  const auto field = make<ZVField>();
  EXPECT_EQ(field->textRect({1, 2, 100, 40}), (CGRect{11, 2, 80, 40}));
  EXPECT_EQ(field->editingRect({0, 0, 100, 40}), (CGRect{10, 0, 80, 40}));
}

TEST_F(PresentationTest, DownloadsPictures) {
  const std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="4"/>)";
  backend.answer([&](const test::Request& request) {
    if (request.path == "/drop") return test::Reply{.mode = test::Reply::Mode::DropConnection};
    return test::Reply{200, {}, request.path == "/picture" ? svg : "no picture"};
  });
  const struct {
    URL url;
    bool picture;
    int lines;
  } rows[] = {
      {URL::fromString(backend.url("/picture")).value(), true, 0},
      {URL::fromString(backend.url("/text")).value(), false, 0},
      {URL::fromString(backend.url("/drop")).value(), false, 1},
      {URL::fromFilePath(folder.write("a b.svg", svg)), true, 0},
      {URL::fromFilePath(folder.path("none")), false, 1},
  };
  for (const auto& row : rows) {
    printed.clear();
    std::vector<std::shared_ptr<const UIImage>> answers;
    downloadImage(row.url, [&](const auto& image) {
      EXPECT_TRUE(DispatchQueue::main().isCurrent());
      answers.push_back(image);
    });
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(time.waitUntil([&] { return !answers.empty(); }));
    time.settle();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0] != nullptr, row.picture) << row.url.absoluteString();
    ASSERT_EQ(printed.size(), static_cast<std::size_t>(row.lines)) << row.url.absoluteString();
    for (const std::string& line : printed)
      EXPECT_TRUE(line.starts_with("Unable to load data: ")) << line;
  }
}

} // namespace
} // namespace zuvi
