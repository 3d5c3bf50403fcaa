// What nibs make, and what they are refused for.

#include "platform/Foundation/Print.h"
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
  tap({10, 10});
  tap({10, 10}); // at the view of no size yet: only what is in its bounds hears
  EXPECT_EQ(taps, 0);
  view->setFrame({0, 0, 200, 200});
  tap({10, 10});
  EXPECT_EQ(taps, 1);
  time.settle();
  EXPECT_EQ(title.lock()->frame().origin(), (CGPoint{7, 5}));
  gap.lock()->setConstant(9);
  time.settle();
  EXPECT_EQ(title.lock()->frame().x, 9);
  EXPECT_EQ(view->subviews()[1]->outletName, "button");
}

TEST_F(NibTest, EveryFaultIsRefusedWithFileLineAndName) {
  const std::string nested = [] {
    std::string text;
    for (int i = 0; i < 5000; i++)
      text += "<UIView>";
    for (int i = 0; i < 5000; i++)
      text += "</UIView>";
    return text;
  }();
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
      {std::string("<UIView frame=\"0 0 nan 5\"/>") + good, 3, "frame"},
      {std::string("<UIView frame=\"0 0 5\"/>") + good, 3, "frame"},
      {std::string("<UIView background=\"#12345\"/>") + good, 3, "#12345"},
      {std::string("<UIView autoresizing=\"width up\"/>") + good, 3, "up"},
      {std::string("<UILabel lines=\"1e300\"/>") + good, 3, "1e300"},
      {std::string("<UILabel font=\"Regular\"/>") + good, 3, "font"},
      {std::string("<UIImageView image=\"nowhere\"/>") + good, 3, "nowhere"},
      {std::string("<UILabel txt.fr=\"x\"/>") + good, 3, "txt.fr"},
      {two, 1, "the outlet title is missing"},
      {label + "<UIButton action=\"go\"/>", 1, "the outlet gap is missing"},
      {label + "<constraint outlet=\"gap\" rule=\"title.left = 5\"/>", 1,
       "the action go is missing"},
      {std::string(good) + "\n<UIView outlet=\"other\"/>", 6, "no outlet other"},
      {std::string(good) + "\n<UILabel outlet=\"title\"/>", 6, "title is connected twice"},
      {std::string(good) + "\n<UIButton action=\"stop\"/>", 6, "no action stop"},
      {std::string(good) + "\n<UIView action=\"go\"/>", 6, "only a control"},
      {std::string(good) + "\n<constraint outlet=\"far\" rule=\"title.top = 5\"/>", 6,
       "no outlet far"},
      {std::string(good) + "\n<constraint outlte=\"gap\" rule=\"title.top = 5\"/>", 6, "outlte"},
      {std::string(good) + "\n<constraint rule=\"top = 5\"/>", 6, "malformed constraint"},
      {std::string(good) + "\n<constraint rule=\"safe.top = title.top\"/>", 6, "malformed"},
      {std::string(good) + "\n<constraint/>", 6, "malformed constraint"},
      {"<UIView outlet=\"title\"/>" + two, 3, "title is of another class"},
      {"\n\n<UIView layout=\"left = aunt.right\"/>" + std::string(good), 5, "aunt"},
      {"<UIView layout=\"left = super.left; top\"/>" + std::string(good), 3, "left = super.left"},
      {nested, 3, "nested too deep"},
  };
  for (const Case& each : cases) {
    const auto [view, error] = load(around(each.lines));
    EXPECT_FALSE(view) << each.named;
    EXPECT_TRUE(error.starts_with("Screen.xml:" + std::to_string(each.line) + ": ")) << error;
    EXPECT_NE(error.find(each.named), std::string::npos) << error << " lacks " << each.named;
    EXPECT_EQ(error.find('\n'), std::string::npos);
    EXPECT_TRUE(title.expired());
  }
}

TEST_F(NibTest, WhatIsNoNibAtAllIsRefused) {
  for (const std::string text : {"", "   \n", "<nib>\n<UIView>\n</nib>", "<nib/>", "<UIView/>",
                                 "<nib><UIView/><UIView/></nib>", "<nib>words</nib>", "no markup",
                                 "<nib><UIView", "\xff\xfe\x01"}) {
    const auto [view, error] = load(text);
    EXPECT_FALSE(view) << text;
    EXPECT_TRUE(error.starts_with("Screen.xml:")) << error;
  }
  EXPECT_EQ(load("<nib>\n<UIView>\n</nib>").error.substr(0, 13), "Screen.xml:3:");
  EXPECT_EQ(UINib("Away", bundle).instantiate(owner()).error, "Away.xml: there is no such nib");
  EXPECT_FALSE(UINib("../Screen", bundle).instantiate(owner()).view);
  EXPECT_FALSE(UINib("Screen", nullptr).instantiate(owner()).view);
}

TEST_F(NibTest, AttributesOfALanguageTakeThePlaceOfTheOthers) {
  const std::string text =
      "<nib><UILabel text=\"Hello\" text.fr=\"Bonjour\" text.vi=\"Chào\"/></nib>";
  folder.write("Words.xml", text);
  const auto words = [&] {
    const auto view = UINib("Words", bundle).instantiate().view;
    return std::dynamic_pointer_cast<UILabel>(view)->text().value_or("");
  };
  EXPECT_EQ(words(), "Hello");
  std::string language = "vi";
  UINib::setLanguage([&] { return language; });
  EXPECT_EQ(words(), "Chào");
  language = "fr";
  EXPECT_EQ(words(), "Bonjour");
  language = "de";
  EXPECT_EQ(words(), "Hello");
  UINib::setLanguage([] { return std::string(); });
}

TEST_F(NibTest, RefusedNibLeavesAScreenWithAnEmptyViewAndALine) {
  struct Screen : UIViewController {
    using UIViewController::UIViewController;
    bool loaded = false;
    std::weak_ptr<UILabel> lost;
    void declareNib(NibDeclaration& nib) override { nib.outlet("lost", lost); }
    void viewDidLoad() override { loaded = true; }
  };
  folder.write("Screen.xml", around("<UIView/>"));
  std::vector<std::string> lines;
  setPrintListener([&](const std::string& line) { lines.push_back(line); });
  const auto screen = watch("screen", make<Screen>("Screen", bundle));
  window->setRootViewController(screen);
  setPrintListener(nullptr);
  EXPECT_TRUE(screen->loaded);
  EXPECT_TRUE(screen->view()->subviews().empty());
  EXPECT_EQ(screen->view()->frame(), window->bounds());
  EXPECT_EQ(lines, std::vector<std::string>{"Screen.xml:1: the outlet lost is missing"});
  surface.drawFrame();
}

} // namespace
} // namespace zuvi::test
