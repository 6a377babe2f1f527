#include "maps/maplist.h"

#include "support/install.h"
#include "support/modfindfile.h"
#include "tests/maps/maptest.h"

namespace {

using varnik::MapList;

class MapListTest : public test::MapTest {
 protected:
  // "folder|file name|title" of every row.
  static std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    for (std::size_t row = 1; row < MapList.size(); ++row)
      rows.push_back(MapList[row].Folder + "|" + MapList[row].FileName + "|" + MapList[row].Title);
    return rows;
  }
  std::string Cache() const { return test::ReadFile(InRoot("varnik.lst")); }
};

using Strings = std::vector<std::string>;

TEST_F(MapListTest, TheOrderIsThatOfASearch) {
  for (int i = 0; i < 40; ++i)
    PutFile("d" + std::to_string(i % 5) + "/m" + std::to_string(i) + ".bzn");
  varnik::FileSearchParams params;
  params.Recurse = true;
  params.Pattern = "*.bzn";
  varnik::FileSearchResults found(1);
  varnik::FindFiles(Root(), params, found, false);
  varnik::LoadMapList(true);
  ASSERT_EQ(MapList.size(), found.size());
  std::string cache;
  for (std::size_t row = 1; row < found.size(); ++row) {
    EXPECT_EQ(Root() + MapList[row].Folder + MapList[row].FileName, found[row]);
    cache += found[row].substr(Root().size()) + "," + MapList[row].Folder + "\r\n";
  }
  EXPECT_EQ(Cache(), cache);
}

// The cache knows the .inf, and a row's folder is taken from there.
TEST_F(MapListTest, AMapWhoseInfLiesElsewhereMovesThereInTheCache) {
  PutFile("addon/m.BZN");
  PutFile("data/infs/m.inf");
  varnik::LoadMapList(false);
  EXPECT_EQ(Rows(), Strings{"addon\\|m.BZN|m"});
  EXPECT_EQ(Cache(), "data\\infs\\m.inf,addon\\\r\n");
  varnik::LoadMapList(false);
  EXPECT_EQ(Rows(), Strings{"data\\infs\\|m.bzn|m"});
  PutFile("varnik.lst", "stale\r\n");
  varnik::LoadMapList(true);
  EXPECT_EQ(Rows(), Strings{"addon\\|m.BZN|m"});
  EXPECT_EQ(Cache(), "data\\infs\\m.inf,addon\\\r\n");
  EXPECT_TRUE(varnik::MapsLoaded);
}

struct CacheCase {
  const char* what;
  const char* cache;
  Strings rows;
  bool loaded;
};

const CacheCase kCaches[] = {
    {"empty", "", {}, false},
    {"of any age", "a\\gone.inf,b\\\r\na\\gone.bzn,b\\", {"a\\|gone.bzn|gone", "a\\|gone.bzn|gone.bzn"}, true},
    {"blanks and line ends of every kind",
     " a\\x.inf ,\n  a\\y.inf,q\r a\\z.inf,",
     {"a\\|x.bzn|x", "a\\|y.bzn|y", "a\\|z.bzn|z"},
     true},
    {"a comma in the folder", "a,b\\x.inf,a,b\\\r\n", {"b\\x.inf,a,b\\||"}, true},
    {"no backslash", "x.inf,addon\\\r\n", {"addon\\|bzn|bzn"}, true},
    {"no comma at first", "a\\x.inf\r\na\\y.inf,a\\\r\n", {"||"}, false},
    {"no comma later", "a\\x.inf,\r\n\r\na\\y.inf,\r\n", {"a\\|x.bzn|x", "||"}, true},
    {"a number that does not fit", "a\\x.inf,\r\na\\bad.inf,\r\na\\y.inf,\r\n", {"a\\|x.bzn|x", "||"}, true},
};

TEST_F(MapListTest, TheCacheIsTrustedUpToTheLineThatCannotBeRead) {
  PutFile("addon/there.bzn");
  PutFile("a/bad.inf", "[NetVars]\nivar5=40000\n");
  for (const CacheCase& c : kCaches) {
    SCOPED_TRACE(c.what);
    PutFile("varnik.lst", c.cache);
    varnik::LoadMapList(false);
    EXPECT_EQ(Rows(), c.rows);
    EXPECT_EQ(varnik::MapsLoaded, c.loaded);
    EXPECT_TRUE(varnik::MapLoadTried);
    EXPECT_EQ(Cache(), c.cache);
  }
}

TEST_F(MapListTest, AFailedScanKeepsWhatItHadReached) {
  PutFile("addon/m.bzn");
  PutFile("addon/m.inf", "[NetVars]\nivar5=1\nivar7=40000\n");
  varnik::LoadMapList(true);
  EXPECT_EQ(Rows(), Strings{"||"});
  EXPECT_FALSE(varnik::MapsLoaded);
  EXPECT_EQ(Cache(), "");
}

TEST_F(MapListTest, AnOldCacheStaysWhenThereAreNoMaps) {
  PutFile("varnik.lst", "a\\x.inf,a\\\r\n");
  varnik::LoadMapList(true);
  EXPECT_EQ(Rows(), Strings{});
  EXPECT_FALSE(varnik::MapsLoaded);
  EXPECT_EQ(Cache(), "a\\x.inf,a\\\r\n");
}

TEST_F(MapListTest, NoInstallNoMaps) {
  varnik::SelectInstall(-1);
  varnik::LoadMapList(true);
  EXPECT_EQ(MapList.size(), 1u);
  EXPECT_TRUE(varnik::MapLoadTried);
}

TEST_F(MapListTest, ProgressCountsMaps) {
  for (const char* const name : {"a/1.bzn", "a/2.bzn"})
    PutFile(name);
  Strings said;
  const auto note = [&](const std::string& text) { said.push_back(text); };
  varnik::LoadMapList(true, note);
  varnik::LoadMapList(false, note);
  EXPECT_EQ(said, (Strings{"Loading Map File List", "Processing Map: 1", "Processing Map: 2", "Processing Map: 1",
                           "Processing Map: 2"}));
}

// An event during the load may select another install; the load must not go on into its catalogue.
TEST_F(MapListTest, ALoadEndsWhenTheCatalogueIsClearedUnderIt) {
  for (const char* const name : {"a/1.bzn", "a/2.bzn", "a/3.bzn"})
    PutFile(name);
  const std::pair<bool, const char*> moments[] = {{true, "Loading Map File List"},
                                                  {true, "Processing Map: 2"},
                                                  {false, "Processing Map: 1"},
                                                  {false, "Processing Map: 3"}};
  for (const auto& [rescan, moment] : moments) {
    SCOPED_TRACE(moment);
    varnik::LoadMapList(true);
    varnik::LoadMapList(rescan, [when = moment](const std::string& text) {
      if (text == when) varnik::ClearMapList();
    });
    EXPECT_EQ(MapList.size(), 1u);
    EXPECT_FALSE(varnik::MapsLoaded);
  }
}

TEST_F(MapListTest, AnotherInstallMayBeSelectedAtAnyMomentOfALoad) {
  PutFile("a/1.bzn");
  PutFile("a/1.inf", "[NetVars]\nivar5=1\n");
  bool selected = true;
  for (int moment = 1; selected; ++moment) {
    SCOPED_TRACE(moment);
    varnik::UseInstallFolder(Root());
    int events = 0;
    win::SetWindowServices({[&] {
                              if (++events != moment) return;
                              varnik::UseInstallFolder(Root() + std::string(200, 'x'));
                              varnik::ClearMapList();
                            },
                            {},
                            {}});
    varnik::LoadMapList(true);
    win::SetWindowServices({});
    selected = events >= moment;
    EXPECT_EQ(varnik::MapsLoaded, !selected);
  }
}

// Rows of a page by title.
Strings Titles(int mapType, int subType) {
  Strings titles;
  for (const std::size_t row : varnik::MapRowsOfPage(mapType, subType))
    titles.push_back(MapList[row].Title);
  return titles;
}

TEST_F(MapListTest, APageGroupsByTheFoldersOfTheMod) {
  PutFile("varnik.lst",
          "data\\missions\\multiplayer\\d.inf,\r\naddon\\a.inf,\r\nAddon\\b.inf,\r\nmod\\c.inf,\r\nfar\\e.inf,\r\n"
          "\\f.inf,\r\ng.inf,\r\n");
  PutFile("data/missions/multiplayer/d.inf", "[NetVars]\nivar5=1\nivar7=7\n");
  varnik::LoadMapList(false);
  EXPECT_EQ(Titles(0, 20), (Strings{"f", "a", "b", "d"}));
  EXPECT_EQ(Titles(1, 20), Strings{"d"});
  EXPECT_EQ(Titles(1, 0), Strings{"d"});
  EXPECT_EQ(Titles(5, 20), (Strings{"f", "a", "b"}));
  EXPECT_EQ(Titles(1, 5), Strings{});
  EXPECT_EQ(Titles(6, 20), Strings{});
  SelectMod({"mod", "mod", "far"}, {{"addon\\a", "XXXXXXXXXXXXX", ""}, {"far\\", "XXXXXXXXXXXXX", ""}});
  EXPECT_EQ(Titles(0, 20), (Strings{"f", "c", "c"}));
  EXPECT_EQ(varnik::PagesOfMapRow(4), (Strings{"RMap", "CMap5"}));
  EXPECT_EQ(varnik::PagesOfMapRow(5), Strings{});
  EXPECT_EQ(varnik::PagesOfMapRow(99), Strings{});
}

}  // namespace
