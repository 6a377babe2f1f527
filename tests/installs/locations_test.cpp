#include "installs/locations.h"

#include <gtest/gtest.h>

#include "support/settings.h"
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

void StoreAll(const std::vector<std::string>& paths) {
  Forget(kInstallsSection);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const std::string n = std::to_string(i);
    Store(kInstallsSection, "BZ2Loc" + n, paths[i]);
    Store(kInstallsSection, "BZ2Des" + n, " d" + n);
    if (i % 2 == 0) Store(kInstallsSection, "BZ2Sel" + n, "Yes");
  }
}

struct LoadCase {
  std::vector<std::string> stored;
  const char* told;
};

const LoadCase kLoads[] = {
    {{}, ""},
    {{" /a ", "/b/", " "}, "*/a\\=d0;/b/=d1;* \\=d2;"},
    {{"/a", "/A"}, "*/a\\=d0;/A\\=d1;"},
    {{"/a", "", "/c"}, "*/a\\=d0;"},
    {{"/a", "/a", "/c"}, "*/a\\=d0;/c\\=d1;"},  // the second row goes, its description stays where it is
    {{"/a", "/a", "/a", "/b"}, "*/a\\=d0;/b\\=d1;"},
};

TEST(Locations, LoadAsTheStoreHoldsThem) {
  const test::Sandbox sandbox;
  for (const LoadCase& c : kLoads) {
    StoreAll(c.stored);
    EXPECT_EQ(Told(LoadLocations()), c.told);
  }
}

TEST(Locations, ReplaceTheWholeSection) {
  const test::Sandbox sandbox;
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

TEST(Locations, OfAListCutOffAtItsTopAreKeptBehindTheNewRows) {
  const test::Sandbox sandbox;
  StoreAll({"", "/b", "/c"});
  LocationList list;
  AddLocation(list, "/a\\");
  SaveLocations(list);
  EXPECT_EQ(Told(LoadLocations()), "/a\\=;/b\\=d1;*/c\\=d2;");
}

TEST(Locations, SurviveAKillDuringTheSaveAsTheOldListOrTheNewOne) {
  const test::Sandbox sandbox;
  const test::Command remove{{BINARY_DIR "/varnik-cli", "installs", "remove", "1"}};
  const auto prepare = [] { StoreAll({"/a", "/b", "/c"}); };
  test::SweepKills(remove, prepare, [] {
    const std::string left = Told(LoadLocations());
    EXPECT_TRUE(left == "*/a\\=d0;/b\\=d1;*/c\\=d2;" || left == "*/a\\=d0;*/c\\=d2;") << left;
  });
}

}  // namespace
}  // namespace varnik
