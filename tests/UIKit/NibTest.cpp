// What nibs make, and what they are refused for.

#include "platform/UIKit/UIButton.h"
#include "platform/UIKit/UILabel.h"
#include "platform/UIKit/UINib.h"
#include "tests/UIKit/ScreenFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace zuvi::test {
namespace {

class NibTest : public ScreenFixture {
protected:
  /// What the owner of every nib here declares.
  NibDeclaration owner() {
    NibDeclaration declaration;
    declaration.outlet("title", title);
    declaration.outlet("gap", gap);
    declaration.action("go", [this] { taps++; });
    return declaration;
  }
  UINib::Result load(const std::string& text) {
    folder.write("Screen.xml", text);
    return UINib("Screen", bundle).instantiate(owner());
  }
  /// A nib that is right but for the lines given, which begin at line 3.
  static std::string around(const std::string& lines) {
    return "<nib owner=\"Test\">\n<UIView>\n" + lines + "\n</UIView></nib>";
  }

  static constexpr const char* good = R"(<UILabel outlet="title" layout="top = super.top + 5"/>
<UIButton action="go" id="button" frame="0 0 50 40" title="Go"/>
<constraint outlet="gap" rule="title.left = super.left + 7"/>)";

  TemporaryFolder folder;
  std::shared_ptr<Bundle> bundle = std::make_shared<Bundle>(folder.path());
  std::weak_ptr<UILabel> title;
  std::weak_ptr<NSLayoutConstraint> gap;
  int taps = 0;
};

TEST_F(NibTest, GoodNibIsConnected) {
  const auto [view, error] = load(around(good));
  ASSERT_TRUE(view) << error;
  watch("the nib's view", view);
  window->addSubview(view);
  view->setFrame({0, 0, 200, 200});
  tap({10, 10});
  EXPECT_EQ(taps, 1);
  time.settle();
  EXPECT_EQ(title.lock()->frame().origin(), (CGPoint{7, 5}));
  gap.lock()->setConstant(9);
  time.settle();
  EXPECT_EQ(title.lock()->frame().x, 9);
}

TEST_F(NibTest, EveryFaultIsRefusedWithFileLineAndName) {
  std::string nested;
  for (int i = 0; i < 5000; i++)
    nested = "<UIView>" + nested + "</UIView>";
  const std::string two = "\n<UIButton action=\"go\"/>"
                          "<constraint outlet=\"gap\" rule=\"super.left = super.right\"/>";
  const std::string label = "<UILabel outlet=\"title\"/>";
  struct Case {
    std::string lines;
    int line;
    std::string named;
  };
  const Case cases[] = {
      {std::string("\n<UILable/>\n") + good, 4, "UILable"},
      {std::string("\n<UILabel txet=\"x\"/>\n") + good, 4, "UILabel takes no txet=\"x\""},
      {std::string("<UIView alpha=\"half\"/>") + good, 3, "alpha=\"half\""},
      {std::string("<UILabel lines=\"1e300\"/>") + good, 3, "1e300"},
      {two, 1, "the outlet title is missing"},
      {label + "<constraint outlet=\"gap\" rule=\"title.left = 5\"/>", 1,
       "the action go is missing"},
      {std::string(good) + "\n<UILabel outlet=\"title\"/>", 6, "title is connected twice"},
      {std::string(good) + "\n<UIView action=\"go\"/>", 6, "only a control"},
      {std::string(good) + "\n<constraint rule=\"top = 5\"/>", 6, "malformed constraint"},
      {std::string(good) + "\n<constraint rule=\"safe.top = title.top\"/>", 6, "malformed"},
      {"<UIView outlet=\"title\"/>" + two, 3, "title is of another class"},
      {"\n\n<UIView layout=\"left = aunt.right\"/>" + std::string(good), 5, "aunt"},
      {nested, 3, "nested too deep"},
  };
  for (const Case& each : cases) {
    const auto [view, error] = load(around(each.lines));
    EXPECT_FALSE(view) << each.named;
    EXPECT_TRUE(error.starts_with("Screen.xml:" + std::to_string(each.line) + ": ")) << error;
    EXPECT_NE(error.find(each.named), std::string::npos) << error << " lacks " << each.named;
    EXPECT_TRUE(title.expired());
  }
  for (const std::string text : {"", "<nib>\n<UIView>\n</nib>", "<nib/>", "<UIView/>",
                                 "<nib><UIView/><UIView/></nib>", "<nib><UIView", "\xff\xfe\x01"})
    EXPECT_TRUE(load(text).error.starts_with("Screen.xml:")) << text;
  EXPECT_FALSE(UINib("../Screen", bundle).instantiate(owner()).view);
}

} // namespace
} // namespace zuvi::test
