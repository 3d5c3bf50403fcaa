// What layers present while they move, and when the movement counts as ended.

#include <ZuviSDK/QuartzCore/CALayer.h>
#include "platform/QuartzCore/CAAnimation.h"
#include "testing/Dispatch/VirtualTime.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zuvi::test {
namespace {

class AnimationTest : public testing::Test {
protected:
  void TearDown() override {
    const std::weak_ptr<CALayer> watched = layer;
    layer = nullptr;
    EXPECT_TRUE(watched.expired());
    time.settle(); // completions that its end has brought
    EXPECT_TRUE(std::isinf(DispatchQueue::main().nextDeadline()));
  }

  /// Moves what `changes` sets over `duration` seconds; its end is noted in `ends`.
  void animate(double duration, const std::function<void()>& changes) {
    const auto group = std::make_shared<AnimationGroup>();
    group->duration = duration;
    group->curve.kind = AnimationCurve::Kind::Linear;
    group->completion = [this](bool finished) { ends.push_back(finished); };
    group->run(changes);
  }
  double x() const { return layer->presented(LayerProperty::Position)[0]; }

  VirtualTime time;
  std::shared_ptr<CALayer> layer = std::make_shared<CALayer>();
  std::vector<bool> ends;
};

using Ends = std::vector<bool>;

TEST_F(AnimationTest, AnotherAnimationTakesOverFromTheValuePresented) {
  animate(1, [&] { layer->setPosition({100, 0}); });
  time.advance(0.5);
  animate(1, [&] { layer->setPosition({0, 0}); });
  EXPECT_DOUBLE_EQ(x(), 50);
  time.advance(0.5);
  EXPECT_DOUBLE_EQ(x(), 25);
  EXPECT_EQ(ends, Ends{false});
  time.advance(1);
  EXPECT_EQ(ends, (Ends{false, true}));
}

TEST_F(AnimationTest, ImmediateWriteAndRemovalCutShortOnce) {
  animate(1, [&] {
    layer->setPosition({100, 0});
    layer->setOpacity(0);
  });
  time.advance(0.5);
  layer->setPosition({100, 0}); // where it is bound anyway
  EXPECT_EQ(x(), 50);
  layer->setPosition({7, 0});
  time.settle();
  EXPECT_EQ(ends, Ends{}); // the other half of the group is under way
  time.advance(1);
  EXPECT_EQ(ends, Ends{false});
  animate(1, [&] { layer->setBackgroundColor(CGColor::white()); });
  layer->removeAllAnimations();
  EXPECT_EQ(layer->presented(LayerProperty::BackgroundColor)[0], 1);
  time.advance(2);
  EXPECT_EQ(ends, (Ends{false, false}));
}

TEST_F(AnimationTest, EmptyBlocksEndInTheNextTurn) {
  animate(1, [] {});
  EXPECT_EQ(ends, Ends{}); // never before the call has returned
  time.settle();
  EXPECT_EQ(ends, Ends{true});
}

} // namespace
} // namespace zuvi::test
