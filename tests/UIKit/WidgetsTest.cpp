// Views with a life of their own: labels, pictures, scrolled contents, tables, indicators.

#include "platform/UIKit/UITableView.h"
#include "tests/UIKit/ScreenFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

namespace zuvi::test {
namespace {

using WidgetsTest = ScreenFixture;

TEST_F(WidgetsTest, ScrollerStaysWithinItsContents) {
  const auto scroller = add<UIScrollView>({0, 0, 100, 100});
  const auto page = make<UIView>(CGRect{0, 0, 100, 300});
  scroller->addSubview(page);
  scroller->setContentSize({100, 300});
  auto& app = UIApplication::shared();
  app.touchBegan({50, 80});
  app.touchMoved({50, 30});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 50}));
  app.touchMoved({50, -900});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 200}));
  app.touchEnded({50, -900});
  EXPECT_TRUE(app.scrollWheel({50, 50}, {0, -30}));
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 170}));
  // What moves nothing here belongs to whoever shows the screen.
  EXPECT_TRUE(app.scrollWheel({50, 50}, {0, 90}));
  EXPECT_FALSE(app.scrollWheel({50, 50}, {0, 90})) << "at the end";
  EXPECT_FALSE(app.scrollWheel({50, 50}, {9, 0})) << "as wide as its contents";
  EXPECT_FALSE(app.scrollWheel({50, 150}, {0, -30})) << "beside it";
  EXPECT_TRUE(app.canScrollAt({50, 50}));
  EXPECT_FALSE(app.canScrollAt({50, 150}));
  EXPECT_EQ(scroller->frame(), (CGRect{0, 0, 100, 100})); // it stands where it stood
  scroller->setContentSize({100, 150});
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{0, 50}));
  const auto bar = scroller->layer()->sublayers().back();
  EXPECT_EQ(bar->frame().maxY(), 149); // at the end, in the contents' coordinates
  scroller->setContentSize({100, 100});
  EXPECT_FALSE(bar->superlayer());
  EXPECT_FALSE(app.canScrollAt({50, 50}));
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
  void SetUp() override {
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
}

TEST_F(TableTest, ArrowKeysWalkAlsoToRowsOutOfSight) {
  folder.write("row.xml", "<nib><TestCell><UIButton frame=\"0 0 200 50\"/></TestCell></nib>");
  reload(20);
  press("Tab");
  for (int i = 0; i < 10; i++)
    press("Down");
  press("Up");
  const UIView* button = UIApplication::shared().firstResponder();
  ASSERT_TRUE(button);
  EXPECT_EQ(button->superview()->accessibilityLabel, "9");
  EXPECT_EQ(table->contentOffset().y, 350);
  press("End");
  time.settle();
  EXPECT_TRUE(table->cellForRow(19));
}

} // namespace
} // namespace zuvi::test
