// Views with a life of their own: labels, pictures, scrolled contents, tables, indicators.

#include "platform/UIKit/UIActivityIndicatorView.h"
#include "platform/UIKit/UILabel.h"
#include "platform/UIKit/UIPageControl.h"
#include "platform/UIKit/UITableView.h"
#include "tests/UIKit/ScreenFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

namespace zuvi::test {
namespace {

class WidgetsTest : public ScreenFixture {};

TEST_F(WidgetsTest, LabelShrinksBeforeItIsCut) {
  const auto label = add<UILabel>({10, 10, 100, 30});
  label->setText("A title that is too long");
  EXPECT_TRUE(label->isClipped());
  label->setMinimumScaleFactor(0.3);
  EXPECT_FALSE(label->isClipped());
  label->setText("short");
  EXPECT_FALSE(label->isClipped());
  label->setMinimumScaleFactor(1);
  label->setNumberOfLines(2);
  label->setText("one\ntwo\nthree");
  EXPECT_TRUE(label->isClipped()); // a line is missing
  EXPECT_LE(label->sizeThatFits({100, -1}).height, 2 * label->font()->lineHeight() + 1);
  label->setText(std::nullopt);
  EXPECT_FALSE(label->isClipped());
  EXPECT_EQ(label->intrinsicContentSize(), (CGSize{0, 0}));
}

TEST_F(WidgetsTest, ScrollerStaysWithinItsContents) {
  const auto scroller = add<UIScrollView>({0, 0, 100, 100});
  const auto page = make<UIView>(CGRect{0, 0, 100, 300});
  page->setBackgroundColor({1, 0, 0, 1});
  scroller->addSubview(page);
  scroller->setContentSize({100, 300});
  auto& app = UIApplication::shared();
  app.touchBegan({50, 80});
  app.touchMoved({50, 30});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 50}));
  app.touchMoved({50, 45});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 35}));
  app.touchMoved({50, -900});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 200}));
  app.touchEnded({50, -900});
  app.scrollWheel({50, 50}, {0, -30});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 170}));
  EXPECT_EQ(scroller->frame(), (CGRect{0, 0, 100, 100})); // it stands where it stood
  scroller->setContentSize({100, 150});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 50}));
  scroller->setFrame({0, 0, 100, 400}); // all of it fits
  time.settle();
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 0}));
  scroller->setFrame({0, 0, 100, 100});
  scroller->setScrollEnabled(false);
  app.scrollWheel({50, 50}, {0, 30});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 0}));
}

/// Rows that say which one they are.
struct Rows : UITableViewDataSource, UITableViewDelegate {
  std::size_t count = 0;
  double height = 50;
  std::set<UITableViewCell*> made;
  std::size_t numberOfRows(UITableView&) override { return count; }
  std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, std::size_t row) override {
    auto cell = table.dequeueReusableCell("row");
    if (!cell) return nullptr;
    made.insert(cell.get());
    cell->accessibilityLabel = std::to_string(row);
    return cell;
  }
  double heightForRow(UITableView&, std::size_t) override { return height; }
};

class TableTest : public WidgetsTest {
protected:
  TableTest() {
    UINib::registerClass<UITableViewCell>("TestCell");
    folder.write("row.xml", "<nib><TestCell background=\"#FFFFFF\"/></nib>");
    table->registerNib(UINib("row", std::make_shared<Bundle>(folder.path())), "row");
    table->dataSource = rows;
    table->delegate = rows;
  }
  void TearDown() override {
    table = nullptr;
    WidgetsTest::TearDown();
  }
  void reload(std::size_t count) {
    rows->count = count;
    table->reloadData();
    time.settle();
  }

  TemporaryFolder folder;
  std::shared_ptr<UITableView> table = add<UITableView>({0, 0, 200, 200});
  std::shared_ptr<Rows> rows = std::make_shared<Rows>();
};

TEST_F(TableTest, OnlyRowsInSightAreMadeAndThoseThatLeaveAreUsedAgain) {
  reload(200'000);
  EXPECT_EQ(table->subviews().size(), 4U);
  EXPECT_EQ(table->contentSize().height, 10'000'000);
  for (double y = 0; y < 5000; y += 37) {
    table->setContentOffset({0, y});
    time.settle();
    ASSERT_LE(table->subviews().size(), 5U);
  }
  EXPECT_LE(rows->made.size(), 6U);
  table->setContentOffset({0, 1e9});
  time.settle();
  const auto last = table->cellForRow(199'999);
  ASSERT_TRUE(last);
  EXPECT_EQ(last->accessibilityLabel, "199999");
  EXPECT_EQ(last->frame(), (CGRect{0, 9'999'950, 200, 50}));
  EXPECT_FALSE(table->cellForRow(0));
  // A taller table shows more of them.
  table->setFrame({0, 0, 200, 400});
  time.settle();
  EXPECT_EQ(table->subviews().size(), 8U);
}

TEST_F(TableTest, ReloadAsksForEverythingAnew) {
  reload(10);
  table->setContentOffset({0, 300});
  reload(3);
  EXPECT_EQ(table->subviews().size(), 3U);
  EXPECT_EQ(table->contentOffset(), (CGPoint{0, 0}));
  rows->height = 120;
  reload(3);
  EXPECT_EQ(table->subviews().size(), 2U);
  EXPECT_EQ(table->cellForRow(1)->frame(), (CGRect{0, 120, 200, 120}));
  reload(0);
  EXPECT_TRUE(table->subviews().empty());
  reload(2);
  rows = nullptr; // without a source nothing comes
  table->reloadData();
  time.settle();
  EXPECT_TRUE(table->subviews().empty());
}

TEST_F(TableTest, SourceThatReloadsWhileItIsAskedDoesNoHarm) {
  struct Impatient : Rows {
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& asking, std::size_t row) override {
      if (row == 2 && count == 10) {
        count = 1;
        asking.reloadData();
      }
      return Rows::cellForRow(asking, row);
    }
  };
  rows = std::make_shared<Impatient>();
  table->dataSource = rows;
  reload(10);
  EXPECT_EQ(table->subviews().size(), 1U);
  table->registerNib(UINib("none", std::make_shared<Bundle>(folder.path())), "row");
  EXPECT_FALSE(table->dequeueReusableCell("other"));
}

TEST_F(WidgetsTest, PageControlMarksOneDotOfThoseThereAre) {
  const auto pages = add<UIPageControl>({0, 0, 100, 20});
  pages->setNumberOfPages(3);
  pages->setCurrentPageIndicatorTintColor({1, 0, 0, 1});
  pages->setCurrentPage(7);
  EXPECT_EQ(pages->currentPage(), 2);
  EXPECT_TRUE(screen().at(66, 10).isNear(red)); // dots at 34, 50 and 66
  EXPECT_FALSE(screen().at(50, 10).isNear(red));
  pages->setNumberOfPages(-1);
  EXPECT_EQ(pages->currentPage(), 0);
}

TEST_F(WidgetsTest, IndicatorTurnsOnlyWhileSomethingIsUnderWay) {
  const auto indicator = add<UIActivityIndicatorView>({0, 0, 36, 36});
  const UIColor black{0, 0, 0, 1};
  indicator->setColor(black);
  EXPECT_EQ(screen().count({0, 0, 0}), 0);
  indicator->startAnimating();
  indicator->startAnimating();
  const Pixels first = screen();
  EXPECT_GT(first.count({0, 0, 0}), 20);
  time.advance(0.3);
  EXPECT_NE(Pixels::difference(first, screen()), "");
  indicator->removeFromSuperview();
  window->addSubview(indicator);
  time.advance(0.2);
  EXPECT_TRUE(surface.drawFrame()); // still turns
  indicator->stopAnimating();
  EXPECT_EQ(screen().count({0, 0, 0}), 0);
}

} // namespace
} // namespace zuvi::test
