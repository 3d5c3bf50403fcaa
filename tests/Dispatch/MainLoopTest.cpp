#include "platform/Dispatch/MainLoop.h"
#include "platform/Dispatch/DispatchQueue.h"

#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace zuvi {
namespace {

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
  queue.async([&] { log += "1"; });
  MainLoop::run();
  EXPECT_EQ(log, "123");
  EXPECT_LT(ended - start, 60); // and not at the next deadline, an hour away
  queue.removeAll();
}

} // namespace
} // namespace zuvi
