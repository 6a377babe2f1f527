#include "platform/system/compare.h"

#include "platform/system/text.h"
#include "tests/platform/system/vectors.h"

#include <gtest/gtest.h>

namespace {

int Sign(int value) {
  return (value > 0) - (value < 0);
}

// Every row holds for Windows-1252 bytes and for their UTF-8 spelling.
TEST(CompareForList, OrdersAsMeasured) {
  const auto rows = test::VectorRows("sort_pairs.jsonl");
  ASSERT_EQ(rows.size(), 562u);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.dump());
    const std::string a = *test::RowBytes(row["a"]), b = *test::RowBytes(row["b"]);
    EXPECT_EQ(Sign(win::CompareForList(a, b)), row["order"]);
    EXPECT_EQ(Sign(win::CompareForList(win::Utf8FromBytes(a), b)), row["order"]);
    EXPECT_EQ(Sign(win::CompareForList(b, win::Utf8FromBytes(a))), -row["order"].get<int>());
  }
}

// Each text stands ahead of the next.
const std::vector<const char*> kChains[] = {
    {"",  " ",  "!", "\"", "#", "$", "%", "&", "(", "*", ",", ".", "/", ":", ";", "?", "@",
     "[", "\\", "^", "_",  "`", "{", "|", "~", "+", "<", "=", ">", "0", "9", "a", "b", "z"},
    {"(INACTIVE)", "*No Map*", "[x]", "_x", "<No Mod>", "1st", "a"},
    {"co op", "coo", "coop", "co'op", "co-op", "coopa"},
    {"-coop", "c-oop", "coop-a"},
    {"e", "\xE9", "f"},
    {"map1", "map10", "map2"},
};

TEST(CompareForList, OrdersChains) {
  for (const auto& chain : kChains)
    for (std::size_t i = 1; i < chain.size(); ++i) {
      SCOPED_TRACE(std::string(chain[i - 1]) + " < " + chain[i]);
      EXPECT_EQ(Sign(win::CompareForList(chain[i - 1], chain[i])), -1);
    }
}

TEST(CompareForList, TakesTextsThatDifferInCaseOnlyAsEqual) {
  EXPECT_EQ(win::CompareForList("Co-Op \xC9", "co-op \xE9"), 0);
  EXPECT_EQ(win::CompareForList("MAP1", "map1"), 0);
}

TEST(ListSortKey, TakesAnyBytes) {
  std::string bytes;
  for (int i = 0; i < 70000; ++i)
    bytes += static_cast<char>(i * 7 % 256);
  EXPECT_EQ(win::CompareForList(bytes, bytes), 0);
  EXPECT_NE(win::CompareForList(bytes, bytes + "a"), 0);
}

}  // namespace
