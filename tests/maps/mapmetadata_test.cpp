#include "maps/mapmetadata.h"

#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "tests/maps/maptest.h"

namespace {

using varnik::MapEntry;

class MapMetadata : public test::MapTest {
 protected:
  // What the load makes of one path. `path_` and `folder_` are as it left them.
  bool Parse(const std::string& path, const std::string& folder = "") {
    path_ = path;
    folder_ = folder;
    entry_ = MapEntry();
    varnik::MapFiles files(Root());
    return varnik::ParseMapEntry(entry_, path_, folder_, files);
  }

  MapEntry entry_;
  std::string path_, folder_;
};

struct PlaceCase {
  const char* what;
  std::vector<const char*> files;
  const char* path;
  const char* pathAfter;
  const char* folder;
  const char* fileName;
  const char* descFile;
};

const PlaceCase kPlaces[] = {
    {"beside it", {"a/m.bzn", "a/m.inf", "a/0/m.inf"}, "a\\m.bzn", "a\\m.inf", "a\\", "m.bzn", "m.odf"},
    {"beside it, the map's extension in capitals", {"a/m.inf"}, "a\\m.BZN", "a\\m.inf", "a\\", "m.bzn", "m.odf"},
    {"a folder counts, too", {"a/m.inf/x"}, "a\\m.bzn", "a\\m.inf", "a\\", "m.bzn", "m.odf"},
    {"elsewhere", {"b/c/m.INF"}, "a\\m.BZN", "b\\c\\m.INF", "a\\", "m.BZN", "m.odf"},
    {"below a dot folder", {".b/m.inf"}, "a\\m.bzn", "a\\m.bzn", "a\\", "m.bzn", ""},
    {"nowhere", {}, "a\\m.bzn", "a\\m.bzn", "a\\", "m.bzn", ""},
    {"given", {"a/m.inf"}, "a\\m.inf", "a\\m.inf", "a\\", "m.bzn", "m.odf"},
    {"given in capitals", {"a/m.inf"}, "a\\m.INF", "a\\m.INF", "a\\", "m.bzn", "m.odf"},
    {"given and gone", {}, "a\\m.inf", "a\\m.inf", "a\\", "m.bzn", "m.odf"},
    {"in the root", {"m.inf"}, "m.bzn", "m.inf", "old\\", "bzn", "odf"},
    {"no extension to cut off", {}, "a\\", "a\\", "a\\", "", ""},
    {"nothing at all", {}, "", "", "old\\", "", ""},
};

TEST_F(MapMetadata, FindsTheInfAndNamesTheMapAfterIt) {
  for (const PlaceCase& c : kPlaces) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove_all(InRoot("a"));
    std::filesystem::remove_all(InRoot("b"));
    for (const char* const file : c.files)
      PutFile(file);
    ASSERT_TRUE(Parse(c.path, "old\\"));
    EXPECT_EQ(path_, c.pathAfter);
    EXPECT_EQ(folder_, c.folder);
    EXPECT_EQ(entry_.FileName, c.fileName);
    EXPECT_EQ(entry_.DescFile, c.descFile);
  }
}

struct TitleCase {
  const char* lines;
  const char* title;
};

const TitleCase kTitles[] = {
    {"", "m"},
    {"missionName = \"A  map \" // by me", "A  map "},
    {"missionName =   ", "m.bzn"},
    {"missionName = \"  \"", "m.bzn"},
    {"missionname=two\r\nmissionName=three", "two"},
};

TEST_F(MapMetadata, TitleIsGivenOrTheBaseName) {
  for (const TitleCase& c : kTitles) {
    SCOPED_TRACE(c.lines);
    PutFile("a/m.inf", std::string("[Description]\r\n") + c.lines);
    ASSERT_TRUE(Parse("a\\m.bzn"));
    EXPECT_EQ(entry_.Title, c.title);
  }
}

struct NumberCase {
  const char* lines;  // of section NetVars, `;` between two of them
  bool ivar3;
  int ivar5;
  int ivar7;
  bool ivar12;
};

const NumberCase kNumbers[] = {
    {"", false, 0, 0, false},
    {"ivar3=0.5;ivar12=-1", true, 0, 0, true},
    {"ivar3=0.0;ivar12=x1", false, 0, 0, false},
    {"ivar5=1.5", false, 2, 0, false},
    {"ivar5=2.5", false, 2, 0, false},
    {"ivar5= 3 maps // not 4", false, 3, 0, false},
    {"ivar5=32767.4", false, 32767, 0, false},
    {"ivar5=2;ivar7=5", false, 2, 0, false},
    {"ivar5=2;ivar7=99999", false, 2, 0, false},
    {"ivar5=1;ivar7=256", false, 1, 0, false},
    {"ivar5=1;ivar7=255", false, 1, 255, false},
    {"ivar5=1;ivar7=519", false, 1, 7, false},
    {"ivar5=1;ivar7=768", false, 1, 0, false},
    {"ivar5=1;ivar7=1024", false, 1, 256, false},
    {"ivar5=1;ivar7=-3", false, 1, -3, false},
};

TEST_F(MapMetadata, ReducesTheNumbers) {
  for (const NumberCase& c : kNumbers) {
    SCOPED_TRACE(c.lines);
    std::string lines = c.lines;
    for (char& mark : lines)
      if (mark == ';') mark = '\n';
    PutFile("a/m.inf", "[NetVars]\n" + lines);
    ASSERT_TRUE(Parse("a\\m.bzn"));
    EXPECT_EQ(entry_.Ivar3Set, c.ivar3);
    EXPECT_EQ(entry_.Ivar5, c.ivar5);
    EXPECT_EQ(entry_.Ivar7, c.ivar7);
    EXPECT_EQ(entry_.Ivar12Set, c.ivar12);
  }
}

// One walk answers as a search and a look at the disk would, whatever the names.
TEST_F(MapMetadata, TheWalkAnswersAsSearchesDo) {
  const std::vector<std::string> names = {"m.inf", "M.INF",  "m n.inf",  " m.inf",   "m;x.inf",
                                          "x.inf", "m?.inf", "\xC4.inf", "\xE4.inf", "\xC3\xA4.inf",
                                          "*.inf", "inf",    "m.inf ",   "n.INF"};
  const std::vector<std::string> folders = {"", "b/", "a/", "a/c/", "a/.d/", "B/"};
  for (std::size_t i = 0; i < folders.size() * names.size(); i += 3)
    PutFile(folders[i % folders.size()] + names[i % names.size()]);
  std::filesystem::create_directories(InRoot("b/folder.inf"));
  varnik::MapFiles files(Root());
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    if (name.ends_with(' ')) continue;  // stands in the folders only: no map gives such a name
    varnik::FileSearchParams params;
    params.Recurse = true;
    params.Pattern = name;
    varnik::FileSearchResults found(1);
    varnik::FindFiles(Root(), params, found, true);
    EXPECT_EQ(files.FindFirstInf(name), params.FoundCount > 0 ? found[1] : "");
    for (const char* const folder : {"", "a\\", "A\\", "b\\", "B\\", "a\\c\\", "a\\.d\\", "none\\"})
      EXPECT_EQ(files.HasInf(folder + name), varnik::FileExists(Root() + folder + name)) << folder;
  }
  EXPECT_TRUE(files.HasInf("b\\FOLDER.inf"));
  EXPECT_EQ(files.FindFirstInf("folder.inf"), "");
}

}  // namespace
