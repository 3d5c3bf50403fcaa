// Every screen in every language on small and large screens, with text at its own size and as large
// as a person may ask for: nothing is cut off, nothing collides, and in a choice of these
// everything stands as it is stored beside this file.   scripts/renew-layouts

#include "kit/Helper/LiveChat/LoadingView.h"
#include "kit/Helper/LiveChat/Manager.h"
#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "platform/CoreText/TextLayout.h"
#include "platform/Foundation/UserDefaults.h"
#include "testing/UIKit/ScreenText.h"
#include "tests/flow/FlowTest.h"

#include <fstream>

namespace zuvi {
namespace {

/// The fonts beside the program are all that there are, before anything has asked for one.
[[maybe_unused]] const int fonts = setenv("FONTCONFIG_FILE", ZUVI_LAYOUT_FOLDER "/fonts.conf", 1);

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

/// What is not as in the first section; all where there are more or fewer views.
std::string changes(const std::string& first, const std::string& text) {
  const auto before = linesOf(first), now = linesOf(text);
  if (before.size() != now.size()) return text;
  std::string all;
  for (std::size_t i = 0; i < now.size(); i++)
    if (before[i] != now[i]) all += now[i] + '\n';
  return all;
}

class LayoutTest : public FlowTest {
protected:
  void see(const std::string& step) override {
    const auto camera = this->step<ZVKYCCameraViewController>();
    const auto upload = this->step<ZVUploadViewController>();
    const bool isBack = camera && camera->type == ZVKYCCameraType::ineBack;
    inspect(step + (isBack ? "-back" : upload && !upload->video ? "-document" : ""));
    if (step == "start") {
      seeWhatLiesOver();
    } else if (step == "recorder") {
      pullOut(cameras->front, step);
    } else if (camera) {
      const CGRect guide = camera->cardImageView.lock()->bounds();
      const double card = std::min(guide.width, guide.height * 1.586);
      EXPECT_TRUE(card >= leastCard || textScale() > 1) << step << " " << place_ << " " << card;
      if (camera->type == ZVKYCCameraType::ineFront) {
        if (step == "passport") pullOut(cameras->back, step);
        if (step == "national-id") {
          camera->showError(true);
          settle();
          inspect("document-failed");
          tapBottom();
          time.advance(3);
        }
      }
    } else if (const auto list = this->step<ZVDocumentListViewController>()) {
      list->tableView.lock()->setContentOffset({0, 1e6});
      settle();
      inspect("list-end");
    }
    // An upload stays until it was seen.
    step == "upload" || step == "verified" ? backend.release() : backend.hold();
  }

  void seeWhatLiesOver() {
    shell().mainNC()->pushViewController(make<ZVCardVerifyViewController>(), true);
    settle();
    inspect("card-review");
    tap("retakeButtonTap");
    tap("closeButtonTap");
    inspect("cancel");
    tap("continueButton");
    for (const std::string text : {"Hello", "A long story. "}) {
      std::string all = text;
      while (all.size() < 1200 && text != "Hello")
        all += text;
      Manager::sharedInstance().webViewBridge()->handle(
          {{"messageType", "newMessage"},
           {"text", all},
           {"id", std::to_string(++messages_)},
           {"timestamp", 1},
           {"author", Value::Dictionary{{"name", "Ann"}}}});
      settle();
      inspect(text == "Hello" ? "message" : "message-long");
      UIApplication::shared().keyPressed({"Escape", {}});
      settle();
    }
    const auto loading = make<LoadingView>();
    loading->setBackgroundColor(UIColor::white());
    loading->setFrame(window->bounds());
    window->addSubview(loading);
    loading->startAnimation();
    time.advance(5);
    inspect("chat-loads");
    loading->displayLoadingError(localized("chatUnreachable"));
    time.settle();
    inspect("chat-failed");
    loading->removeFromSuperview();
  }

  /// What is said when there is no camera.
  void pullOut(std::shared_ptr<ScriptedCamera>& camera, const std::string& step) {
    const auto kept = std::exchange(camera, nullptr);
    kept->unplug();
    settle();
    inspect(step + "-without-camera");
    camera = kept;
    NotificationCenter::defaultCenter().post(AVCaptureDevicesDidChange);
    settle();
  }

  void inspect(const std::string& screen) {
    const std::string text = "announced \"" + surface.spoken + "\"\n" + screenText();
    EXPECT_GE(linesOf(text).size(), 3U) << screen;
    for (const std::string& line : linesOf(text))
      EXPECT_EQ(line.find("FAULT"), std::string::npos) << screen << " " << place_ << line;
    if (!stored_) return;
    std::string& all = seen_[screen];
    const std::string head = "== " + place_ + '\n';
    if (all.find(head) != std::string::npos) return;
    if (all.empty()) first_[screen] = text;
    all += head + (all.empty() ? text : changes(first_[screen], text));
  }

  static constexpr double leastCard = 96; // points; in a smaller one nobody can aim
  std::string place_;
  bool stored_ = false;
  int messages_ = 0;
  std::map<std::string, std::string> first_, seen_; ///< by screen
};

TEST_F(LayoutTest, HoldsInEveryLanguageOnEveryScreenAndWithTheLargestText) {
  enum class Stored { No, English, All };
  const struct {
    CGSize size;
    UIEdgeInsets safe;
    double textScale = 1;
    Stored stored = Stored::No;
  } screens[] = {{{375, 812}, {44, 0, 34, 0}, 1, Stored::All},
                 {{240, 480}, {}, 1, Stored::English},
                 {{700, 320}, {}, 1, Stored::English},
                 {{375, 812}, {44, 0, 34, 0}, 9, Stored::English}, // more than anybody gets
                 {{320, 568}, {20, 0, 0, 0}},
                 {{768, 1024}, {}},
                 {{320, 568}, {20, 0, 0, 0}, 9},
                 {{240, 480}, {}, 9},
                 {{700, 320}, {}, 9},
                 {{768, 1024}, {}, 9}};
  for (const char* key : {"LiveChat_unreadMessagesKey", "LiveChat_readMessagesKey"})
    UserDefaults::standard().set(key, nullptr);
  const std::map<std::string_view, std::string> colors{
      {"en", "green"}, {"es", "yellow"}, {"fr", "red"}, {"pt", "orange"}};
  button->setFrame({10, 100, 220, 60});
  const std::string all = R"(["national-id","proof-of-residency","driving-license","passport"])";
  for (const auto& screen : screens) {
    UIScreen::main().configure(screen.size, 2, screen.safe);
    UIScreen::main().setTextScale(screen.textScale);
    for (const auto& language : RawValues<ZVLanguage>::all) {
      place_ = std::string(language.text) + " " + std::to_string(int(screen.size.width)) + "x" +
               std::to_string(int(screen.size.height)) + (textScale() > 1 ? ", largest text" : "");
      stored_ = screen.stored == Stored::All ||
                (screen.stored == Stored::English && language.value == ZVLanguage::english);
      registerMerchant(R"({"required":)" + all + R"(,"optional":)" + all + "}",
                       std::string(language.text), colors.at(language.text));
      settle();
      inspect("host");
      launch();
      EXPECT_TRUE(walk("passport").ends_with("verified(-1) "));
      tapBottom();
    }
  }
  UIScreen::main().setTextScale(1);
  std::filesystem::create_directories(ZUVI_LAYOUT_FOLDER "/seen");
  for (const auto& [screen, text] : seen_) {
    std::ofstream(ZUVI_LAYOUT_FOLDER "/seen/" + screen + ".txt") << text;
    EXPECT_EQ(text, test::TemporaryFolder::read(ZUVI_LAYOUTS "/" + screen + ".txt"))
        << screen << ": look whether it is better, then run scripts/renew-layouts";
  }
}

} // namespace
} // namespace zuvi
