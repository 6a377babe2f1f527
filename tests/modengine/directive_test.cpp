#include "definition/directive.h"

#include <gtest/gtest.h>

namespace varnik {
namespace {

struct LineCase {
  const char* line;
  Args args;
  const char* comment = "none";
};

const LineCase kLines[] = {
    {"rename(a.txt,b.txt);", {"rename", "a.txt", "b.txt"}},
    {"RENAME ( \"a, b.txt\" , c.txt );", {"RENAME", "a, b.txt", "c.txt"}},
    {"dname(My Mod); // first", {"dname", "My Mod"}, " first"},
    {"foo();", {"foo", ""}},
    {"foo()", {"foo", ")"}},
    {"foo(", {"foo"}},
    {"foo( //", {"foo", ""}, ""},
    {"foo(a,);", {"foo", "a", ""}},
    {"foo(a, // b", {"foo", "a", ""}, " b"},
    {"foo(a,,b,\"\",c);", {"foo", "a", "b", "", "c"}},
    {"foo(\" a \",a\"b,c\"d,\"e, f);", {"foo", "a", "ab,cd", "e, f"}},
    {"fold(x);  ", {"fold", "x);"}},
    {"image(\"http://x\");", {"image", "http:"}, "x\");"},
    {"; rename(a)(b);", {"; rename", "a)(b"}},
    {"activated;", {""}},
    {"", {""}},
    {"foo(a,\t b\t);\t", {"foo", "a", "\t b\t);\t"}},
};

TEST(ParseDirective, SplitsNameArgumentsAndComment) {
  Args args = {"left", "over", "from", "the", "last"};
  for (const LineCase& c : kLines) {
    SCOPED_TRACE(c.line);
    std::string comment = "none";
    ParseDirective(c.line, args, comment);
    EXPECT_EQ(args, c.args);
    EXPECT_EQ(comment, c.comment);
  }
}

struct MarkerCase {
  const char* line;
  bool good;
  double version;
};

const MarkerCase kMarkers[] = {
    {"BZ2HALD5", true, 5},  {"  bz2Hald5 /x ", true, 5}, {"bz2hald2.5", true, 2.5}, {"bz2hald-1", true, -1},
    {"bz2haldx", true, 0},  {"bz2hald5 5", true, 5},     {"bz2hald ", false, -9},   {"xbz2hald5", false, -9},
    {"bz2hald", false, -9}, {"\tbz2hald5", false, -9},
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
