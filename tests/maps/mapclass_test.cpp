#include "maps/mapclass.h"

#include "maps/mapdetails.h"
#include "tests/maps/maptest.h"

namespace {

using varnik::MapEntry;

class MapClass : public test::MapTest {};

struct RenameCase {
  const char* path;
  const char* translated;
};

TEST_F(MapClass, TheFirstRenameThatFitsApplies) {
  SelectMod({}, {{"Mod\\Maps\\", "addon\\", ""}, {"mod\\", "data\\", ""}, {"addon\\", "far\\", ""}});
  for (const RenameCase& c : {RenameCase{"MOD\\maps\\x\\", "addon\\x\\"}, RenameCase{"mod\\maps", "data\\maps"},
                              RenameCase{"mod", "mod"}, RenameCase{"other\\mod\\", "other\\mod\\"}})
    EXPECT_EQ(varnik::TranslateMapPath(c.path), c.translated) << c.path;
  varnik::SelectModFolders(-1);
  EXPECT_EQ(varnik::TranslateMapPath("mod\\x"), "mod\\x");
}

struct FolderCase {
  const char* folder;
  const char* version;
  bool multiplayer;
  bool instant;
  bool inModFolders;  // of addon, and of data but for 1.3
};

const FolderCase kFolders[] = {
    {"data\\missions\\multiplayer\\", "1.2", true, false, true},
    {"Data\\Missions\\MultiPlayer\\sub\\", "1.0", true, false, true},
    {"data\\missions\\multiplayer\\", "1.3", false, false, false},
    {"addon\\missions\\multiplayer\\", "1.3", true, false, true},
    {"addon\\missions\\multiplayer", "1.2", false, false, true},
    {"ADDON\\missions\\instant\\", "1.3", false, true, true},
    {"data\\missions\\instant\\", "1.2", false, true, true},
    {"data\\missions\\instant\\", "1.3", false, false, false},
    {"hidden\\", "1.2", true, false, true},
    {"addonx\\", "1.2", false, false, false},
    {"", "1.2", false, false, false},
};

TEST_F(MapClass, FoldersCountByVersionAndMod) {
  for (const FolderCase& c : kFolders) {
    SCOPED_TRACE(std::string(c.folder) + " " + c.version);
    MakeInstall(c.version);
    if (std::string(c.folder) == "hidden\\") SelectMod({"addon"}, {{"hidden\\", "addon\\missions\\multiplayer\\", ""}});
    EXPECT_EQ(varnik::IsMultiplayerPath(c.folder), c.multiplayer);
    EXPECT_EQ(varnik::IsInstantPath(c.folder), c.instant);
    EXPECT_EQ(varnik::IsInModFolders(c.folder), c.inModFolders);
  }
}

struct TypeCase {
  char folder;  // m multiplayer, i instant, o another
  std::int16_t ivar5;
  std::int16_t ivar7;
  bool ivar3;
  bool ivar12;
  const char* pages;    // besides RMap
  const char* details;  // without the name; `|` for a line end
};

const TypeCase kTypes[] = {
    {'m', 1, 0, false, false, "CMap1 SMap1.0", "Deathmatch| Subtype: Normal"},
    {'m', 1, 1, false, true, "CMap1 SMap1.2", "Deathmatch| Subtype: KOTH"},
    {'m', 1, 2, true, false, "CMap1 SMap1.1", "Deathmatch| Subtype: CTF"},
    {'m', 1, 3, false, false, "CMap1 SMap1.3", "Deathmatch| Subtype: Loot"},
    {'m', 1, 4, false, false, "CMap1", "Deathmatch| Subtype: Unknown"},
    {'m', 1, -1, false, false, "CMap1", "Deathmatch| Subtype: Unknown"},
    {'m', 1, 5, false, false, "CMap1 SMap1.4", "Deathmatch| Subtype: Race"},
    {'m', 1, 6, false, false, "CMap1 SMap1.4", "Deathmatch| Subtype: Race"},
    {'m', 1, 7, false, false, "CMap1 SMap1.0", "Deathmatch| Subtype: Normal"},
    {'m', 2, 0, true, true, "CMap3", "MPI"},
    {'m', 2, 0, false, true, "CMap3", "Strategy"},
    {'m', 2, 0, true, false, "CMap4", "Team Strategy"},
    {'m', 2, 0, false, false, "CMap4", "Strategy"},
    {'m', 3, 0, true, true, "CMap5", "N/A"},
    {'i', 1, 2, false, false, "CMap2", "Instant Action"},
    {'i', 0, 0, false, false, "CMap2", "Instant Action"},
    {'o', 1, 2, false, false, "CMap5", "Deathmatch| Subtype: CTF"},
    {'o', 2, 0, true, true, "CMap5", "MPI"},
};

TEST_F(MapClass, PagesAndDetailsEachReadTheNumbersInTheirWay) {
  for (const TypeCase& c : kTypes) {
    MapEntry map;
    map.Title = "T";
    map.Folder = c.folder == 'm'   ? "data\\missions\\multiplayer\\"
                 : c.folder == 'i' ? "addon\\missions\\instant\\"
                                   : "data\\misc\\";
    map.Ivar5 = c.ivar5, map.Ivar7 = c.ivar7, map.Ivar3Set = c.ivar3, map.Ivar12Set = c.ivar12;
    SCOPED_TRACE(map.Folder + " " + std::to_string(c.ivar5) + " " + std::to_string(c.ivar7));
    std::string pages;
    for (const varnik::MapPage& page : varnik::kMapPages)
      if (page.shows(map, varnik::PlaceOfFolder(map.Folder)))
        pages += (pages.empty() ? "" : " ") + std::string(page.key);
    EXPECT_EQ(pages, std::string("RMap ") + c.pages);
    std::string details = std::string("Map Name: T|Map Type: ") + c.details;
    while (details.find('|') != std::string::npos)
      details.replace(details.find('|'), 1, "\r\n");
    EXPECT_EQ(varnik::MapDetails(map), details);
  }
}

struct PictureCase {
  const char* picture;
  std::vector<const char*> files;
  const char* found;  // below the root
};

const PictureCase kPictures[] = {
    {"m.tga", {"maps/m.tga", "maps/m.png"}, "maps\\m.tga"},
    {"m.tga", {"maps/m.bmp", "maps/m.jpg", "maps/m.png"}, "maps\\m.png"},
    {"m.tga", {"maps/m.bmp", "maps/m.jpg", "addon/m.tga"}, "maps\\m.jpg"},
    {"m.tga", {"data/x/m.tga", "addon/m.png"}, "data\\x\\m.tga"},
    {"m.tga", {"addon/y/m.TGA", "data/m.tga"}, "addon\\y\\m.TGA"},
    {"m.bmp", {"addon/m.bmp"}, "addon\\m.bmp"},
    {"m.tga", {"other/m.tga"}, nullptr},
    {"", {"maps/x"}, "maps\\"},
    {"", {}, nullptr},
};

TEST_F(MapClass, ThePictureIsTheFirstCandidateThatIsThere) {
  for (const PictureCase& c : kPictures) {
    std::string trace = c.picture;
    for (const char* const folder : {"maps", "addon", "data", "other"})
      std::filesystem::remove_all(InRoot(folder));
    for (const char* const file : c.files)
      PutFile(file), trace += std::string(" ") + file;
    SCOPED_TRACE(trace);
    MapEntry map;
    map.Folder = "maps\\";
    map.PictureFile = map.DescFile = c.picture;
    EXPECT_EQ(varnik::FindMapPicture(map), c.found ? Root() + c.found : "");
  }
}

TEST_F(MapClass, TheDescriptionHasOneNameOnly) {
  MapEntry map;
  map.Folder = "maps\\";
  map.DescFile = "m.odf";
  PutFile("maps/m.png");
  EXPECT_EQ(varnik::FindMapDescription(map), "");
  PutFile("data/m.odf");
  EXPECT_EQ(varnik::FindMapDescription(map), Root() + "data\\m.odf");
  PutFile("addon/b/M.odf");
  EXPECT_EQ(varnik::FindMapDescription(map), Root() + "addon\\b\\M.odf");
}

}  // namespace
