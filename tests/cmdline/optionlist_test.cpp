#include "cmdline/optionlist.h"

#include "tests/modengine/modtest.h"

#include <tuple>

using namespace varnik;

namespace {

using OptionFile = test::ModTest;

TEST_F(OptionFile, ReadsOneOptionALineAndWritesItsRowsBack) {
  test::WriteFile(InRoot("varnik.cmd"), "*A\r\n \r\nA:12\r\n *A: \r\nA:b:c\r\n*\r\n* A : b\r\n**A");
  std::string read;
  for (const OptionEntry& option : ReadOptionList(OptionListFile()))
    read += (option.ticked ? "[x" : "[") + option.text + (option.hasSubParam ? "|" : "/") + option.subParam + "]";
  EXPECT_EQ(read, "[xA/None][A|12][xA|][A|b:c][x/None][x A | b][x*A/None]");
  EXPECT_TRUE(WriteOptionRows(CustomOptionFile(), ReadOptionRows(CustomOptionFile())));
  EXPECT_EQ(Content("varnik.cmd"), "*A\r\nA:12\r\n*A:\r\nA:b:c\r\n*\r\n* A : b\r\n**A\r\n");
}

TEST_F(OptionFile, OfAnInstallHidesTheProgramsFile) {
  EXPECT_EQ(OptionListFile(), "");
  test::WriteFile(sandbox_.App() / "varnik.cmd", "A\n");
  EXPECT_EQ(OptionListFile(), AppPath + "varnik.cmd");
  EXPECT_TRUE(WriteOptionRows(CustomOptionFile(), {}));
  EXPECT_EQ(OptionListFile(), Root() + "varnik.cmd");
}

TEST(OptionLine, JoinsTickedRowsByOneBlank) {
  EXPECT_EQ(JoinTickedOptions({{" A ", false, "None", true},
                               {"B", true, "", true},
                               {"C", false, "None", false},
                               {"D", true, " 12 ", true}}),
            "A B D  12");
}

const std::tuple<CommandLineParts, bool, const char*> kBuilds[] = {
    {{"", "", false}, true, ""},
    {{"A B 12", "my m.bzn", false}, true, "\"my m.bzn\" A B 12"},
    {{"A -edit", "m.bzn", true}, true, "m.bzn A -edit"},
    {{"-EDIT", "m.bzn", true}, true, "/edit m.bzn -EDIT"},
    {{"/edit A +edit -edit", " ", true}, true, " A  "},
    {{"/e/editdit A -editor", "", true}, true, " A or"},
    {{"/edit A", "m.bzn", true}, false, " A"},
};

TEST(OptionLine, PutsMapAndSwitchAround) {
  for (const auto& [parts, keepEditSwitches, line] : kBuilds)
    EXPECT_EQ(BuildCommandLine(parts, keepEditSwitches), line) << parts.options;
}

}  // namespace
