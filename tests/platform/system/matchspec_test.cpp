#include "platform/system/findfile.h"
#include "tests/platform/system/vectors.h"

#include <gtest/gtest.h>

namespace {

TEST(PathMatchSpec, MatchesAsMeasured) {
  const auto rows = test::VectorRows("matchspec.jsonl");
  ASSERT_EQ(rows.size(), 169u);
  for (const auto& row : rows)
    EXPECT_EQ(win::PathMatchSpec(row["name"].get<std::string>(), row["spec"].get<std::string>()), row["match"]) << row;
}

TEST(PathMatchSpec, TakesBytesOfBothEncodings) {
  EXPECT_TRUE(win::PathMatchSpec("caf\xE9.bmp", "CAFÉ.*"));
  EXPECT_TRUE(win::PathMatchSpec("\xE9", "?"));
}

TEST(PathMatchSpec, ManyStarsAreNoTrap) {
  std::string pattern;
  for (int i = 0; i < 1'000; ++i)
    pattern += "*a";
  EXPECT_FALSE(win::PathMatchSpec(std::string(250, 'a') + "b", pattern + "*c*"));
  EXPECT_FALSE(win::PathMatchSpec(std::string(250, 'a') + "é", pattern + "*c*"));
}

}  // namespace
