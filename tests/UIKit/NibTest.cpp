// What nibs make, what they are refused for, and the frames that follow from their rules.

#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include <ZuviSDK/UIKit/UINib.h>
#include "platform/UIKit/NibConstraintRule.h"
#include "testing/UIKit/ScreenFixture.h"
#include "testing/support/TemporaryFolder.h"

#include <map>

namespace zuvi::test {
namespace {

class NibTest : public ScreenFixture {
protected:
  /// What the owner of every nib here declares.
  NibDeclaration owner() {
    NibDeclaration declaration;
    declaration.outlet("title", title);
    declaration.outlet("gap", gap);
    declaration.action("go", [] {});
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
};

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

TEST_F(NibTest, TextsAreInTheLanguageOfTheBundle) {
  folder.write("Label.xml", R"(<nib><UILabel text="Go" text.fr="Allez"/></nib>)");
  for (const std::string language : {"fr", "en"}) {
    bundle->setLanguage([language] { return language; });
    const auto made = UINib("Label", bundle).instantiate().view;
    EXPECT_EQ(std::dynamic_pointer_cast<UILabel>(made)->text(), language == "fr" ? "Allez" : "Go");
  }
}

TEST_F(NibTest, NamesStandForTheValuesOfTheBundle) {
  const auto made = [this](const std::string& attributes) {
    folder.write("Label.xml", "<nib>\n<UILabel " + attributes + "/></nib>");
    return UINib("Label", bundle).instantiate();
  };
  const auto textOf = [](const UINib::Result& result) {
    const auto label = std::dynamic_pointer_cast<UILabel>(result.view);
    return label ? label->text().value_or("no text") : result.error;
  };
  EXPECT_EQ(textOf(made("text=\"@go\"")), "@go") << "a plain character without values";
  const std::map<std::string, std::string> values{
      {"text go", "Go, @once"}, {"text.fr go", "no"}, {"frame a", "1 2"}, {"frame b", "3 4"}};
  bundle->setNibValues([&](const std::string& attribute, const std::string& name) {
    const auto found = values.find(attribute + " " + name);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  });
  const auto label = made("text=\"@go\" frame=\"@a @b\"");
  EXPECT_EQ(textOf(label), "Go, @once");
  ASSERT_TRUE(label.view);
  EXPECT_EQ(label.view->frame(), (CGRect{1, 2, 3, 4}));
  bundle->setLanguage([] { return "fr"; });
  EXPECT_EQ(textOf(made("text=\"Go\" text.fr=\"@go\"")), "Go, @once");
  for (const auto& [attributes, lacks] : {std::pair("text=\"@og\"", "@og"),
                                          {"color=\"@go\"", "@go"},
                                          {"frame=\"@a b\"", "b"},
                                          {"text=\"@\"", "@"}})
    EXPECT_EQ(textOf(made(attributes)),
              std::string("Label.xml:2: ") + attributes + " has no value for " + lacks);
}

class ConstraintTest : public NibTest {
protected:
  using Views = std::vector<std::shared_ptr<UIView>>;
  /// The views that these lines of a nib put into a view of that size.
  Views lay(CGSize size, const std::string& lines) {
    folder.write("Screen.xml", around(lines));
    const auto [view, error] = UINib("Screen", bundle).instantiate({});
    EXPECT_TRUE(view) << error;
    window->addSubview(watch("the nib's view", view));
    view->setFrame({0, 0, size.width, size.height});
    time.settle();
    return view->subviews();
  }
};

TEST_F(ConstraintTest, ChainsRunInBothDirectionsAndInAnyOrder) {
  // Written so that nothing is known until the last rule; b hangs between its neighbours.
  const Views views = lay({300, 200}, R"(<UIView id="a"/><UIView id="b"/><UIView id="c" layout="
      b.left = a.right + 10; c.left = b.right + 10; a.width = 50; c.width = a.width * 2;
      a.left = super.left + 5; c.right = super.right - 5;
      a.top = b.top; b.centerY = super.centerY; b.height = super.height * 0.5;
      c.top = super.top; a.bottom = b.bottom; c.height = 20"/>)");
  EXPECT_EQ(views[0]->frame(), (CGRect{5, 50, 50, 100}));
  EXPECT_EQ(views[1]->frame(), (CGRect{65, 50, 120, 100}));
  EXPECT_EQ(views[2]->frame(), (CGRect{195, 0, 100, 20}));
}

TEST_F(ConstraintTest, ContradictionsAndCirclesEndWithTheFirstRule) {
  const Views views = lay({300, 200}, R"(<UIView id="a"/><UIView id="b" layout="
      a.left = super.left + 10; a.left = super.left + 90; a.right = super.left;
      a.top = b.bottom; b.top = a.bottom; a.width = b.width; b.width = a.width;
      a.height = a.height * 2; b.height = 10; b.left = b.left + 1"/>)");
  EXPECT_EQ(views[0]->frame().x, 10);
  EXPECT_GE(views[0]->frame().width, 0); // an impossible width is none at all
  EXPECT_EQ(views[1]->frame().height, 10);
}

TEST(ConstraintRuleTest, MalformedRulesAreNone) {
  for (const char* text : {"", "left", "left =", "left = 5 + 3", "left = super.left +", "left = up",
                           "left = super.left + x", "left = super.top", "left == super.left",
                           "left = super.left / 2", "left = super.left + 2 * 3", "left = nan",
                           "left = inf", "safe.left = a.left", "middle = 5"})
    EXPECT_FALSE(NibConstraintRule::parse(text)) << text;
  EXPECT_FALSE(NibConstraintRule::parseList("left = 5; right"));
  EXPECT_EQ(NibConstraintRule::parseList(" left = 5 ;; top = 2; ")->size(), 2U);
}

} // namespace
} // namespace zuvi::test
