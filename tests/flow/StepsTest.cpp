// Two tables: what each step shows in the frame and on itself and says, and which event each tap
// sends.

#include <ZuviSDK/LiveChat.h>
#include "kit/Helper/ZVExtensions.h"
#include "platform/CoreText/TextLayout.h"
#include "sandbox/core/api/Tracking.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

/// What a person can see and touch now, in words.
std::string shown() {
  const auto reachable = [](const char* name) {
    const auto view = demo::findView(name, false);
    const UIView* hit =
        view ? UIApplication::shared().hitTest(view->convertToScreen(view->bounds()).center())
             : nullptr;
    return hit && hit->isDescendantOf(*view);
  };
  const ZVRootViewController& frame = *ZVKYCHelper::instance().rootVC;
  std::string text = frame.titleLabel.lock()->text().value_or("-") + " | " +
                     frame.descriptionLabel.lock()->text().value_or("-") + " |";
  for (const char* button : {"backButton", "infoButton", "closeButton"})
    if (reachable(button)) text += std::string(" ") + button;
  text += " | " + (reachable("bottomButton") ? frame.bottomButton.lock()->title().value_or("-")
                                             : std::string("-"));
  const auto dots = frame.pageControl.lock();
  text += " | " + (dots->alpha() > 0 ? std::to_string(dots->currentPage()) + " " +
                                           textFromColor(dots->currentPageIndicatorTintColor())
                                     : std::string("-"));
  return text;
}

class StepsTest : public FlowTest {
protected:
  void see(const std::string& step) override {
    const auto camera = this->step<ZVKYCCameraViewController>();
    const auto upload = this->step<ZVUploadViewController>();
    const std::string outline =
        camera ? "; " + camera->cardImageView.lock()->image()->name() : std::string();
    const bool isDocument = page() == 3 || (upload && !upload->video);
    seen.emplace(step + (isDocument ? " back" : ""),
                 shown() + " | " + texts() + outline + " | " + surface.spoken);
    EXPECT_EQ(back->isRunning(), camera != nullptr) << step;
    if (upload) {
      EXPECT_EQ(textFromColor(upload->activityIndicator.lock()->color()), "#FFBD00");
    }
    step == "upload" ? backend.release() : backend.hold(); // it stays until it was seen
  }

  /// What stands on the screen itself, in order.
  static std::string texts() {
    const auto view = shell().presentedViewController()
                          ? shell().presentedViewController()->view()
                          : shell().mainNC()->topViewController()->view();
    std::string all;
    gather(*view, all);
    return all;
  }
  static void gather(const UIView& view, std::string& all) {
    if (view.isHidden() || view.alpha() < 0.01) return;
    if (const auto* label = dynamic_cast<const UILabel*>(&view); label && label->text())
      all += (all.empty() ? "" : "; ") + *label->text();
    for (const auto& subview : view.subviews())
      gather(*subview, all);
  }
  std::map<std::string, std::string> seen;
};

TEST_F(StepsTest, EachShowsWhatItIsToShow) {
  registerMerchant(R"({"required":["national-id"],"optional":["passport","driving-license"]})",
                   "pt", "yellow");
  launch();
  ZVRootViewController& chrome = shell();
  tap("closeButtonTap");
  EXPECT_EQ(texts(),
            localized("cancelTitle") + "; " + localized("continue") + "; " + localized("cancel"));
  EXPECT_EQ(surface.spoken, localized("cancelTitle"));
  EXPECT_EQ(demo::findView("cancelButton", false)->accessibilityLabel, localized("cancel"));
  const auto cancelText = std::dynamic_pointer_cast<UILabel>(demo::findView("cancelLabel", false));
  const auto fullStop = chrome.titleLabel.lock()->attributedText()->colors.at(0);
  EXPECT_EQ(fullStop.location, characterCount(title()) - 1);
  const std::string yellow = "#FFBD00", dark = "#1F2635"; // white on yellow can't be read
  const std::pair<UIColor, std::string> colors[] = {
      {chrome.bottomView.lock()->backgroundColor(), yellow},
      {chrome.bottomButton.lock()->backgroundColor(), yellow},
      {chrome.bottomButton.lock()->titleLabel()->textColor(), dark},
      {demo::findView("cancelButton", false)->backgroundColor(), yellow},
      {cancelText->textColor(), dark},
      {fullStop.color, "#47A8E8"},
  };
  for (const auto& row : colors)
    EXPECT_EQ(textFromColor(row.first), row.second) << "row " << &row - colors;
  tap("continueButton");
  const auto frame = [](const std::string& title, const std::string& more, const char* before,
                        const std::string& bottom, const std::string& dots,
                        const std::vector<std::string>& texts, const std::string& said = "") {
    std::string all = title + " | " + more + " |" + before + " infoButton closeButton | " + bottom +
                      " | " + dots + " | ";
    for (const std::string& text : texts)
      all += (&text == &texts.front() ? "" : "; ") + text;
    return all + " | " + (said.empty() ? title : said);
  };
  const auto in = [](const char* key) { return localized(key); };
  const char *none = "", *goesBack = " backButton";
  const std::string first = "0 " + yellow, red = "#EB5757", id = in("nationalId") + ".";
  const std::vector<std::string> side{in("documentWarning1"), in("documentWarning2")};
  const std::map<std::string, std::string> rows{
      {"start", frame(in("startTitle"), "-", none, in("startButton"), first,
                      {in("startStepTitle"), "1", in("startStep1"), "2", in("startStep2"),
                       in("startInfo")})},
      {"recorder", frame(in("livenessCameraTitle"), "-", goesBack, "-", first, {in("record")},
                         in("livenessCameraTitle") + " " + spoken("instruction"))},
      {"count-down",
       frame(in("livenessCameraTitle"), "-", goesBack, "-", first, {"5", "00:07"}, "5")},
      {"recording", frame(in("livenessCameraTitle"), "-", goesBack, "-", first, {"00:05"},
                          spoken("recordingBegins"))},
      {"review", frame(in("livenessTitle"), "-", goesBack, in("continue"), "-",
                       {in("livenessConfirmText"), in("retake")},
                       in("livenessTitle") + " " + in("livenessConfirmText"))},
      {"upload", frame(in("livenessTitle"), "-", goesBack, "-", "-",
                       {in("uploadText"), in("retake")}, in("uploadText"))},
      {"national-id", frame(id, in("documentDescription"), goesBack, in("takePhoto"), "2 " + red,
                            {in("frontSide"), side[0], side[1], "ZVFrontIneCard"},
                            in("frontSide") + ". " + id + " " + in("documentDescription"))},
      {"national-id back", frame(id, in("documentDescription"), goesBack, in("takePhoto"),
                                 "3 " + red, {in("backSide"), side[0], side[1], "ZVBackIneCard"},
                                 in("backSide") + ". " + id + " " + in("documentDescription"))},
      {"upload back",
       frame(id, "-", goesBack, "-", "-", {in("uploadText"), in("retake")}, in("uploadText"))},
      {"list", frame(in("documentsTitle"), "-", goesBack, "-", "2 " + red,
                     {"PASSAPORTE", "CARTA DE CONDUÇÃO", "2 lados"})},
      {"passport", frame(in("passport") + ".", in("documentDescription"), goesBack, in("takePhoto"),
                         "2 " + red, {" ", side[0], side[1], "ZVFrontIneCard"},
                         in("passport") + ". " + in("documentDescription"))},
      {"verified", frame(in("verifiedTitle"), "-", none, in("done"), "-", {})},
  };
  tapBottom();
  tap("backButton");
  shell().backButton.lock()->sendActions(UIControlEvent::TouchUpInside); // there is no way back
  settle();
  walk("passport");
  for (const auto& [step, expected] : rows)
    EXPECT_EQ(seen[step], expected) << step;

  EXPECT_THAT(printed, testing::Not(testing::Contains(testing::HasSubstr(".xml:"))));

  // A host's own identity: no way back into the film.
  backend.release();
  tapBottom();
  seen.clear();
  ZVKYC::instance().identityId = "own";
  launch();
  walk("passport");
  for (const char* camera : {"national-id", "passport"})
    EXPECT_NE(seen[camera].find(" | infoButton closeButton | Tirar foto | 0 #FFBD00"),
              std::string::npos)
        << seen[camera];
  tapBottom();
  EXPECT_EQ(delegate->calls.back(), "success own");
  backend.release();
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
