#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/Dispatch/DelayedCalls.h"
#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Dispatch/MainLoop.h"
#include "platform/Dispatch/VirtualTime.h"

#include <atomic>
#include <limits>
#include <set>
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

TEST_F(MainQueueTest, TurnsLeaveWhatTheyAddToTheNextAndMayNest) {
  queue_.async([this] { queue_.async(note("later")); });
  EXPECT_EQ(queue_.runDue(), 1);
  EXPECT_EQ(log_, "");
  EXPECT_EQ(queue_.runDue(), 1);
  queue_.async([this] {
    log_ += "(";
    queue_.runDue();
    log_ += ")";
  });
  queue_.async(note("b"));
  time_.settle();
  EXPECT_EQ(log_, "later(b)");
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

TEST_F(MainQueueTest, OtherThreadsPostInOrderAndWakeTheWaiter) {
  constexpr int each = 500;
  std::vector<int> next(4);
  std::vector<std::jthread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < each; ++i)
        queue_.async([&, t, i] { EXPECT_EQ(next[t]++, i); });
      EXPECT_FALSE(queue_.isCurrent());
    });
  EXPECT_TRUE(time_.waitUntil([&] { return next == std::vector<int>(4, each); }));
}

TEST_F(MainQueueTest, GlobalQueueRunsOffTheMainThread) {
  std::atomic<bool> released = false, done = false;
  DispatchQueue::global().async([&] { // one that blocks must not stop the others
    released.wait(false);
    done = !queue_.isCurrent();
  });
  DispatchQueue::global().async([&] {
    released = true;
    released.notify_all();
  });
  EXPECT_TRUE(time_.waitUntil([&] { return done.load(); }));
}

TEST_F(MainQueueTest, DelayedCallsGoByNameAndDieWithTheirOwner) {
  auto calls = std::make_unique<DelayedCalls>();
  calls->perform("a", 1, note("a1"));
  calls->perform("a", 1, note("a2"));
  calls->perform("b", 1, note("b1"));
  calls->cancel("b");
  time_.advance(1);
  calls->perform("end", 1, [&] { calls.reset(); });
  calls->perform("late", 2, note("late"));
  time_.advance(5);
  EXPECT_EQ(calls, nullptr);
  EXPECT_EQ(log_, "a1a2");
}

TEST(AssertMainQueueTest, TellsWhereWhatWasTouchedBelongs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  assertMainQueue("A view");
  EXPECT_DEATH(std::thread([] { assertMainQueue("A view"); }).join(),
               "A view .*DispatchQueue::main\\(\\)\\.async");
}

TEST(MainLoopTest, RunsWorkInOrderAndIsWokenFromAsleep) {
  auto& queue = DispatchQueue::main();
  MainLoop::attach();
  MainLoop::attach();
  std::string log;
  const double start = queue.now();
  double ended = 0;
  queue.asyncAfter(3600, [] { FAIL(); });
  queue.asyncAfter(0.05, [&] {
    log += "2";
    EXPECT_GE(queue.now() - start, 0.05);
    std::thread([&queue, &log, &ended] {
      queue.async([&] {
        log += "3";
        EXPECT_TRUE(queue.isCurrent());
        ended = queue.now();
        MainLoop::stop();
      });
    }).detach();
  });
  queue.async([&] {
    log += "1";
    queue.async([&] {
      log += "n";
      MainLoop::stop();
    });
    MainLoop::run(); // such as a dialogue's
    log += "N";
  });
  MainLoop::run();
  EXPECT_EQ(log, "1nN23");
  EXPECT_LT(ended - start, 60); // and not at the next deadline, an hour away
  queue.removeAll();
}

} // namespace
} // namespace zuvi
