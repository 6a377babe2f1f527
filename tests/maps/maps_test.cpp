#include "maps/mapclass.h"
#include "maps/mapdetails.h"
#include "maps/maplist.h"
#include "maps/mapmetadata.h"
#include "platform/system/paths/program.h"
#include "support/install.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "tests/harness/cases.h"
#include "tests/harness/crash.h"
#include "tests/modengine/modtest.h"

using namespace varnik;

namespace {

using Strings = std::vector<std::string>;

class Maps : public test::ModTest {
 protected:
  Maps() { ClearMapList(); }

  void PutFile(const std::string& name, std::string_view content = "") { test::WriteFile(InRoot(name), content); }
  void PutMap(const std::string& name, const std::string& folder, const std::string& numbers) {
    PutFile(folder + name + ".bzn");
    PutReadOnly(folder + name + ".inf", "[NetVars]\r\n" + numbers + "\r\n");
  }
  std::string Cache() const { return Content("varnik.lst").value_or("none"); }

  // "folder|file name|title" of every row.
  static Strings Rows() {
    Strings rows;
    for (std::size_t row = 1; row < MapList.size(); ++row)
      rows.push_back(MapList[row].Folder + "|" + MapList[row].FileName + "|" + MapList[row].Title);
    return rows;
  }

  // Selects a mod that searches these folders and causes these renames.
  static void SelectMod(const Strings& folders, const std::vector<RenameEntry>& renames = {}) {
    ClearModList();
    ModEntry mod;
    mod.Folders.insert(mod.Folders.end(), folders.begin(), folders.end());
    mod.Renames.insert(mod.Renames.end(), renames.begin(), renames.end());
    AppendModRow(mod);
    SelectModFolders(1);
  }
};

// The cache knows the .inf, and a row's folder is taken from there.
TEST_F(Maps, AMapWhoseInfLiesElsewhereMovesThereInTheCache) {
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

TEST_F(Maps, TheCacheIsTrustedUpToTheLineThatCannotBeRead) {
  PutFile("a/bad.inf", "[NetVars]\nivar5=1\nivar7=40000\n");
  PutFile("varnik.lst", "a\\x.inf,a\\\r\n");
  LoadMapList(true);
  EXPECT_EQ(Cache(), "a\\x.inf,a\\\r\n");  // with no map to scan the old cache stays
  PutFile("a/bad.bzn");
  for (const test::Case& c : test::Cases("maps/caches.jsonl")) {
    SCOPED_TRACE(c);
    PutFile("varnik.lst", c.at("cache").get<std::string>());
    LoadMapList(false);
    EXPECT_EQ(Rows(), c.at("rows"));
    EXPECT_EQ(MapsLoaded, !c.at("rows").empty() && c.at("rows")[0] != "||");
    EXPECT_TRUE(MapLoadTried);
    EXPECT_EQ(Cache(), c.at("cache"));
  }
  LoadMapList(true);
  EXPECT_EQ(Rows(), Strings{"||"});
  EXPECT_FALSE(MapsLoaded);
  EXPECT_EQ(Cache(), "");
  SelectInstall(-1);
  LoadMapList(true);
  EXPECT_EQ(MapList.size(), 1u);
}

TEST_F(Maps, AKillLeavesTheOldCacheOrTheNewOne) {
  PutFile("a/1.bzn");
  win::ConfigFolder();  // the first run would make it
  const test::Command rescan{{BINARY_DIR "/varnik-cli", "--root", sandbox_.Install().string(), "maps", "--rescan"}};
  test::SweepKills(
      rescan, [&] { PutFile("varnik.lst", "old,\r\n"); },
      [&] { EXPECT_TRUE(Cache() == "old,\r\n" || Cache() == "a\\1.bzn,a\\\r\n") << Cache(); });
}

TEST_F(Maps, AScanThatIsStoppedAtAnyMomentLeavesTheCacheAsItWas) {
  PutFile("a/1.bzn");
  PutFile("a/2.bzn");
  PutFile("varnik.lst", "old");
  bool wasStopped = true;
  for (int moment = 1; wasStopped; ++moment) {
    wasStopped = false;
    LoadMapList(true, {}, [&, asked = 0]() mutable { return wasStopped = wasStopped || ++asked == moment; });
    EXPECT_EQ(Cache() == "old", wasStopped) << moment;
    EXPECT_EQ(MapsLoaded, !wasStopped);
    EXPECT_EQ(MapList.size(), wasStopped ? 1u : 3u);
  }
}

// The load must not go on into the other install's catalogue.
TEST_F(Maps, AnotherInstallMayBeSelectedAtAnyMomentOfALoad) {
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

TEST_F(Maps, APageGroupsByTheFoldersOfTheMod) {
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

constexpr char kMultiplayer[] = "addon/missions/multiplayer/";

TEST_F(Maps, PagesDetailsAndConversionEachReadTheNumbersInTheirWay) {
  answer_ = win::Answer::kYes;
  for (const test::Case& c : test::Cases("maps/types.jsonl")) {
    SCOPED_TRACE(c);
    const std::string folder = c.value("folder", kMultiplayer), numbers = c.at("numbers");
    MakeInstall("1.3");
    PutMap("T", folder, numbers);
    LoadMapList(true);
    EXPECT_EQ(PagesOfMapRow(1), c.at("pages"));
    EXPECT_EQ(MapDetails(MapList[1]), "Map Name: T\r\nMap Type: " + c.at("details").get<std::string>());
    const std::string converted =
        c.contains("convertsTo") ? "svar7=" + c["convertsTo"].get<std::string>() + "\r\n" : "";
    EXPECT_EQ(Content(folder + "T.inf"), "[NetVars]\r\n" + numbers + "\r\n" + converted);
  }
}

TEST_F(Maps, OffersAConversionOnceInALoadOfVersion13) {
  PutMap("x", kMultiplayer, "ivar5=1");
  LoadMapList(true);
  MakeInstall("1.3");
  PutMap("x", kMultiplayer, "ivar5=1");
  PutMap("y", kMultiplayer, "ivar5=1");
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
  for (const char* gone : {"x.inf", "y.inf"})
    std::filesystem::remove(InRoot(std::string(kMultiplayer) + gone));
  LoadMapList(false);
  EXPECT_EQ(told_, question + question) << "a file that has gone needs no conversion";
}

TEST_F(Maps, AreNamedAfterTheirInfAndTitledByIt) {
  for (const test::Case& c : test::Cases("maps/infs.jsonl")) {
    StartWith(c.value("files", ""));
    if (c.contains("section")) PutFile("a/m.inf", "[Description]\r\n" + c["section"].get<std::string>());
    MapEntry entry;
    std::string path = c.at("path"), folder = "old\\";
    MapFiles files(Root());
    EXPECT_TRUE(ParseMapEntry(entry, path, folder, files));
    EXPECT_EQ(test::Case({path, folder, entry.FileName, entry.DescFile}), c.at("found")) << c;
    EXPECT_EQ(entry.Title, c.at("title")) << c;
  }
}

// One walk answers as searches and looks at the disk would, whatever the names.
TEST_F(Maps, TheWalkAnswersAsSearchesDo) {
  const std::vector<std::string> names = {"m.inf", "M.INF",  "m n.inf",  " m.inf",   "m;x.inf",
                                          "x.inf", "m?.inf", "\xC4.inf", "\xE4.inf", "\xC3\xA4.inf",
                                          "*.inf", "inf",    "n.INF"};
  const std::vector<std::string> folders = {"", "b/", "a/", "a/c/", "a/.d/", "B/"};
  for (std::size_t i = 0; i < folders.size() * names.size(); i += 3)
    PutFile(folders[i % folders.size()] + names[i % names.size()]);
  PutFile("b/folder.inf/x");
  for (const std::string& folder : folders)
    PutFile(folder + "m.bzn");
  MapFiles files(Root());
  const auto search = [&](const std::string& pattern, bool stopAtFirst) {
    FileSearchParams params;
    params.Recurse = true;
    params.Pattern = pattern;
    FileSearchResults found(1);
    FindFiles(Root(), params, found, stopAtFirst);
    return found;
  };
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const FileSearchResults found = search(name, true);
    EXPECT_EQ(files.FindFirstInf(name), found.size() > 1 ? found[1] : "");
    for (const char* const folder : {"", "a\\", "A\\", "b\\", "B\\", "a\\c\\", "a\\.d\\", "none\\"})
      EXPECT_EQ(files.HasInf(folder + name), FileExists(Root() + folder + name)) << folder;
  }
  EXPECT_TRUE(files.HasInf("b\\FOLDER.inf"));
  EXPECT_EQ(files.FindFirstInf("folder.inf"), "");
  FileSearchResults maps(1);
  for (const std::string& map : files.FindMaps())
    maps.push_back(Root() + map);
  EXPECT_EQ(maps, search("*.bzn", false));
}

TEST_F(Maps, FoldersCountByVersionAndMod) {
  for (const test::Case& c : test::Cases("maps/folders.jsonl")) {
    MakeInstall(c.at("version").get<std::string>());
    const std::string folder = c.at("folder");
    Strings isFor;
    if (IsInModFolders(folder)) isFor.push_back("mod");
    if (IsMultiplayerPath(folder)) isFor.push_back("multiplayer");
    if (IsInstantPath(folder)) isFor.push_back("instant");
    EXPECT_EQ(isFor, c.at("isFor")) << c;
  }
}

TEST_F(Maps, TheFirstRenameOfTheModThatFitsApplies) {
  SelectedMapIndex = 3;
  SelectMod({}, {{"Mod\\Maps\\", "addon\\", ""}, {"mod\\", "data\\", ""}, {"addon\\", "far\\", ""}});
  EXPECT_EQ(SelectedMapIndex, -1);
  EXPECT_EQ(TranslateMapPath("MOD\\maps\\x\\"), "addon\\x\\");
  EXPECT_EQ(TranslateMapPath("mod\\maps"), "data\\maps");
  EXPECT_EQ(TranslateMapPath("other\\mod\\"), "other\\mod\\");
  SelectModFolders(-1);
  EXPECT_EQ(TranslateMapPath("mod\\x"), "mod\\x");
}

TEST_F(Maps, ThePictureIsTheFirstCandidateThatIsThere) {
  MapEntry entry;
  entry.Folder = "maps\\";
  for (const test::Case& c : test::Cases("maps/pictures.jsonl")) {
    StartWith(c.at("files"));
    entry.PictureFile = c.at("named");
    const std::string found = c.at("found");
    EXPECT_EQ(FindMapPicture(entry), found.empty() ? "" : Root() + found) << c;
  }
  entry.DescFile = "m.odf";
  StartWith("maps/m.png=");
  EXPECT_EQ(FindMapDescription(entry), "");
  Put("data/m.odf=");
  EXPECT_EQ(FindMapDescription(entry), Root() + "data\\m.odf");
}

}  // namespace
