// Views with a life of their own: labels, pictures, scrolled contents, tables, indicators.

#include "platform/UIKit/UITableView.h"
#include "testing/UIKit/ScreenFixture.h"
#include "testing/support/TemporaryFolder.h"

#include <set>

namespace zuvi::test {
namespace {

using WidgetsTest = ScreenFixture;

TEST_F(WidgetsTest, ScrollerStaysWithinItsContents) {
  const auto scroller = add<UIScrollView>({0, 0, 100, 100});
  scroller->addSubview(make<UIView>(CGRect{0, 0, 100, 300}));
  scroller->setContentSize({100, 300});
  const auto offset = [&] { return scroller->contentOffset(); };
  auto& app = UIApplication::shared();
  app.touchBegan({50, 80});
  app.touchMoved({50, 30});
  EXPECT_EQ(offset(), (CGPoint{0, 50}));
  app.touchMoved({50, -900});
  EXPECT_EQ(offset(), (CGPoint{0, 200}));
  app.touchEnded({50, -900});
  const struct {
    CGPoint at, by;
    bool moves;
  } turns[] = {{{50, 50}, {0, -30}, true},
               {{50, 50}, {0, 90}, true},
               // What moves nothing here belongs to whoever shows the screen.
               {{50, 50}, {0, 90}, false},    // at the end
               {{50, 50}, {9, 0}, false},     // as wide as its contents
               {{50, 150}, {0, -30}, false}}; // beside it
  for (const auto& turn : turns)
    EXPECT_EQ(app.scrollWheel(turn.at, turn.by), turn.moves) << turn.at.y << " " << turn.by.y;
  EXPECT_TRUE(app.canScrollAt({50, 50}) && !app.canScrollAt({50, 150}));
  EXPECT_EQ(scroller->frame(), (CGRect{0, 0, 100, 100})); // it stands where it stood
  scroller->setContentSize({100, 150});
  EXPECT_EQ(offset(), (CGPoint{0, 50}));
  const auto bar = scroller->layer()->sublayers().back();
  EXPECT_EQ(bar->frame().maxY(), 149); // at the end, in the contents' coordinates
  scroller->setContentSize({100, 100});
  EXPECT_FALSE(bar->superlayer() || app.canScrollAt({50, 50}));
}

/// Rows that say which one they are.
struct Rows : UITableViewDataSource, UITableViewDelegate {
  std::set<UITableViewCell*> made;
  std::size_t numberOfRows(UITableView&) override { return 200'000; }
  std::shared_ptr<UITableViewCell> cellForRow(UITableView& table, std::size_t row) override {
    auto cell = table.dequeueReusableCell("row");
    if (!cell) return nullptr;
    made.insert(cell.get());
    cell->accessibilityLabel = std::to_string(row);
    return cell;
  }
  double heightForRow(UITableView&, std::size_t) override { return 50; }
};

TEST_F(WidgetsTest, OnlyRowsInSightAreMadeAndThoseThatLeaveAreUsedAgain) {
  const TemporaryFolder folder;
  folder.write("row.xml", "<nib><TestCell><UIButton frame=\"0 0 200 50\"/></TestCell></nib>");
  UINib::registerClass<UITableViewCell>("TestCell");
  const auto table = add<UITableView>({0, 0, 200, 200});
  const auto rows = std::make_shared<Rows>();
  table->registerNib(UINib("row", std::make_shared<Bundle>(folder.path())), "row");
  table->dataSource = rows;
  table->delegate = rows;
  table->reloadData();
  time.settle();
  EXPECT_EQ(table->subviews().size(), 4U);
  for (double y = 0; y < 5000; y += 37) {
    table->setContentOffset({0, y});
    time.settle();
    ASSERT_LE(table->subviews().size(), 5U);
  }
  EXPECT_LE(rows->made.size(), 6U);

  table->setContentOffset({0, 0});
  time.settle();
  press("Tab");
  for (int i = 0; i < 10; i++) // on to rows that are not there yet
    press("Down");
  press("Up");
  const UIView* button = UIApplication::shared().firstResponder();
  ASSERT_TRUE(button);
  EXPECT_EQ(button->superview()->accessibilityLabel, "9");
  EXPECT_EQ(table->contentOffset().y, 350);
  press("End");
  time.settle();
  const auto last = table->cellForRow(199'999);
  ASSERT_TRUE(last);
  EXPECT_EQ(last->accessibilityLabel, "199999");
  EXPECT_EQ(last->frame(), (CGRect{0, 9'999'950, 200, 50}));
}

} // namespace
} // namespace zuvi::test
