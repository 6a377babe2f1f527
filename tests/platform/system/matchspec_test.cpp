#include "platform/system/text/wildcards.h"
#include "tests/platform/system/vectors.h"

#include <gtest/gtest.h>

namespace {

TEST(PathMatchSpec, MatchesAsMeasured) {
  const auto rows = test::VectorRows("matchspec.jsonl");
  ASSERT_EQ(rows.size(), 58u);
  for (const auto& row : rows)
    for (const char* side : {"matches", "others"})
      for (const std::string name : row[side])
        EXPECT_EQ(win::PathMatchSpec(name, row["pattern"].get<std::string>()), side == std::string("matches"))
            << name << " " << row["pattern"];
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
