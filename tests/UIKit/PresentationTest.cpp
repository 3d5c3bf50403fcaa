// Screens laid over others.

#include "platform/Foundation/Print.h"
#include "platform/UIKit/UIAlertController.h"
#include "platform/UIKit/UITabBarController.h"
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
  for (const bool animated : {false, true}) {
    const std::string tail = animated ? "~" : "";
    const std::string sheetName = "s";
    const auto sheet = screenNamed(sheetName, bluePaint);
    const auto all = [&](std::string words) {
      std::string result;
      for (const char c : words + ' ')
        result += c == ' ' ? tail + ' ' : std::string(1, c);
      result.pop_back();
      return result;
    };
    root->present(sheet, animated, counted());
    if (animated) {
      EXPECT_EQ(take(), all("r- s+"));
      EXPECT_EQ(completions, 0);
    }
    EXPECT_EQ(finish(), animated ? all("s+! r-!") : all("r- s+ s+! r-!"));
    EXPECT_EQ(std::exchange(completions, 0), 1);
    EXPECT_EQ(root->presentedViewController(), sheet);
    EXPECT_EQ(sheet->presentingViewController(), root.get());
    EXPECT_EQ(root->view()->window(), nullptr); // nobody sees it
    EXPECT_TRUE(middle().isNear(blue));
    sheet->dismiss(animated, counted());
    EXPECT_EQ(root->presentedViewController(), nullptr);
    if (animated) {
      EXPECT_EQ(take(), all("s- r+"));
      EXPECT_NE(root->view()->window(), nullptr);
    }
    EXPECT_EQ(finish(), animated ? all("r+! s-!") : all("s- r+ r+! s-!"));
    EXPECT_EQ(std::exchange(completions, 0), 1);
    EXPECT_EQ(sheet.use_count(), 1);
    EXPECT_TRUE(middle().isNear(red));
  }
}

TEST_F(PresentationTest, PresenterOfAnOverlayHearsNothing) {
  const auto overlay = overlayNamed("o");
  overlay->view()->setBackgroundColor({0, 0, 0, 0});
  const auto field = watch("field", make<UITextField>(CGRect{0, 0, 100, 40}));
  root->view()->addSubview(field);
  tap({10, 10});
  root->present(overlay, true);
  EXPECT_FALSE(field->isEditing()) << "keys still go to what lies below";
  EXPECT_EQ(finish(), "o+~ o+!~");
  EXPECT_TRUE(middle().isNear(red)); // shines through
  EXPECT_EQ(root->appearance(), UIViewController::Appearance::Appeared);
  root->dismiss(true);
  EXPECT_EQ(finish(), "o-~ o-!~");
  EXPECT_EQ(overlay.use_count(), 1);
}

TEST_F(PresentationTest, DismissFromDeepInsideTakesTheWholeShell) {
  auto deep = screenNamed("d");
  const std::weak_ptr<UIViewController> inner = deep;
  auto shell = stack(screenNamed("a"));
  const std::weak_ptr<UIViewController> outer = shell;
  root->present(shell, true);
  EXPECT_EQ(finish(), "r-~ a+~ a+!~ r-!~");
  shell->pushViewController(deep, true);
  EXPECT_EQ(finish(), "a-~ d+~ a-!~ d+!~");
  EXPECT_EQ(deep->presentingViewController(), root.get());
  deep->dismiss(true, counted());
  deep = nullptr;
  shell = nullptr;
  EXPECT_EQ(take(), "d-~ r+~");
  EXPECT_EQ(finish(), "r+!~ d-!~");
  EXPECT_EQ(completions, 1);
  EXPECT_TRUE(inner.expired());
  EXPECT_TRUE(outer.expired());
}

TEST_F(PresentationTest, DismissDuringThePushInsideEndsThePushFirst) {
  const auto shell = stack(screenNamed("a"));
  root->present(shell, false);
  take();
  shell->pushViewController(screenNamed("b"), true);
  time.advance(0.1);
  shell->dismiss(true);
  EXPECT_EQ(take(), "a-~ b+~ a-!~ b+!~ b-~ r+~");
  EXPECT_EQ(finish(), "r+!~ b-!~");
}

TEST_F(PresentationTest, PushWhileTheShellIsOnItsWayInArrivesWithIt) {
  const auto shell = stack(screenNamed("a"));
  root->present(shell, true);
  shell->pushViewController(screenNamed("b", bluePaint), true);
  EXPECT_EQ(take(), "r-~ a+~ a- b+ a-!");
  EXPECT_EQ(finish(), "b+! r-!~");
  EXPECT_TRUE(middle().isNear(blue));
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
  root->present(sheet, true, counted());
  time.advance(0.1);
  sheet->dismiss(true, counted());
  EXPECT_EQ(take(), "r-~ s+~ s+!~ r-!~ s-~ r+~");
  EXPECT_EQ(completions, 1);
  sheet->dismiss(true); // on its way already
  EXPECT_EQ(finish(), "r+!~ s-!~");
  EXPECT_EQ(completions, 2);
  // A completion that dismisses by itself.
  root->present(sheet, true, [&] { sheet->dismiss(true); });
  time.advance(0.1);
  sheet->dismiss(true);
  EXPECT_EQ(finish(), "r-~ s+~ s+!~ r-!~ s-~ r+~ r+!~ s-!~");
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

TEST_F(PresentationTest, ImpossibleOnesPrintALineAndDoNothing) {
  std::vector<std::string> lines;
  setPrintListener([&](const std::string& line) { lines.push_back(line); });
  const auto sheet = screenNamed("s"), other = screenNamed("o");
  root->present(nullptr, true);
  root->present(sheet, false);
  root->present(other, false);
  EXPECT_EQ(lines.size(), 1U);
  screenNamed("away")->present(other, false); // on no window
  EXPECT_EQ(lines.size(), 2U);
  setPrintListener(nullptr);
  root->dismiss(false);
  take();
  root->dismiss(true); // nothing there
  EXPECT_EQ(finish(), "");
  EXPECT_EQ(other->view()->window(), nullptr);
  root->show(other); // no stack: presents
  EXPECT_EQ(finish(), "r-~ o+~ o+!~ r-!~");
}

TEST_F(PresentationTest, NothingOfAPresentedShellSurvivesItsWindow) {
  const auto shell = stack(screenNamed("a"));
  root->present(shell, true);
  time.advance(0.1);
  window->setRootViewController(nullptr);
  time.advance(1);
  EXPECT_EQ(shell.use_count(), 1);
  EXPECT_TRUE(window->subviews().empty());
  window->setRootViewController(root);
  root->present(screenNamed("left behind"), false); // goes with the window
}

TEST_F(PresentationTest, HiddenWindowSpeaksToWhatWasSeenOnIt) {
  const auto sheet = screenNamed("s"), overlay = overlayNamed("o");
  root->present(sheet, false);
  sheet->present(overlay, false);
  take();
  window->setVisible(false);
  EXPECT_EQ(take(), "s- o- s-! o-!");
  window->setVisible(true);
  EXPECT_EQ(take(), "s+ o+ s+! o+!");
}

TEST_F(PresentationTest, AlertAsksAndLeavesBeforeItsAnswerIsHeard) {
  std::string heard;
  const auto ask = [&](const std::string& answer) {
    const auto alert = watch("alert", make<UIAlertController>("Leave?", "All is lost then."));
    const std::weak_ptr<UIAlertController> weak = alert;
    for (const char* title : {"Stay", "Leave"})
      alert->addAction({title, UIAlertAction::Style::Default, [&heard, weak, title, this] {
                          heard += title;
                          EXPECT_EQ(root->presentedViewController(), nullptr);
                          root->dismiss(true); // nothing is left to dismiss
                        }});
    root->present(alert, true);
    time.advance(1);
    if (answer == "Leave") tap({160, 290});
    if (answer == "Stay") alert->choose(0);
    alert->choose(7);
    return weak;
  };
  const auto first = ask("Stay");
  time.advance(1);
  EXPECT_EQ(std::exchange(heard, {}), "Stay");
  EXPECT_TRUE(first.expired());
  const auto second = ask("Leave");
  time.advance(1);
  EXPECT_EQ(heard, "Leave");
  EXPECT_TRUE(second.expired());
  EXPECT_EQ(take(), "");
}

} // namespace
} // namespace zuvi::test
