#include <ZuviSDK/Dispatch/DelayedCalls.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Dispatch/MainLoop.h>
#include "testing/Dispatch/VirtualTime.h"

#include <atomic>
#include <limits>
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
  WorkId second = 0;
  queue_.async([&] { queue_.cancel(second); });
  // What the work holds comes back to the queue while it dies.
  std::shared_ptr<void> held(nullptr, [this](void*) { queue_.async(note("died")); });
  second = queue_.async([held = std::move(held)] { FAIL() << held.get(); });
  queue_.cancel(0);
  queue_.cancel(second + 1000);
  time_.settle();
  EXPECT_EQ(log_, "died");
}

TEST_F(MainQueueTest, OtherThreadsPostInOrderAndWakeTheWaiter) {
  std::vector<int> next(4);
  std::vector<std::jthread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < 500; ++i)
        queue_.async([&, t, i] { EXPECT_EQ(next[t]++, i); });
    });
  EXPECT_TRUE(time_.waitUntil([&] { return next == std::vector<int>(4, 500); }));
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
  for (const char* name : {"a", "b", "a"})
    calls->perform(name, 1, note(name));
  calls->cancel("b");
  time_.advance(1);
  calls->perform("end", 1, [&] { calls.reset(); });
  calls->perform("late", 2, note("late"));
  time_.advance(5);
  EXPECT_EQ(log_, "aa");
}

TEST(MainLoopTest, RunsWorkInOrderAndIsWokenFromAsleep) {
  auto& queue = DispatchQueue::main();
  MainLoop::attach();
  MainLoop::attach();
  std::string log;
  const double start = queue.now();
  const auto end = [&](const char* word) {
    log += word;
    MainLoop::stop();
  };
  queue.asyncAfter(3600, [] { FAIL(); });
  queue.asyncAfter(0.05, [&] {
    EXPECT_GE(queue.now() - start, 0.05);
    log += "2";
    std::thread([&] { queue.async([&] { end("3"); }); }).detach();
  });
  queue.async([&] {
    log += "1";
    queue.async([&] { end("n"); });
    MainLoop::run(); // such as a dialogue's
    log += "N";
  });
  MainLoop::run();
  EXPECT_EQ(log, "1nN23");
  EXPECT_LT(queue.now() - start, 60); // and not at the next deadline, an hour away
  queue.removeAll();
}

} // namespace
} // namespace zuvi
