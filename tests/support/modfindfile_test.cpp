#include "support/modfindfile.h"

#include "installs/installlist.h"
#include "platform/system/process/services.h"
#include "support/modfileexists.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

namespace fs = std::filesystem;

class FindFilesTest : public testing::Test {
 protected:
  test::Sandbox sandbox_;
  varnik::FileSearchParams params_;
  varnik::FileSearchResults results_;

  void SetUp() override {
    for (const char* file :
         {"a.bzm", "b.txt", "Sub/C.BZM", "Sub/Deep/d.bzm", ".dot/e.bzm", ".f.bzm", "Folder.bzm/none.txt"})
      test::WriteFile(sandbox_.Install() / file, "");
    params_.Recurse = true;
    params_.Pattern = "*.bzm";
  }

  // Sorted, below the install.
  std::vector<std::string> Find(const std::string& below = "", bool stopAtFirst = false) {
    varnik::FindFiles(sandbox_.InstallText() + below, params_, results_, stopAtFirst);
    std::vector<std::string> found;
    for (std::size_t i = 1; i < results_.size(); ++i)
      found.push_back(results_[i].substr(sandbox_.InstallText().size()));
    EXPECT_EQ(static_cast<std::size_t>(params_.FoundCount), found.size());
    std::sort(found.begin(), found.end());
    return found;
  }
  using Names = std::vector<std::string>;
};

TEST_F(FindFilesTest, EntersAllButDotFoldersAndListsFilesOnly) {
  EXPECT_EQ(Find(), (Names{".f.bzm", "Sub\\C.BZM", "Sub\\Deep\\d.bzm", "a.bzm"}));
  EXPECT_EQ(params_.SearchedCount, 8 + 4 + 3 + 3);  // `.` and `..` of each folder included
}

TEST_F(FindFilesTest, StaysInTheFolderWithoutRecurse) {
  params_.Recurse = false;
  EXPECT_EQ(Find(), (Names{".f.bzm", "a.bzm"}));
  EXPECT_EQ(params_.SearchedCount, 8);
}

TEST_F(FindFilesTest, KeepsWhatDoesNotMatchWhenAsked) {
  params_.MatchSense = 0;
  EXPECT_EQ(Find(), (Names{"Folder.bzm\\none.txt", "b.txt"}));
}

TEST_F(FindFilesTest, SearchesAddUp) {
  Find("Sub\\Deep\\");
  Find("none\\");
  EXPECT_EQ(Find("sub\\deep\\"), (Names{"Sub\\Deep\\d.bzm", "sub\\deep\\d.bzm"}));
  Find("", true);
  EXPECT_EQ(params_.FoundCount, 2);
}

TEST_F(FindFilesTest, TheFirstHitEndsTheSearchAfterItsFolder) {
  for (const char* file : {"top/One/x.bzm", "top/One/y.bzm"})
    test::WriteFile(sandbox_.Install() / file, "");
  EXPECT_EQ(Find("top\\", true), (Names{"top\\One\\x.bzm", "top\\One\\y.bzm"}));
  params_.FoundCount = 0;
  results_.clear();
  for (const char* file : {"flat/x.bzm", "flat/y.bzm"})
    test::WriteFile(sandbox_.Install() / file, "");
  EXPECT_EQ(Find("flat\\", true).size(), 1u);
}

TEST_F(FindFilesTest, PumpsEventsOncePerFolder) {
  int pumped = 0;
  win::SetWindowServices({[&] { ++pumped; }, {}, {}});
  Find();
  win::SetWindowServices({});
  EXPECT_EQ(pumped, 4);
}

TEST_F(FindFilesTest, ALinkLoopIsNotEnteredTwice) {
  fs::create_directory_symlink("..", sandbox_.Install() / "Sub" / "up");
  fs::create_directory_symlink("Sub", sandbox_.Install() / "again");
  EXPECT_EQ(Find(), (Names{".f.bzm", "Sub\\C.BZM", "Sub\\Deep\\d.bzm", "a.bzm", "again\\C.BZM", "again\\Deep\\d.bzm"}));
}

TEST_F(FindFilesTest, SearchDirsAreSearchedInOrder) {
  for (const char* file : {"data/x/prefs.ini", "addon/prefs.ini"})
    test::WriteFile(sandbox_.Install() / file, "");
  varnik::SearchDirs = {"", "none", "data", "addon"};
  varnik::SelectInstall(-1);
  EXPECT_EQ(varnik::FindInSearchDirs("prefs.ini", 0), "");
  varnik::UseInstallFolder(sandbox_.InstallText());
  EXPECT_EQ(varnik::FindInSearchDirs("PREFS.INI", 1), sandbox_.InstallText() + "data\\x\\prefs.ini");
  EXPECT_NE(varnik::FindInSearchDirs("prefs.ini", 0), "");
  EXPECT_EQ(varnik::FindInSearchDirs("none.ini", 0), "");
  EXPECT_EQ(varnik::FindInSearchDirs("prefs.ini", 9), "");
  varnik::SelectInstall(-1);
  varnik::SearchDirs.resize(1);
}

TEST_F(FindFilesTest, FileExistsLooksPastBlanksAndASeparator) {
  const std::string root = sandbox_.InstallText();
  const struct {
    std::string path;
    bool exists;
  } cases[] = {
      {root, true},           {"  " + root + "SUB \\ ", true}, {root + "sub/", true},  {root + "sub\\\\", false},
      {root + "A.BZM", true}, {root + "*.b?m", true},          {root + "none", false}, {"", false},
      {"\\", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(varnik::FileExists(c.path), c.exists) << c.path;
}

}  // namespace
