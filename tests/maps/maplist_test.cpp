#include "maps/maplist.h"

#include "maps/mapdetails.h"
#include "support/install.h"
#include "tests/maps/maptest.h"

#include <tuple>

using namespace varnik;

namespace {

using Strings = std::vector<std::string>;

class MapListTest : public test::MapTest {
 protected:
  // "folder|file name|title" of every row.
  static Strings Rows() {
    Strings rows;
    for (std::size_t row = 1; row < MapList.size(); ++row)
      rows.push_back(MapList[row].Folder + "|" + MapList[row].FileName + "|" + MapList[row].Title);
    return rows;
  }
  void PutMap(const std::string& name, const std::string& folder, const std::string& numbers) {
    PutFile(folder + name + ".bzn");
    PutFile(folder + name + ".inf", "[NetVars]\r\n" + numbers + "\r\n");
    std::filesystem::permissions(InRoot(folder + name + ".inf"), std::filesystem::perms::owner_read);
  }
  std::string Cache() const { return Content("varnik.lst").value_or("none"); }
};

// The cache knows the .inf, and a row's folder is taken from there.
TEST_F(MapListTest, AMapWhoseInfLiesElsewhereMovesThereInTheCache) {
  PutFile("addon/m.BZN");
  PutFile("data/infs/m.inf");
  const std::pair<bool, const char*> loads[] = {
      {false, "addon\\|m.BZN|m"}, {false, "data\\infs\\|m.bzn|m"}, {true, "addon\\|m.BZN|m"}};
  for (const auto& [rescan, row] : loads) {
    if (rescan) PutFile("varnik.lst", "stale\r\n");
    LoadMapList(rescan);
    EXPECT_EQ(Rows(), Strings{row});
    EXPECT_EQ(Cache(), "data\\infs\\m.inf,addon\\\r\n");
  }
}

// What is tried, the cache, and the rows read.
const std::tuple<const char*, const char*, Strings> kCaches[] = {
    {"empty", "", {}},
    {"of any age", "a\\gone.inf,b\\\r\na\\gone.bzn,b\\", {"a\\|gone.bzn|gone", "a\\|gone.bzn|gone.bzn"}},
    {"blanks and line ends", " a\\x.inf ,\n  a\\y.inf,q\r a\\z.inf,", {"a\\|x.bzn|x", "a\\|y.bzn|y", "a\\|z.bzn|z"}},
    {"a comma in the folder", "a,b\\x.inf,a,b\\\r\n", {"b\\x.inf,a,b\\||"}},
    {"no backslash", "x.inf,addon\\\r\n", {"addon\\|bzn|bzn"}},
    {"no comma at first", "a\\x.inf\r\na\\y.inf,a\\\r\n", {"||"}},
    {"no comma later", "a\\x.inf,\r\n\r\na\\y.inf,\r\n", {"a\\|x.bzn|x", "||"}},
    {"a number that does not fit", "a\\x.inf,\r\na\\bad.inf,\r\na\\y.inf,\r\n", {"a\\|x.bzn|x", "||"}},
};

TEST_F(MapListTest, TheCacheIsTrustedUpToTheLineThatCannotBeRead) {
  PutFile("a/bad.inf", "[NetVars]\nivar5=1\nivar7=40000\n");
  PutFile("varnik.lst", "a\\x.inf,a\\\r\n");
  LoadMapList(true);
  EXPECT_EQ(Cache(), "a\\x.inf,a\\\r\n");  // with no map to scan the old cache stays
  PutFile("a/bad.bzn");
  for (const auto& [what, cache, rows] : kCaches) {
    SCOPED_TRACE(what);
    PutFile("varnik.lst", cache);
    LoadMapList(false);
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(MapsLoaded, !rows.empty() && rows[0] != "||");
    EXPECT_TRUE(MapLoadTried);
    EXPECT_EQ(Cache(), cache);
  }
  LoadMapList(true);
  EXPECT_EQ(Rows(), Strings{"||"});
  EXPECT_FALSE(MapsLoaded);
  EXPECT_EQ(Cache(), "");
  SelectInstall(-1);
  LoadMapList(true);
  EXPECT_EQ(MapList.size(), 1u);
}

// The load must not go on into the other install's catalogue.
TEST_F(MapListTest, AnotherInstallMayBeSelectedAtAnyMomentOfALoad) {
  PutFile("a/1.bzn");
  PutFile("a/1.inf", "[NetVars]\nivar5=1\n");
  PutFile("a/2.bzn");
  for (const std::string rescan : {"Loading Map File List|", ""}) {
    bool selected = true;
    for (int moment = 1; selected; ++moment) {
      SCOPED_TRACE(rescan + std::to_string(moment));
      UseInstallFolder(Root());
      int events = 0;
      std::string told;
      const auto event = [&](const std::string& text) {
        if (!text.empty()) told += text + "|";
        if (++events != moment) return;
        UseInstallFolder(Root() + std::string(200, 'x'));
        ClearMapList();
      };
      OnEvents([&] { event(""); });
      LoadMapList(!rescan.empty(), event);
      OnEvents({});
      selected = events >= moment;
      EXPECT_EQ(MapsLoaded, !selected);
      EXPECT_EQ(MapList.size(), selected ? 1u : 3u);
      EXPECT_TRUE(selected || told == rescan + "Processing Map: 1|Processing Map: 2|") << told;
    }
  }
}

TEST_F(MapListTest, APageGroupsByTheFoldersOfTheMod) {
  // Rows of a page by title.
  const auto titles = [](int mapType, int subType) {
    std::string rows;
    for (const std::size_t row : MapRowsOfPage(mapType, subType))
      rows += MapList[row].Title + " ";
    return rows;
  };
  PutFile("varnik.lst",
          "data\\missions\\multiplayer\\d.inf,\r\naddon\\a.inf,\r\nAddon\\b.inf,\r\nmod\\c.inf,\r\nfar\\e.inf,\r\n"
          "\\f.inf,\r\ng.inf,\r\n");
  PutFile("data/missions/multiplayer/d.inf", "[NetVars]\nivar5=1\nivar7=7\n");
  LoadMapList(false);
  EXPECT_EQ(titles(0, 20), "f a b d ");
  EXPECT_EQ(titles(1, 20) + titles(1, 0) + titles(1, 5) + titles(6, 20), "d d ");
  EXPECT_EQ(titles(5, 20), "f a b ");
  SelectMod({"mod", "mod", "far"}, {{"addon\\a", "XXXXXXXXXXXXX", ""}, {"far\\", "XXXXXXXXXXXXX", ""}});
  EXPECT_EQ(titles(0, 20), "f c c ");
  EXPECT_EQ(PagesOfMapRow(4), (Strings{"RMap", "CMap5"}));
  EXPECT_TRUE(PagesOfMapRow(5).empty() && PagesOfMapRow(99).empty());
}

constexpr char kMulti[] = "addon/missions/multiplayer/";

// A folder, numbers of the .inf, the pages, the details, and the tag that a conversion adds.
const char* const kTypes[][5] = {
    {kMulti, "ivar7=2\r\nivar12=1", "CMap5", "N/A", "dm"},
    {kMulti, "ivar5=1", "CMap1 SMap1.0", "Deathmatch\r\n Subtype: Normal", "dm"},
    {kMulti, "ivar5=1\r\nivar7=1\r\nivar12=1", "CMap1 SMap1.2", "Deathmatch\r\n Subtype: KOTH", "koth"},
    {kMulti, "ivar5=1\r\nivar7=258\r\nivar3=1", "CMap1 SMap1.1", "Deathmatch\r\n Subtype: CTF", "ctf"},
    {kMulti, "ivar5=1\r\nivar7=3", "CMap1 SMap1.3", "Deathmatch\r\n Subtype: Loot", "loot"},
    {kMulti, "ivar5=1\r\nivar7=4", "CMap1", "Deathmatch\r\n Subtype: Unknown", "dm"},
    {kMulti, "ivar5=1\r\nivar7=5", "CMap1 SMap1.4", "Deathmatch\r\n Subtype: Race", "race"},
    {kMulti, "ivar5=1\r\nivar7=6", "CMap1 SMap1.4", "Deathmatch\r\n Subtype: Race", "race"},
    {kMulti, "ivar5=1\r\nivar7=519", "CMap1 SMap1.0", "Deathmatch\r\n Subtype: Normal", "dm"},
    {kMulti, "ivar5=1\r\nivar7=768", "CMap1 SMap1.0", "Deathmatch\r\n Subtype: Normal", "dm"},
    {kMulti, "ivar5=1\r\nivar7=1024", "CMap1", "Deathmatch\r\n Subtype: Unknown", "dm"},
    {kMulti, "ivar5=2\r\nivar7=99999", "CMap4", "Strategy", "st"},
    {kMulti, "ivar5=1.5\r\nivar3=0.5\r\nivar12=x1", "CMap4", "Team Strategy", "st"},
    {kMulti, "ivar5=2.5\r\nivar3=0.0\r\nivar12=-1", "CMap3", "Strategy", "mpi"},
    {kMulti, "ivar5=2\r\nivar3=1\r\nivar12=1", "CMap3", "MPI", "mpi"},
    {kMulti, "ivar5= 3 maps // not 4", "CMap5", "N/A", "st"},
    {kMulti, "ivar5=1\r\nsvar7 = \"mpi\"", "CMap1 SMap1.0", "Deathmatch\r\n Subtype: Normal", ""},
    {"addon/missions/instant/", "ivar5=1\r\nivar7=2", "CMap2", "Instant Action", ""},
    {"addon/misc/", "ivar5=1\r\nivar7=2", "CMap5", "Deathmatch\r\n Subtype: CTF", ""},
};

TEST_F(MapListTest, PagesDetailsAndConversionEachReadTheNumbersInTheirWay) {
  answer_ = win::Answer::kYes;
  for (const auto& [folder, numbers, pages, details, tag] : kTypes) {
    SCOPED_TRACE(std::string(folder) + numbers);
    MakeInstall("1.3");
    PutMap("T", folder, numbers);
    LoadMapList(true);
    std::string shown;
    for (const std::string& page : PagesOfMapRow(1))
      shown += page + " ";
    EXPECT_EQ(shown, std::string("RMap ") + pages + " ");
    EXPECT_EQ(MapDetails(MapList[1]), std::string("Map Name: T\r\nMap Type: ") + details);
    const std::string converted = *tag ? std::string("svar7=") + tag + "\r\n" : "";
    EXPECT_EQ(Content(std::string(folder) + "T.inf"), std::string("[NetVars]\r\n") + numbers + "\r\n" + converted);
  }
}

TEST_F(MapListTest, OffersAConversionOnceInALoadOfVersion13) {
  PutMap("x", kMulti, "ivar5=1");
  LoadMapList(true);
  MakeInstall("1.3");
  PutMap("x", kMulti, "ivar5=1");
  PutMap("y", kMulti, "ivar5=1");
  PutMap("z", "data/missions/multiplayer/", "ivar5=1");
  const auto before = test::Snapshot(InRoot("addon"));
  SelectMod({"mod"});
  LoadMapList(true);
  EXPECT_EQ(told_, "");
  SelectModFolders(-1);
  LoadMapList(true);
  LoadMapList(false);
  const std::string question =
      "Some of your multiplayer map configuration files are not 1.3 ready. Would you like to convert them for 1.3 use?"
      "\r\nNote: This process is based on ivar information only and may produce inaccurate results.";
  EXPECT_EQ(told_, question + question);
  EXPECT_EQ(test::Snapshot(InRoot("addon")), before);
}

}  // namespace
