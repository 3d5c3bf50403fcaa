// Screens laid over others.

#include <ZuviSDK/UIKit/UIAlertController.h>
#include "platform/UIKit/UIScrollView.h"
#include "platform/UIKit/UITextField.h"
#include "tests/UIKit/ControllerFixture.h"

namespace zuvi::test {
namespace {

class PresentationTest : public ControllerFixture {
protected:
  void SetUp() override {
    root = screenNamed("r", redPaint);
    window->setRootViewController(root);
    log.clear();
  }
  void TearDown() override {
    root = nullptr;
    ControllerFixture::TearDown();
  }
  std::function<void()> counted() {
    return [this] { completions++; };
  }

  std::shared_ptr<Screen> root;
  int completions = 0;
};

TEST_F(PresentationTest, FullScreenTakesThePlaceOfItsPresenter) {
  const auto sheet = screenNamed("s", bluePaint);
  const auto field = watch("field", make<UITextField>(CGRect{0, 0, 100, 40}));
  root->view()->addSubview(field);
  tap({10, 10});
  root->present(sheet, true, counted());
  EXPECT_FALSE(field->isEditing()) << "keys still go to what lies below";
  EXPECT_EQ(take(), "r-~ s+~");
  EXPECT_EQ(completions, 0);
  EXPECT_EQ(finish(), "s+!~ r-!~");
  EXPECT_EQ(completions, 1);
  EXPECT_EQ(root->view()->window(), nullptr); // nobody sees it
  EXPECT_TRUE(middle().isNear(blue));
  UIScreen::main().configure({400, 600}, 2, {});
  time.settle();
  EXPECT_EQ(sheet->view()->frame(), (CGRect{0, 0, 400, 600}));
  sheet->dismiss(false, counted());
  EXPECT_EQ(finish(), "s- r+ r+! s-!");
  EXPECT_EQ(completions, 2);
  EXPECT_EQ(sheet.use_count(), 1);
  EXPECT_TRUE(middle().isNear(red));
}

TEST_F(PresentationTest, DismissFromDeepInsideTakesTheWholeShell) {
  auto deep = screenNamed("d");
  auto shell = stack(screenNamed("a"));
  root->present(shell, true);
  shell->pushViewController(deep, true);
  EXPECT_EQ(finish(), "r-~ a+~ a- d+ a-! d+! r-!~");
  deep->dismiss(true, counted());
  EXPECT_EQ(take(), "d-~ r+~");
  EXPECT_EQ(finish(), "r+!~ d-!~");
  EXPECT_EQ(completions, 1);
  // During a push inside, which ends first.
  root->present(shell, false);
  take();
  shell->pushViewController(screenNamed("b"), true);
  time.advance(0.1);
  shell->dismiss(true);
  EXPECT_EQ(finish(), "d-~ b+~ d-!~ b+!~ b-~ r+~ r+!~ b-!~");
}

TEST_F(PresentationTest, SheetGoesThoughItsOwnOverlayIsOnItsWayOut) {
  for (const bool covers : {false, true}) {
    const auto sheet = screenNamed("s");
    const auto overlay = covers ? screenNamed("o") : overlayNamed("o");
    root->present(sheet, false);
    sheet->present(overlay, false);
    take();
    overlay->dismiss(true);
    time.advance(0.1);
    sheet->dismiss(true, counted());
    EXPECT_EQ(take(), covers ? "o-~ s+~ s+!~ o-!~ s-~ r+~" : "o-~ o-!~ s-~ r+~");
    EXPECT_EQ(finish(), "r+!~ s-!~");
    EXPECT_EQ(overlay.use_count(), 1);
    EXPECT_TRUE(middle().isNear(red));
  }
  EXPECT_EQ(completions, 2);
}

TEST_F(PresentationTest, SheetTakesWhatStandsAboveItAlong) {
  const auto sheet = screenNamed("s"), cover = screenNamed("c", bluePaint),
             overlay = overlayNamed("o");
  overlay->view()->setBackgroundColor({0, 0, 0, 0});
  root->present(sheet, false);
  sheet->present(cover, false);
  cover->present(overlay, false);
  take();
  root->dismiss(true);
  EXPECT_EQ(take(), "c-~ o-~ r+~");
  time.advance(0.05);
  EXPECT_TRUE(screen().at(160, 470).isNear(blue)); // slides away above the root's
  EXPECT_TRUE(screen().at(160, 2).isNear(red));
  EXPECT_EQ(finish(), "c-!~ o-!~ r+!~");
  EXPECT_EQ(sheet.use_count() + cover.use_count() + overlay.use_count(), 3);
  EXPECT_EQ(window->subviews().size(), 1U);
}

TEST_F(PresentationTest, DismissDuringTheWayInTurnsBack) {
  const auto sheet = screenNamed("s", bluePaint);
  root->present(sheet, true, [&] { sheet->dismiss(true, counted()); });
  time.advance(0.1);
  sheet->dismiss(true, counted());
  EXPECT_EQ(take(), "r-~ s+~ s+!~ r-!~ s-~ r+~");
  time.advance(0.1);
  EXPECT_EQ(completions, 1) << "it finds the way out begun";
  sheet->dismiss(true); // on its way already
  EXPECT_EQ(finish(), "r+!~ s-!~");
  EXPECT_EQ(completions, 2);
  EXPECT_TRUE(middle().isNear(red));
}

TEST_F(PresentationTest, NextSheetMayComeWhileTheLastOneLeaves) {
  const auto first = screenNamed("f"), second = screenNamed("s", bluePaint);
  root->present(first, false);
  take();
  first->dismiss(true);
  time.advance(0.1);
  root->present(second, true);
  EXPECT_EQ(take(), "f-~ r+~ r+!~ f-!~ r-~ s+~");
  EXPECT_EQ(finish(), "s+!~ r-!~");
  EXPECT_TRUE(middle().isNear(blue));
  // Also from the appearance call that the departure brings.
  root->onDidAppear = [&] { root->present(first, true); };
  second->dismiss(true);
  time.advance(2);
  EXPECT_EQ(root->presentedViewController(), first);
  EXPECT_EQ(finish(), "s-~ r+~ r+!~ r-~ f+~ s-!~ f+!~ r-!~");
  EXPECT_EQ(window->subviews().size(), 1U);
}

TEST_F(PresentationTest, AlertLeavesBeforeItsAnswerIsHeard) {
  std::string heard;
  const auto alert = watch("alert", make<UIAlertController>("Leave?", "All is lost then."));
  for (const char* title : {"Stay", "Leave"})
    alert->addAction({title, UIAlertAction::Style::Default, [&heard, title, this] {
                        heard += title;
                        EXPECT_EQ(root->presentedViewController(), nullptr);
                        root->dismiss(true); // nothing is left to dismiss
                      }});
  root->present(alert, true);
  time.advance(1);
  tap({160, 290});
  alert->choose(7);
  time.advance(1);
  EXPECT_EQ(heard, "Leave");
  EXPECT_EQ(take(), "");
}

TEST_F(PresentationTest, AlertKeepsItsAnswersInSightHoweverLongItsText) {
  std::string text;
  while (text.size() < 1220)
    text += "a long message ";
  for (const auto& [size, scale] :
       {std::pair{CGSize{375, 812}, 1.0}, {CGSize{375, 812}, 1.5}, {CGSize{320, 480}, 1.5}}) {
    UIScreen::main().configure(size, 1, {44, 0, 34, 0});
    UIScreen::main().setTextScale(scale);
    const auto alert = watch("alert", make<UIAlertController>("Support", text));
    alert->addAction({"Leave", UIAlertAction::Style::Cancel, {}});
    root->present(alert, false);
    UIScreen::main().layoutIfNeeded();
    const auto box = alert->view()->subviews()[0]->subviews();
    const auto onScreen = [](const UIView& view) { return view.convertToScreen(view.bounds()); };
    const auto scroller = std::dynamic_pointer_cast<UIScrollView>(box[0]);
    EXPECT_GE(scroller->bounds().height, 100);
    scroller->scrollRectToVisible({0, scroller->contentSize().height - 1, 1, 1});
    EXPECT_LT(onScreen(*scroller->subviews().back()).maxY(), onScreen(*box[1]).minY());
    EXPECT_LE(onScreen(*box[1]).maxY(), size.height - 34);
    alert->choose(0);
    time.advance(1);
  }
  UIScreen::main().setTextScale(1);
}

} // namespace
} // namespace zuvi::test
