#include "platform/Dispatch/DelayedCalls.h"
#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Dispatch/VirtualTime.h"

#include <atomic>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace zuvi {
namespace {

class MainQueueTest : public testing::Test {
protected:
  Work note(const std::string& name) {
    return [this, name] { log_ += name; };
  }

  MainQueue& queue_ = DispatchQueue::main();
  VirtualTime time_;
  std::string log_;
};

TEST_F(MainQueueTest, RunsByDeadlineAndThenByArrival) {
  queue_.asyncAfter(2, note("d"));
  queue_.asyncAfter(1, note("b"));
  queue_.asyncAfter(1, note("c"));
  queue_.asyncAfter(-5, note("a"));
  queue_.asyncAfter(std::numeric_limits<double>::quiet_NaN(), note("A"));
  time_.advance(1);
  EXPECT_EQ(log_, "aAbc");
  time_.advance(1);
  EXPECT_EQ(log_, "aAbcd");
}

TEST_F(MainQueueTest, WorkSeesItsOwnDeadlineAsTheTime) {
  std::vector<double> offsets;
  const double start = queue_.now();
  queue_.asyncAfter(0.5, [&] {
    offsets.push_back(queue_.now() - start);
    queue_.asyncAfter(0.25, [&] { offsets.push_back(queue_.now() - start); });
  });
  time_.advance(10);
  EXPECT_EQ(offsets, (std::vector<double>{0.5, 0.75}));
  EXPECT_DOUBLE_EQ(queue_.now() - start, 10);
}

TEST_F(MainQueueTest, ManySmallStepsReachTheSameDeadlineAsOneLarge) {
  queue_.asyncAfter(1, note("x"));
  for (int i = 0; i < 10; ++i)
    time_.advance(0.1);
  EXPECT_EQ(log_, "x");
}

TEST_F(MainQueueTest, OneTurnLeavesWhatItAddsToTheNext) {
  queue_.async([this] { queue_.async(note("later")); });
  EXPECT_EQ(queue_.runDue(), 1);
  EXPECT_EQ(log_, "");
  EXPECT_EQ(queue_.runDue(), 1);
  EXPECT_EQ(log_, "later");
}

TEST_F(MainQueueTest, CancelledWorkNeitherRunsNorLives) {
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  WorkId second = 0;
  queue_.async([&] { queue_.cancel(second); });
  // What the work holds comes back to the queue while it dies.
  const std::shared_ptr<void> reentrant(nullptr, [this](void*) { queue_.async(note("z")); });
  second = queue_.async([held = std::move(held), reentrant] { FAIL() << *held; });
  queue_.cancel(0);
  queue_.cancel(second + 1000);
  time_.settle();
  EXPECT_TRUE(watch.expired());
}

TEST_F(MainQueueTest, NestedTurnsKeepTheOrder) {
  queue_.async([this] {
    log_ += "(";
    queue_.runDue();
    log_ += ")";
  });
  queue_.async(note("b"));
  time_.settle();
  EXPECT_EQ(log_, "(b)");
}

TEST_F(MainQueueTest, OtherThreadsPostInOrderAndWakeTheWaiter) {
  constexpr int each = 500;
  std::vector<std::vector<int>> seen(4);
  int total = 0;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < each; ++i)
        queue_.async([&, t, i] {
          EXPECT_TRUE(queue_.isCurrent());
          seen[t].push_back(i);
          ++total;
        });
      EXPECT_FALSE(queue_.isCurrent());
    });
  EXPECT_TRUE(time_.waitUntil([&] { return total == 4 * each; }));
  for (auto& thread : threads)
    thread.join();
  for (const auto& numbers : seen)
    for (int i = 0; i < each; ++i)
      ASSERT_EQ(numbers[i], i);
}

TEST_F(MainQueueTest, GlobalQueueRunsOffTheMainThread) {
  std::atomic<int> count = 0;
  bool offMain = false;
  DispatchQueue::global().async([&] {
    const bool main = queue_.isCurrent();
    queue_.async([&, main] { offMain = !main; });
  });
  // One that blocks must not stop the others.
  std::atomic<bool> released = false;
  DispatchQueue::global().async([&] {
    released.wait(false);
    ++count;
  });
  DispatchQueue::global().async([&] {
    ++count;
    released = true;
    released.notify_all();
  });
  EXPECT_TRUE(time_.waitUntil([&] { return offMain && count == 2; }));
}

TEST_F(MainQueueTest, DelayedCallsGoByNameAndDieWithTheirOwner) {
  auto calls = std::make_unique<DelayedCalls>();
  calls->perform("a", 1, note("a1"));
  calls->perform("a", 1, note("a2"));
  calls->perform("b", 1, note("b1"));
  calls->cancel("b");
  time_.advance(1);
  EXPECT_EQ(log_, "a1a2");

  calls->perform("a", 1, note("x"));
  calls->perform("b", 1, note("y"));
  calls->cancel("a");
  time_.advance(1);
  EXPECT_EQ(log_, "a1a2y");

  calls->perform("end", 1, [&] { calls.reset(); });
  calls->perform("late", 2, note("late"));
  time_.advance(5);
  EXPECT_EQ(calls, nullptr);
  EXPECT_EQ(log_, "a1a2y");
}

} // namespace
} // namespace zuvi
