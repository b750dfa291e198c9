#include "tavolite/system/large_stack.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace host {
namespace {

// Uses about a kilobyte of the stack for each level.
int Descend(long levels) {
  volatile char room[1024];
  room[0] = 1;
  return levels == 0 ? room[0] : Descend(levels - 1) + room[0];
}

TEST(LargeStack, HoldsDeepWorkAndHandsExceptionsOn) {
  int depth = 0;
  EXPECT_TRUE(RunOnLargeStack([&] { depth = Descend(100'000); }));
  EXPECT_EQ(depth, 100'001);
  EXPECT_THROW((void)RunOnLargeStack([] { throw std::runtime_error("fault"); }),
               std::runtime_error);
}

TEST(LargeStackDeathTest, ItsEndIsToldAndTheProcessLives) {
  EXPECT_EXIT(std::_Exit(RunOnLargeStack([] { Descend(1'000'000'000); }) ? 1 : 7),
              testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace host
