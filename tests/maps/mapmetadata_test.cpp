#include "maps/mapmetadata.h"

#include "maps/mapclass.h"
#include "maps/mapdetails.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "tests/maps/maptest.h"

using namespace varnik;

namespace {

class MapMetadata : public test::MapTest {
 protected:
  // What the load makes of one path. `path_` and `folder_` are as it left them.
  void Parse(const std::string& path, const std::string& folder = "") {
    path_ = path;
    folder_ = folder;
    entry_ = MapEntry();
    MapFiles files(Root());
    EXPECT_TRUE(ParseMapEntry(entry_, path_, folder_, files));
  }

  MapEntry entry_;
  std::string path_, folder_;
};

using MapClass = MapMetadata;

// What is tried, the files, the path given; afterwards path, folder, map and description.
const char* const kPlaces[][4] = {
    {"beside it, the map's extension in capitals", "a/m.inf= a/0/m.inf=", "a\\m.BZN", "a\\m.inf|a\\|m.bzn|m.odf"},
    {"a folder counts, too", "a/m.inf/x=", "a\\m.bzn", "a\\m.inf|a\\|m.bzn|m.odf"},
    {"elsewhere", "b/c/m.INF=", "a\\m.BZN", "b\\c\\m.INF|a\\|m.BZN|m.odf"},
    {"below a dot folder", ".b/m.inf=", "a\\m.bzn", "a\\m.bzn|a\\|m.bzn|"},
    {"given in capitals", "a/m.inf=", "a\\m.INF", "a\\m.INF|a\\|m.bzn|m.odf"},
    {"given and gone", "", "a\\m.inf", "a\\m.inf|a\\|m.bzn|m.odf"},
    {"in the root", "m.inf=", "m.bzn", "m.inf|old\\|bzn|odf"},
    {"no extension to cut off", "", "a\\", "a\\|a\\||"},
    {"nothing at all", "", "", "|old\\||"},
};

TEST_F(MapMetadata, FindsTheInfAndNamesTheMapAfterIt) {
  for (const auto& [what, files, path, afterwards] : kPlaces) {
    StartWith(files);
    Parse(path, "old\\");
    EXPECT_EQ(path_ + "|" + folder_ + "|" + entry_.FileName + "|" + entry_.DescFile, afterwards) << what;
  }
}

// Lines of the section DESCRIPTION.
const std::pair<const char*, const char*> kTitles[] = {
    {"", "m"},
    {"missionName = \"A  map \" // by me", "A  map "},
    {"missionName =   ", "m.bzn"},
    {"missionName = \"  \"", "m.bzn"},
    {"missionname=two\r\nmissionName=three", "two"},
};

TEST_F(MapMetadata, TitleIsGivenOrTheBaseName) {
  for (const auto& [lines, title] : kTitles) {
    PutFile("a/m.inf", std::string("[Description]\r\n") + lines);
    Parse("a\\m.bzn");
    EXPECT_EQ(entry_.Title, title) << lines;
  }
}

// One walk answers as searches and looks at the disk would, whatever the names.
TEST_F(MapMetadata, TheWalkAnswersAsSearchesDo) {
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

// Version, folder, and what it is: in a folder of the mod, for multiplayer, for instant action.
const char* const kFolders[][3] = {
    {"1.2", "data\\missions\\multiplayer\\", "mod multi"},
    {"1.3", "data\\missions\\multiplayer\\", ""},
    {"1.3", "addon\\missions\\multiplayer\\sub\\", "mod multi"},
    {"1.2", "addon\\missions\\multiplayer", "mod"},
    {"1.3", "ADDON\\missions\\instant\\", "mod instant"},
    {"1.0", "Data\\missions\\instant\\", "mod instant"},
    {"1.2", "addonx\\", ""},
};

TEST_F(MapClass, FoldersCountByVersionAndMod) {
  for (const auto& [version, folder, is] : kFolders) {
    SCOPED_TRACE(std::string(folder) + " " + version);
    MakeInstall(version);
    const std::string_view expected = is;
    EXPECT_EQ(IsInModFolders(folder), expected.starts_with("mod"));
    EXPECT_EQ(IsMultiplayerPath(folder), expected.ends_with("multi"));
    EXPECT_EQ(IsInstantPath(folder), expected.ends_with("instant"));
  }
}

TEST_F(MapClass, TheFirstRenameOfTheModThatFitsApplies) {
  SelectedMapIndex = 3;
  SelectMod({}, {{"Mod\\Maps\\", "addon\\", ""}, {"mod\\", "data\\", ""}, {"addon\\", "far\\", ""}});
  EXPECT_EQ(SelectedMapIndex, -1);
  EXPECT_EQ(TranslateMapPath("MOD\\maps\\x\\"), "addon\\x\\");
  EXPECT_EQ(TranslateMapPath("mod\\maps"), "data\\maps");
  EXPECT_EQ(TranslateMapPath("other\\mod\\"), "other\\mod\\");
  SelectModFolders(-1);
  EXPECT_EQ(TranslateMapPath("mod\\x"), "mod\\x");
}

// The picture named, the files, and the one found.
const char* const kPictures[][3] = {
    {"m.tga", "maps/m.tga= maps/m.png=", "maps\\m.tga"},
    {"m.tga", "maps/m.bmp= maps/m.jpg= maps/m.png=", "maps\\m.png"},
    {"m.tga", "maps/m.bmp= maps/m.jpg= addon/m.tga=", "maps\\m.jpg"},
    {"m.tga", "data/x/m.tga= addon/m.png=", "data\\x\\m.tga"},
    {"m.tga", "addon/y/m.TGA= data/m.tga=", "addon\\y\\m.TGA"},
    {"m.bmp", "addon/m.bmp=", "addon\\m.bmp"},
    {"m.tga", "other/m.tga=", ""},
    {"", "maps/x=", "maps\\"},
};

TEST_F(MapClass, ThePictureIsTheFirstCandidateThatIsThere) {
  entry_.Folder = "maps\\";
  for (const auto& [picture, files, found] : kPictures) {
    StartWith(files);
    entry_.PictureFile = picture;
    EXPECT_EQ(FindMapPicture(entry_), *found ? Root() + found : "") << files;
  }
  entry_.DescFile = "m.odf";
  StartWith("maps/m.png=");
  EXPECT_EQ(FindMapDescription(entry_), "");
  Put("data/m.odf=");
  EXPECT_EQ(FindMapDescription(entry_), Root() + "data\\m.odf");
}

}  // namespace
