#include "installs/installlist.h"
#include "installs/locations.h"
#include "support/install.h"
#include "support/runstate.h"
#include "support/settings.h"
#include "tests/harness/cases.h"
#include "tests/harness/crash.h"
#include "tests/harness/sandbox.h"

namespace varnik {
namespace {

// The list in one text: a star for a ticked row, its path, its description.
std::string Told(const LocationList& list) {
  std::string text;
  for (std::size_t i = 0; i < list.rows.size(); ++i)
    text += (list.rows[i].Offered ? "*" : "") + list.rows[i].Path + "=" + list.Descriptions[i] + ";";
  return text;
}

class Installs : public testing::Test {
 protected:
  Installs() { sandbox_.MakeInstall("1.2"); }

  static void StoreRow(int row, const std::string& path, const std::string& description, const std::string& offered) {
    Store(kInstallsSection, "BZ2Loc" + std::to_string(row), path);
    Store(kInstallsSection, "BZ2Des" + std::to_string(row), description);
    Store(kInstallsSection, "BZ2Sel" + std::to_string(row), offered);
  }

  static void StoreAll(const std::vector<std::string>& paths) {
    Forget(kInstallsSection);
    for (std::size_t i = 0; i < paths.size(); ++i)
      StoreRow(static_cast<int>(i), paths[i], " d" + std::to_string(i), i % 2 == 0 ? "Yes" : "");
  }

  test::Sandbox sandbox_;
  const std::string folder_ = sandbox_.Install().string();
};

class Locations : public Installs {};

TEST_F(Installs, ReadRowsUpToTheFirstGap) {
  StoreRow(0, " " + folder_ + "  ", " Mine ", " Yes ");  // trimmed, as row 0 only
  StoreRow(1, folder_ + "/", "", "yes");
  StoreRow(2, folder_ + "  ", "", "Yes");
  StoreRow(3, "/nowhere", "Gone", "Yes");
  StoreRow(5, folder_, "Never read", "Yes");
  ReadInstallList();
  std::string rows;
  for (std::size_t row = 0; row < InstallList.size(); ++row)
    rows += (IsOffered(row) ? "*" : "") + InstallList[row].Path + "=" + InstallList[row].Description + ";";
  EXPECT_EQ(rows, "*" + folder_ + "\\=Mine;" + folder_ + "/=(1.2)" + folder_ + "/;*" + folder_ + "  \\=(1.2)" +
                      folder_ + "  \\;/nowhere\\=;");
  Forget(kInstallsSection, "BZ2Loc1");
  ReadInstallList();
  EXPECT_EQ(InstallList.size(), 1u);
}

TEST_F(Installs, DetectTheVersion) {
  std::filesystem::remove_all(sandbox_.Install() / "addon");
  for (const test::Case& c : test::Cases("installs/versions.jsonl")) {
    test::WriteFile(sandbox_.Install() / c["file"], c.value("content", ""));
    UseInstallFolder(folder_);
    EXPECT_EQ(InstallVersion(), c["version"]) << c;
    EXPECT_EQ(IsVersion13(), InstallVersion() == "1.3");
    EXPECT_EQ(InstallRoot(), folder_ + "\\");
  }
}

TEST_F(Installs, NeedAllThreeFiles) {
  for (const char* name : {"bzone.exe", "data.pak", "binkw32.dll"}) {
    EXPECT_TRUE(IsBZ2Install("  " + folder_ + " ")) << name;
    std::filesystem::remove(sandbox_.Install() / name);
    EXPECT_FALSE(IsBZ2Install(folder_)) << name;
    sandbox_.MakeInstall("1.2");
  }
  EXPECT_FALSE(IsBZ2Install("  "));
}

TEST_F(Installs, AreSelectedByRowsOfTheListOnly) {
  StoreRow(0, folder_, "", "No");
  ReadInstallList();
  EXPECT_EQ(StoredActiveInstall(), -1);
  EXPECT_TRUE(SelectInstall(0));
  EXPECT_EQ(InstallRoot(), folder_ + "\\");
  for (const std::int16_t row : {std::int16_t{1}, std::int16_t{-1}, std::int16_t{-30000}}) {
    EXPECT_FALSE(SelectInstall(row));
    EXPECT_EQ(CurrentInstall, -1);
    EXPECT_EQ(InstallRoot() + InstallVersion(), "");
  }
  Store(kInstallsSection, "Active", "99999999");
  EXPECT_EQ(StoredActiveInstall(), -1);
}

TEST_F(Locations, LoadAsTheStoreHoldsThem) {
  for (const test::Case& c : test::Cases("installs/lists.jsonl")) {
    StoreAll(c["stored"]);
    EXPECT_EQ(Told(LoadLocations()), c["loaded"]) << c;
  }
}

TEST_F(Locations, ReplaceTheWholeSection) {
  StoreAll({"/a", "/b", "/c"});
  Store(kInstallsSection, "Active", "1");
  LocationList list = LoadLocations();
  RemoveLocation(list, 0);
  SaveLocations(list);
  EXPECT_EQ(Told(LoadLocations()), "/b\\=d1;*/c\\=d2;");
  EXPECT_EQ(ReadStored(kInstallsSection, "Active", "none"), "none");
  EXPECT_EQ(ReadStored(kInstallsSection, "BZ2Sel0"), "No");
  EXPECT_EQ(ReadStored(kInstallsSection, "BZ2Loc2", "none"), "none");
  SaveLocations({});
  EXPECT_EQ(ReadStored(kInstallsSection, "BZ2Loc0", "none"), "none");
}

TEST_F(Locations, OfAListCutOffAtItsTopAreKeptBehindTheNewRows) {
  StoreAll({"", "/b", "/c"});
  LocationList list;
  AddLocation(list, "/a\\");
  SaveLocations(list);
  EXPECT_EQ(Told(LoadLocations()), "*/a\\=;/b\\=d1;*/c\\=d2;");
}

TEST_F(Locations, AreAddedByManyProcessesAtOnceAndLeaveTheSelectionAlone) {
  StoreAll({"/a", "/b"});
  Store(kInstallsSection, "Active", "1");
  std::string path = folder_, script;
  for (int i = 0; i < 20; ++i)
    script += BINARY_DIR "/varnik-cli installs add " + (path += "/.") + " >/dev/null & ";
  EXPECT_EQ(std::system((script + "wait").c_str()), 0);
  EXPECT_EQ(LoadLocations().rows.size(), 22u);
  EXPECT_EQ(StoredActiveInstall(), 1);
}

TEST_F(Locations, SurviveAKillDuringTheSaveAsTheOldListOrTheNewOne) {
  const auto prepare = [] {
    StoreAll({"/a", "/b", "/c"});
    Store(kInstallsSection, "Active", "1");
  };
  const auto left = [] { return Told(LoadLocations()) + ReadStored(kInstallsSection, "Active"); };
  const std::string rows = "*/a\\=d0;/b\\=d1;*/c\\=d2;";
  const std::tuple<const char*, std::string, std::string> cases[] = {{"remove", "1", "*/a\\=d0;*/c\\=d2;"},
                                                                     {"add", folder_, rows + "*" + folder_ + "\\=;1"}};
  for (const auto& [verb, what, after] : cases)
    test::SweepKills({{BINARY_DIR "/varnik-cli", "installs", verb, what}}, prepare,
                     [&, &after = after] { EXPECT_TRUE(left() == rows + "1" || left() == after) << left(); });
}

}  // namespace
}  // namespace varnik
