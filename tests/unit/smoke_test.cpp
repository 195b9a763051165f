#include <gtest/gtest.h>

#include "sim/virtual_clock.h"

TEST(VirtualClock, SleepMovesTime) {
  virtualClockReset(0);
  systemSleepMs(10);
  EXPECT_EQ(systemTickMs(), 10u);
}
