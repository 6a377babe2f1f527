#include "platform/system/text/compare.h"

#include "platform/system/text/text.h"
#include "tests/platform/system/vectors.h"

#include <gtest/gtest.h>

namespace {

// Each text of a row stands ahead of the next, in Windows-1252 bytes and in their UTF-8 spelling.
TEST(CompareForList, OrdersAsMeasured) {
  const auto rows = test::VectorRows("sort_chains.jsonl");
  ASSERT_EQ(rows.size(), 63u);
  for (const auto& row : rows)
    for (std::size_t i = 1; i < row.size(); ++i) {
      const std::string a = *test::RowBytes(row[i - 1]), b = *test::RowBytes(row[i]);
      SCOPED_TRACE(a + " < " + b);
      EXPECT_LT(win::CompareForList(a, b), 0);
      EXPECT_LT(win::CompareForList(win::Utf8FromBytes(a), b), 0);
      EXPECT_GT(win::CompareForList(b, win::Utf8FromBytes(a)), 0);
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
