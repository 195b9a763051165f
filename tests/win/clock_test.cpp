#include <gtest/gtest.h>

#include "app/system_services.h"

TEST(WindowsClock, SleepAdvancesTheTickCount) {
  uint64_t start = systemTickMs();
  systemSleepMs(30);
  EXPECT_GE(systemTickMs() - start, 20u);
  EXPECT_FALSE(systemDesktopFolder().empty());
}
