// What layers present while they move, and when the movement counts as ended.

#include "platform/Dispatch/VirtualTime.h"
#include "platform/QuartzCore/CALayer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

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
  void animate(double duration, const std::function<void()>& changes,
               AnimationCurve::Kind kind = AnimationCurve::Kind::Linear, double delay = 0) {
    const auto group = std::make_shared<AnimationGroup>();
    group->duration = duration;
    group->delay = delay;
    group->curve.kind = kind;
    group->completion = [this](bool finished) { ends.push_back(finished); };
    group->run(changes);
  }
  double x() const { return layer->presented(LayerProperty::Position)[0]; }

  VirtualTime time;
  std::shared_ptr<CALayer> layer = std::make_shared<CALayer>();
  std::vector<bool> ends;
};

using Ends = std::vector<bool>;

TEST_F(AnimationTest, ModelChangesAtOnceWhilePresentedValueMoves) {
  animate(1, [&] {
    layer->setPosition({100, 40});
    layer->setOpacity(0);
  });
  EXPECT_EQ(layer->position(), (CGPoint{100, 40}));
  EXPECT_EQ(x(), 0);
  time.advance(0.25);
  EXPECT_DOUBLE_EQ(x(), 25);
  EXPECT_DOUBLE_EQ(layer->presentedOpacity(), 0.75);
  EXPECT_DOUBLE_EQ(layer->presentedTransformToSuperlayer().ty, 10);
  time.advance(0.74);
  EXPECT_TRUE(ends.empty());
  time.advance(0.02);
  EXPECT_EQ(x(), 100);
  EXPECT_FALSE(layer->hasAnimations());
  EXPECT_EQ(ends, Ends{true});
}

TEST_F(AnimationTest, DelayHoldsTheOldValue) {
  animate(
      1,
      [&] {
        layer->setPosition({100, 0});
      },
      AnimationCurve::Kind::Linear, 0.5);
  time.advance(0.4);
  EXPECT_EQ(x(), 0);
  time.advance(0.6);
  EXPECT_DOUBLE_EQ(x(), 50);
  time.advance(0.4);
  EXPECT_TRUE(ends.empty());
  time.advance(0.2);
  EXPECT_EQ(ends, Ends{true});
}

TEST_F(AnimationTest, CurvesRunFromStartToEndInTheirOwnWay) {
  const auto at = [](AnimationCurve::Kind kind, double t) {
    return AnimationCurve{kind, 1, 0}.progress(t, 1);
  };
  using Kind = AnimationCurve::Kind;
  // Known points of the timing curves.
  EXPECT_NEAR(at(Kind::EaseIn, 0.5), 0.3153, 0.001);
  EXPECT_NEAR(at(Kind::EaseOut, 0.5), 0.6847, 0.001);
  EXPECT_NEAR(at(Kind::EaseInOut, 0.25), 0.1291, 0.001);
  EXPECT_NEAR(at(Kind::EaseInOut, 0.5), 0.5, 0.001);
  for (const Kind kind :
       {Kind::Linear, Kind::EaseIn, Kind::EaseOut, Kind::EaseInOut, Kind::Spring}) {
    double before = 0;
    for (int i = 0; i <= 100; i++) {
      EXPECT_GE(at(kind, i / 100.0), before - 1e-6) << "turns back at " << i;
      before = at(kind, i / 100.0);
    }
    EXPECT_EQ(before, 1);
    EXPECT_NEAR(at(kind, 0.9999), 1, 0.01) << "jumps at its end";
  }
}

TEST_F(AnimationTest, SpringOvershootsWhenLooseAndHeedsItsFirstSpeed) {
  const AnimationCurve loose{AnimationCurve::Kind::Spring, 0.5, 0};
  double most = 0;
  for (int i = 0; i <= 100; i++)
    most = std::max(most, loose.progress(i / 100.0, 0.6));
  EXPECT_NEAR(most, 1.163, 0.01); // what a damping of one half gives
  const AnimationCurve pushed{AnimationCurve::Kind::Spring, 0.8, 5};
  // At the start it moves at that speed, a second being the unit.
  EXPECT_NEAR(pushed.progress(0.001, 2) / 0.002, 5, 0.1);
}

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
  layer->setPosition({7, 0});
  EXPECT_EQ(x(), 7);
  time.settle();
  EXPECT_TRUE(ends.empty()); // the other half of the group is under way
  time.advance(1);
  EXPECT_EQ(ends, Ends{false});
  animate(1, [&] { layer->setBackgroundColor(CGColor::white()); });
  layer->removeAllAnimations();
  EXPECT_EQ(layer->presented(LayerProperty::BackgroundColor)[0], 1);
  time.advance(2);
  EXPECT_EQ(ends, (Ends{false, false}));
}

TEST_F(AnimationTest, BlockThatSetsAValueTwiceEndsAsOneThatDidSoOnce) {
  animate(1, [&] {
    layer->setPosition({100, 0});
    layer->setPosition({50, 0});
  });
  time.advance(0.5);
  EXPECT_DOUBLE_EQ(x(), 25);
  EXPECT_TRUE(ends.empty());
  time.advance(1);
  EXPECT_EQ(ends, Ends{true});
}

TEST_F(AnimationTest, EmptyAndInstantBlocksEndInTheNextTurn) {
  animate(1, [] {});
  animate(0, [&] { layer->setPosition({9, 9}); });
  EXPECT_EQ(x(), 9);
  EXPECT_TRUE(ends.empty()); // never before the call has returned
  time.settle();
  EXPECT_EQ(ends, (Ends{true, true}));
}

TEST_F(AnimationTest, EndlessTurnGoesOnUntilItIsTakenAway) {
  CABasicAnimation turn;
  turn.property = LayerProperty::Rotation;
  turn.to = layerValue(8.0);
  turn.beginTime = DispatchQueue::main().now();
  turn.duration = 2;
  turn.curve.kind = AnimationCurve::Kind::Linear;
  turn.repeatsForever = true;
  const auto parent = std::make_shared<CALayer>();
  parent->addSublayer(layer);
  layer->addAnimation("turn", turn);
  time.advance(5);
  EXPECT_NEAR(layer->presented(LayerProperty::Rotation)[0], 4, 1e-9);
  layer->removeFromSuperlayer();
  time.advance(1.5);
  parent->addSublayer(layer);
  EXPECT_NEAR(layer->presented(LayerProperty::Rotation)[0], 2, 1e-9);
  EXPECT_EQ(layer->transformToSuperlayer(), CGAffineTransform{}); // the model does not turn
  layer->removeAnimation("turn");
  EXPECT_EQ(layer->presentedTransformToSuperlayer(), CGAffineTransform{});
}

} // namespace
} // namespace zuvi::test
