#include "platform/system/program.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

namespace {

namespace fs = std::filesystem;

struct LineCase {
  std::vector<const char*> arguments;
  const char* line;
};

const LineCase kLines[] = {
    {{"varnik"}, ""},
    {{"varnik", "/boot"}, "/boot"},
    {{"varnik", "/bz2dir", "C:\\Games\\BZ 2\\", "", "a\tb"}, "/bz2dir \"C:\\Games\\BZ 2\\\" \"\" \"a\tb\""},
    {{"varnik", "/bz2dir \"C:\\a b\" /crash"}, "/bz2dir \"C:\\a b\" /crash"},
};

TEST(CommandLine, QuotesWhatHoldsBlanks) {
  for (const LineCase& c : kLines) {
    win::SetCommandLine(static_cast<int>(c.arguments.size()), c.arguments.data());
    EXPECT_EQ(win::CommandLine(), c.line);
  }
}

TEST(Folders, FollowTheXdgVariablesAndAreMadeForTheUserAlone) {
  test::Sandbox sandbox;
  const std::string home = sandbox.Home().string();
  setenv("XDG_CONFIG_HOME", (home + "/c/deep").c_str(), 1);
  EXPECT_EQ(win::ConfigFolder(), home + "/c/deep/varnik");
  EXPECT_EQ(fs::status(home + "/c/deep/varnik").permissions(), fs::perms::owner_all);
  setenv("XDG_CONFIG_HOME", "relative", 1);
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(win::ConfigFolder(), home + "/.config/varnik");
  EXPECT_EQ(win::AutostartFolder(), home + "/.config/autostart");
  EXPECT_EQ(win::DataFolder(), home + "/.local/share/varnik");
  EXPECT_TRUE(fs::is_directory(home + "/.local/share/varnik"));
}

TEST(Folders, RuntimeFolderIsNeverOneThatOthersCanEnter) {
  test::Sandbox sandbox;
  EXPECT_EQ(win::RuntimeFolder(), (sandbox.Home() / "run").string());
  const std::string name = "varnik-test-" + std::to_string(getpid());
  win::SetProgram({name, "", ""});
  const std::string own = "/tmp/" + name + "-" + std::to_string(getuid());
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(win::RuntimeFolder(), own);
  fs::permissions(own, fs::perms::all);
  EXPECT_EQ(win::RuntimeFolder(), win::ConfigFolder());
  fs::remove(own);
  fs::create_directory_symlink(sandbox.Home(), own);
  EXPECT_EQ(win::RuntimeFolder(), win::ConfigFolder());
  fs::remove(own);
}

TEST(ProgramFolder, IsTheGivenOneOrThatOfAPortableCopy) {
  test::Sandbox sandbox;
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), sandbox.AppText());
  setenv("VARNIK_HOME", "C:\\Games\\Varnik", 1);
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), "C:\\Games\\Varnik\\");
  setenv("VARNIK_HOME", "here", 1);
  EXPECT_EQ(win::ProgramFolder("varnik.cmd"), (fs::current_path() / "here").string() + "\\");
  unsetenv("VARNIK_HOME");
  const fs::path program = win::ExecutablePath();
  EXPECT_EQ(win::ProgramFolder(program.filename().string()), program.parent_path().string() + "\\");
}

TEST(ProgramFolder, IsFilledOnceAndNeverReplacesAFile) {
  test::Sandbox sandbox;
  const std::string name = "varnik-test-" + std::to_string(getpid());
  win::SetProgram({name, "", ""});
  const fs::path shipped = fs::path(win::ExecutablePath()).parent_path().parent_path() / "share" / name;
  test::WriteFile(shipped / "start.cmd", "marker");
  test::WriteFile(shipped / "mods" / "a.bzm", "shipped");
  test::WriteFile(shipped / "mods" / "b.bzm", "shipped");
  fs::permissions(shipped / "mods" / "b.bzm", fs::perms::owner_read);
  const fs::path data = sandbox.Home() / "data" / name;
  test::WriteFile(data / "mods" / "a.bzm", "the user's");
  EXPECT_EQ(win::ProgramFolder("start.cmd"), data.string() + "\\");
  const std::map<std::string, std::string> full = {
      {"mods/", ""}, {"mods/a.bzm", "the user's"}, {"mods/b.bzm", "shipped"}, {"start.cmd", "marker"}};
  EXPECT_EQ(test::Snapshot(data), full);
  EXPECT_NE(fs::status(data / "mods" / "b.bzm").permissions() & fs::perms::owner_write, fs::perms::none);
  fs::remove(data / "mods" / "b.bzm");
  win::ProgramFolder("start.cmd");
  EXPECT_FALSE(fs::exists(data / "mods" / "b.bzm"));
  fs::remove_all(shipped);
}

}  // namespace
