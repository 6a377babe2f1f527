#include "support/quips.h"

#include <gtest/gtest.h>

namespace {

TEST(Quips, TheFirstComesHalfAsOftenAndTheLastNever) {
  constexpr int kParts = 36000;
  int shown[varnik::kQuipCount] = {};
  for (int i = 0; i < kParts; ++i)
    ++shown[varnik::QuipIndex((i + 0.5) / kParts)];
  EXPECT_EQ(shown[0], 1000);
  for (int row = 1; row < 17; ++row)
    EXPECT_EQ(shown[row], 2000) << row;
  EXPECT_EQ(shown[17], 3000);
  EXPECT_EQ(shown[18], 0);
}

}  // namespace
