#include "platform/system/text/argumentlist.h"

#include <gtest/gtest.h>

namespace {

using List = std::vector<std::string>;

TEST(ArgumentList, TheProgramEndsAtItsQuoteOrAtTheFirstBlank) {
  const struct {
    const char *line, *program, *tail;
  } kCases[] = {
      {R"("C:\a b\bzone.exe"  -win )", R"(C:\a b\bzone.exe)", "  -win "},
      {R"(  C:\bz\bzone.exe -win)", R"(C:\bz\bzone.exe)", " -win"},
      {R"("C:\bz\"x y)", R"(C:\bz\)", "x y"},
      {R"("C:\bz)", R"(C:\bz)", ""},
      {"", "", ""},
      {"\"", "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.line);
    const win::ProgramAndTail line = win::SplitProgram(c.line);
    EXPECT_EQ(line.program, c.program);
    EXPECT_EQ(line.tail, c.tail);
  }
}

TEST(ArgumentList, SplitsAsTheCRuntimeDoes) {
  const struct {
    const char* tail;
    List arguments;
  } kCases[] = {
      {" \t ", {}},
      {"  a \t b  ", {"a", "b"}},
      {R"("my map.bzn" -x)", {"my map.bzn", "-x"}},
      {R"(/name="Foo Bar"s)", {"/name=Foo Bars"}},
      {R"("" a)", {"", "a"}},
      {R"(a\b c:\d\ \\srv)", {R"(a\b)", R"(c:\d\)", R"(\\srv)"}},
      {R"(a\"b "a\\" a\\\"b)", {R"(a"b)", R"(a\)", R"(a\"b)"}},
      {R"("a""b c" d)", {R"(a"b c)", "d"}},
      {R"(a""b)", {"ab"}},
      {R"("open end )", {"open end "}},
      {R"("a\)", {R"(a\)"}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.tail);
    EXPECT_EQ(win::SplitArguments(c.tail), c.arguments);
  }
}

}  // namespace
