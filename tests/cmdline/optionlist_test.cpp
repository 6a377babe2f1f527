#include "cmdline/optionlist.h"

#include "tests/harness/cases.h"
#include "tests/harness/failingreads.h"
#include "tests/modengine/modtest.h"

using namespace varnik;

namespace {

using OptionFile = test::ModTest;

TEST_F(OptionFile, ReadsOneOptionALineAndWritesItsRowsBack) {
  test::WriteFile(InRoot("varnik.cmd"), "*A\r\n \r\nA:12\r\n *A: \r\nA:b:c\r\n*\r\n* A : b\r\n**A");
  std::string read;
  const auto options = ReadOptionList(OptionListFile());
  for (const OptionEntry& option : options.value())
    read += (option.ticked ? "[x" : "[") + option.text + (option.hasSubParam ? "|" : "/") + option.subParam + "]";
  EXPECT_EQ(read, "[xA/None][A|12][xA|][A|b:c][x/None][x A | b][x*A/None]");
  EXPECT_TRUE(WriteOptionRows(CustomOptionFile(), *ReadOptionRows(CustomOptionFile())));
  EXPECT_EQ(Content("varnik.cmd"), "*A\r\nA:12\r\n*A:\r\nA:b:c\r\n*\r\n* A : b\r\n**A\r\n");
  const test::FailingReads disk("varnik.cmd", 2);
  EXPECT_FALSE(ReadOptionList(OptionListFile()));
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

TEST(OptionLine, PutsMapAndSwitchAround) {
  for (const test::Case& c : test::Cases("cmdline/lines.jsonl")) {
    const CommandLineParts parts = {c.at("options"), c.at("map"), c.at("editBox")};
    EXPECT_EQ(BuildCommandLine(parts, c.at("keepsEditSwitches")), c.at("line")) << c;
  }
}

}  // namespace
