#include "modengine/directive.h"

#include <gtest/gtest.h>

#include <chrono>

namespace varnik {
namespace {

struct LineCase {
  const char* line;
  Args args;
  const char* comment;
};

const LineCase kLines[] = {
    {"rename(a.txt,b.txt);", {"rename", "a.txt", "b.txt"}, "none"},
    {"RENAME ( \"a, b.txt\" , c.txt );", {"RENAME", "a, b.txt", "c.txt"}, "none"},
    {"dname(My Mod); // first", {"dname", "My Mod"}, " first"},
    {"foo();", {"foo", ""}, "none"},
    {"foo()", {"foo", ")"}, "none"},
    {"foo(", {"foo"}, "none"},
    {"foo( //", {"foo", ""}, ""},
    {"foo(a,);", {"foo", "a", ""}, "none"},
    {"foo(a,)", {"foo", "a", ")"}, "none"},
    {"foo(a, // b", {"foo", "a", ""}, " b"},
    {"foo(a,,b);", {"foo", "a", "b"}, "none"},
    {"foo(a,\"\",b);", {"foo", "a", "", "b"}, "none"},
    {"foo(\" a \");", {"foo", "a"}, "none"},
    {"foo(a\"b,c\"d,\"e, f);", {"foo", "ab,cd", "e, f"}, "none"},
    {"fold(x);  ", {"fold", "x);"}, "none"},
    {"fold(x);  //", {"fold", "x"}, ""},
    {"image(\"http://x\");", {"image", "http:"}, "x\");"},
    {"; rename(a,b);", {"; rename", "a", "b"}, "none"},
    {"BZ2HALD5 /x", {""}, "none"},
    {"activated;", {""}, "none"},
    {");", {""}, "none"},
    {"", {""}, "none"},
    {"foo(a)(b);", {"foo", "a)(b"}, "none"},
    {"foo(a,\t b\t);\t", {"foo", "a", "\t b\t);\t"}, "none"},
};

TEST(ParseDirective, SplitsNameArgumentsAndComment) {
  for (const LineCase& c : kLines) {
    SCOPED_TRACE(c.line);
    Args args = {"left", "over"};
    std::string comment = "none";
    ParseDirective(c.line, args, comment);
    EXPECT_EQ(args, c.args);
    EXPECT_EQ(comment, c.comment);
  }
}

TEST(ParseDirective, TakesMillionsOfCharactersInLinearTime) {
  const std::string hostile[] = {std::string(4'000'000, '('), "f(" + std::string(4'000'000, '"') + ");",
                                 std::string(4'000'000, ' ') + "//", "f(" + std::string(4'000'000, '/')};
  Args args;
  const auto start = std::chrono::steady_clock::now();
  for (const std::string& line : hostile)
    ParseDirective(line, args);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

struct MarkerCase {
  const char* line;
  bool good;
  double version;
};

const MarkerCase kMarkers[] = {
    {"BZ2HALD5", true, 5},   {"  bz2Hald5 /x ", true, 5}, {"bz2hald", false, -9},
    {"bz2hald ", false, -9}, {"bz2haldx", true, 0},       {"bz2hald2.5", true, 2.5},
    {"bz2hald-1", true, -1}, {"xbz2hald5", false, -9},    {"bz2hald5 5", true, 5},
    {"", false, -9},         {"bz2hald 5", true, 5},      {"\tbz2hald5", false, -9},
};

TEST(ReadMarker, NeedsTheWordAndSomethingBehindIt) {
  for (const MarkerCase& c : kMarkers) {
    SCOPED_TRACE(c.line);
    double version = -9;
    EXPECT_EQ(ReadMarker(c.line, version), c.good);
    EXPECT_EQ(version, c.version);
  }
}

}  // namespace
}  // namespace varnik
