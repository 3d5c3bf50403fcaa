// Frames that follow from constraints.

#include "platform/UIKit/NibConstraintRule.h"
#include "platform/UIKit/UILabel.h"
#include "tests/UIKit/ScreenFixture.h"

#include <map>

namespace zuvi::test {
namespace {

class ConstraintTest : public ScreenFixture {
protected:
  template <class View = UIView>
  std::shared_ptr<View> child(const std::string& name, const std::shared_ptr<UIView>& parent) {
    auto view = watch(name, make<View>());
    parent->addSubview(view);
    views[name] = view;
    return view;
  }

  /// Rules as a nib writes them; "super" is `holder`.
  void rules(const std::shared_ptr<UIView>& holder, const std::string& list) {
    const auto parsed = NibConstraintRule::parseList(list);
    EXPECT_TRUE(parsed) << list;
    const auto item = [&](const std::string& name) -> LayoutItem {
      return {LayoutItem::Kind::View, name == "super" ? holder : views.at(name).lock()};
    };
    for (const NibConstraintRule& rule : *parsed) {
      auto constraint = std::make_shared<NSLayoutConstraint>();
      constraint->firstItem = item(rule.firstItem);
      constraint->firstAttribute = rule.first;
      if (rule.hasSecond) constraint->secondItem = item(rule.secondItem);
      constraint->secondAttribute = rule.second;
      constraint->multiplier = rule.multiplier;
      constraint->setConstant(rule.constant);
      holder->addConstraint(constraint);
    }
  }

  std::map<std::string, std::weak_ptr<UIView>> views;
};

TEST_F(ConstraintTest, ChainsRunInBothDirectionsAndInAnyOrder) {
  const auto box = add({0, 0, 300, 200});
  const auto a = child("a", box), b = child("b", box), c = child("c", box);
  // Written so that nothing is known until the last rule; b hangs between its neighbours.
  rules(box, "b.left = a.right + 10; c.left = b.right + 10; a.width = 50; c.width = a.width * 2;"
             "a.left = super.left + 5; c.right = super.right - 5;"
             "a.top = b.top; b.centerY = super.centerY; b.height = super.height * 0.5;"
             "c.top = super.top; a.bottom = b.bottom; c.height = 20");
  time.settle();
  EXPECT_EQ(a->frame(), (CGRect{5, 50, 50, 100}));
  EXPECT_EQ(c->frame(), (CGRect{195, 0, 100, 20}));
  EXPECT_EQ(b->frame(), (CGRect{65, 50, 120, 100}));
}

TEST_F(ConstraintTest, ContainersTakeTheirHeightFromWrappedText) {
  const auto page = add({0, 0, 200, 400});
  const auto card = child("card", page);
  const auto text = child<UILabel>("text", card);
  text->setNumberOfLines(0);
  rules(card, "text.left = super.left + 10; text.right = super.right - 10;"
              "text.top = super.top + 10; super.bottom = text.bottom + 10");
  rules(page, "card.left = super.left + 20; card.right = super.right - 20; card.top = super.top");
  for (const char* words :
       {"one", "many words that do not fit into one line of this card at all"}) {
    text->setText(words);
    time.settle();
    EXPECT_EQ(card->frame(), (CGRect{20, 0, 160, text->frame().height + 20}));
    EXPECT_FALSE(text->isClipped());
  }
}

TEST_F(ConstraintTest, ContradictionsAndCirclesEndWithTheFirstRule) {
  const auto box = add({0, 0, 300, 200});
  const auto a = child("a", box), b = child("b", box);
  rules(box, "a.left = super.left + 10; a.left = super.left + 90; a.right = super.left;"
             "a.top = b.bottom; b.top = a.bottom; a.width = b.width; b.width = a.width;"
             "a.height = a.height * 2; b.height = 10; b.left = b.left + 1;"
             "a.centerX = b.centerX * 0");
  time.settle();
  EXPECT_EQ(a->frame().x, 10);
  EXPECT_GE(a->frame().width, 0); // an impossible width is none at all
  EXPECT_EQ(b->frame().height, 10);
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
