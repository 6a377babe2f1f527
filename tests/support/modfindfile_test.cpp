#include "support/modfindfile.h"

#include "support/install.h"
#include "support/modfileexists.h"
#include "tests/modengine/modtest.h"

#include <algorithm>

using namespace varnik;

namespace {

class FindFilesTest : public test::ModTest {
 protected:
  FindFilesTest() {
    StartWith("a.bzm= b.txt= Sub/C.BZM= Sub/Deep/d.bzm= .dot/e.bzm= .f.bzm= Folder.bzm/none.txt=");
    params_.Recurse = true;
    params_.Pattern = "*.bzm";
  }

  // Sorted, below the install, with a blank behind each.
  std::string Find(const std::string& below = "", bool stopAtFirst = false) {
    FindFiles(Root() + below, params_, results_, stopAtFirst);
    std::vector<std::string> found(results_.begin() + 1, results_.end());
    std::sort(found.begin(), found.end());
    std::string names;
    for (const std::string& path : found)
      names += path.substr(Root().size()) + " ";
    return names;
  }

  FileSearchParams params_;
  FileSearchResults results_{1};
};

TEST_F(FindFilesTest, EntersAllButDotFoldersAndPumpsEventsInEach) {
  int pumped = 0;
  OnEvents([&] { ++pumped; });
  EXPECT_EQ(Find(), ".f.bzm Sub\\C.BZM Sub\\Deep\\d.bzm a.bzm ");
  EXPECT_EQ(pumped, 4);
  EXPECT_EQ(params_.FoundCount, 4);
  EXPECT_EQ(params_.SearchedCount, 8 + 4 + 3 + 3);  // `.` and `..` of each folder included
  params_ = {};
  params_.Pattern = "*.bzm";
  params_.MatchSense = 0;
  EXPECT_EQ(Find(), "b.txt ");  // in this folder, and what does not match
}

TEST_F(FindFilesTest, SearchesAddUpAndTheFirstHitEndsOneAfterItsFolder) {
  Put("top/One/x.bzm= top/One/y.bzm= flat/x.bzm= flat/y.bzm=");
  Find("none\\");
  EXPECT_EQ(Find("top\\", true), "top\\One\\x.bzm top\\One\\y.bzm ");
  EXPECT_EQ(Find("sub\\deep\\"), "sub\\deep\\d.bzm top\\One\\x.bzm top\\One\\y.bzm ");
  Find("", true);
  EXPECT_EQ(params_.FoundCount, 3);
  params_.FoundCount = 0;
  results_.assign(1, "");
  Find("flat\\", true);
  EXPECT_EQ(results_.size(), 2u);
}

TEST_F(FindFilesTest, ALinkLoopIsNotEnteredTwice) {
  std::filesystem::create_directory_symlink("..", InRoot("Sub/up"));
  std::filesystem::create_directory_symlink("Sub", InRoot("again"));
  EXPECT_EQ(Find(), ".f.bzm Sub\\C.BZM Sub\\Deep\\d.bzm a.bzm again\\C.BZM again\\Deep\\d.bzm ");
}

TEST_F(FindFilesTest, SearchDirsAreSearchedFromTheOneGiven) {
  SearchDirs = {"", "none", "sub"};
  EXPECT_EQ(FindInSearchDirs("c.bzm", 1), Root() + "sub\\C.BZM");
  EXPECT_EQ(FindInSearchDirs("a.bzm", 1) + FindInSearchDirs("c.bzm", 9), "");
  SelectInstall(-1);
  EXPECT_EQ(FindInSearchDirs("c.bzm", 1), "");
}

TEST_F(FindFilesTest, FileExistsLooksPastBlanksAndASeparator) {
  for (const std::string& path :
       {Root(), "  " + Root() + "SUB \\ ", Root() + "sub/", Root() + "A.BZM", Root() + "*.b?m"})
    EXPECT_TRUE(FileExists(path)) << path;
  for (const std::string& path : {Root() + "sub\\\\", Root() + "none", std::string(), std::string("\\")})
    EXPECT_FALSE(FileExists(path)) << path;
}

}  // namespace
