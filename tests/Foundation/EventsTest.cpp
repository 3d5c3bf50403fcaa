#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/NotificationCenter.h"
#include "platform/Foundation/Print.h"
#include "platform/Foundation/Timer.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(TimerTest, KeepsToTheGridOfItsStart) {
  VirtualTime time;
  auto& queue = DispatchQueue::main();
  const double start = queue.now();
  std::vector<double> fired;
  const auto timer =
      Timer::scheduled(1.0, Timer::Repeats::Yes, [&] { fired.push_back(queue.now() - start); });
  time.advance(0.999);
  EXPECT_TRUE(fired.empty());
  time.advance(11.001);
  EXPECT_EQ(fired.size(), 12U);
  EXPECT_DOUBLE_EQ(fired.back(), 12);
}

TEST(TimerTest, LeavesOutWhatItMissed) {
  auto& queue = DispatchQueue::main();
  const VirtualTime time;
  const auto clock = std::make_shared<VirtualClock>();
  queue.setClock(clock);
  int fired = 0;
  const auto timer = Timer::scheduled(1.0, Timer::Repeats::Yes, [&] { ++fired; });
  clock->set(clock->now() + 5.5);
  queue.runDue();
  EXPECT_EQ(fired, 1);
  EXPECT_DOUBLE_EQ(queue.nextDeadline() - queue.now(), 0.5);
}

TEST(TimerTest, EndsWhenInvalidatedOrDroppedAlsoFromWithin) {
  VirtualTime time;
  int fired = 0;
  auto dropped = Timer::scheduled(1, Timer::Repeats::Yes, [&] { ++fired; });
  dropped.reset();

  std::shared_ptr<Timer> once;
  once = Timer::scheduled(1, Timer::Repeats::No, [&] {
    ++fired;
    EXPECT_FALSE(once->isValid());
  });
  std::shared_ptr<Timer> self;
  const auto held = std::make_shared<int>();
  self = Timer::scheduled(1, Timer::Repeats::Yes, [&, held] {
    EXPECT_TRUE(self->isValid());
    self->invalidate();
    self.reset();
    fired += *held + 10;
  });
  // A timer that owns itself is freed by its invalidation.
  auto owned = Timer::scheduled(1, Timer::Repeats::Yes, [] {});
  const std::weak_ptr<Timer> watch = owned;
  owned.reset();
  EXPECT_TRUE(watch.expired());
  EXPECT_TRUE(once->isValid());
  time.advance(5);
  EXPECT_EQ(fired, 11);
  EXPECT_EQ(held.use_count(), 1);

  const auto hasty = Timer::scheduled(0, Timer::Repeats::Yes, [&] { ++fired; });
  time.advance(0.01); // comes to an end
  EXPECT_GT(fired, 50);
}

class NotificationCenterTest : public testing::Test {
protected:
  NotificationCenter center_;
  std::string log_;
};

TEST_F(NotificationCenterTest, DeliversByNameInOrderOfRegistration) {
  const auto a = center_.observe(
      "n", [&](const Notification& n) { log_ += "a" + n.userInfo.at("k").description(); });
  const auto other = center_.observe("m", [&](const Notification&) { log_ += "x"; });
  auto b = center_.observe("n", [&](const Notification&) { log_ += "b"; });
  const auto c = center_.observe("n", [&](const Notification&) { log_ += "c"; });
  center_.post("n", {{"k", 1}});
  EXPECT_EQ(log_, "a1bc");
  b = {};
  center_.post("n", {{"k", 2}});
  EXPECT_EQ(log_, "a1bca2c");
}

TEST_F(NotificationCenterTest, ObserversMayComeAndGoDuringAPost) {
  std::optional<NotificationObserver> self;
  std::optional<NotificationObserver> late;
  std::optional<NotificationObserver> next;
  self = center_.observe("n", [&](const Notification&) {
    log_ += "1";
    self.reset();
    next.reset();
    late = center_.observe("n", [&](const Notification&) { log_ += "late"; });
    center_.post("n");
  });
  next = center_.observe("n", [&](const Notification&) { log_ += "never"; });
  center_.post("n");
  EXPECT_EQ(log_, "1late");
}

TEST(PrintTest, HandsLinesToItsListener) {
  std::vector<std::string> lines;
  setPrintListener([&](const std::string& line) {
    lines.push_back(line);
    if (line == "one") print("from within");
  });
  print("one");
  setPrintListener(nullptr);
  print("two");
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "from within"}));
}

} // namespace
} // namespace zuvi
