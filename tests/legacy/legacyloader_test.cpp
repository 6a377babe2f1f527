#include "tests/legacy/legacytest.h"

using varnik::ModEntry;

namespace {

class LegacyLoader : public test::LegacyTest {
 protected:
  static ModEntry Load(const std::string& path) {
    varnik::LoadModFile(path);
    return varnik::ModList.back();
  }
};

// From line 2 on, then name, description and splash picture.
const char* const kHeaders[][4] = {
    {"", "mod", "", ""},
    {"desc ", "mod", "", ""},
    {"  DESC My  Mod  // first", "My  Mod", "", ""},
    {"// takes its number\ndesc X", "mod", "", ""},
    {"desc X\ndfile  @RootDir/Text.txt", "X", "Told.", ""},
    {"desc X\ndfile @rootdir\\none.txt\nsplashimg a\nb", "X", "", ""},
    {"desc X\n\n\nsplashimg @rootdir\\a.bmp //", "X", "", "splashimg @rootdir\\a.bmp"},
};

TEST_F(LegacyLoader, ReadsTheHeaderByPosition) {
  StartWith("text.txt=Told.");
  for (const auto& [lines, name, description, splash] : kHeaders) {
    const ModEntry entry = Load(DefineText("bz2hald3\n" + std::string(lines)));
    EXPECT_EQ(entry.Name, name) << lines;
    EXPECT_EQ(entry.Description, description) << lines;
    EXPECT_EQ(entry.Splash, splash) << lines;
    EXPECT_TRUE(entry.DefinitionFile.ends_with("/mod.bzm") && entry.Legacy && entry.MarkedX && entry.Standard);
  }
}

struct LineCase {
  const char* lines;
  const char* folders;
  const char* renames;
  bool standard = true;
};

const LineCase kLines[] = {
    {"dynamic\nFOLD  @rootdir\\Mods/x // why\nfold @rootdir/y", "addon data Mods/x y ", ""},
    {"fold x\nnobzonecfg\nfold y\ndynamic\nfold z", "addon data ", ""},
    {"predefined @rootdir/c.cfg\nfold x", "mods\\a @rootdir/b c ", ""},
    {"dynamic\npredefined @rootdir\\c.cfg\nmove @rootdir.a,b", "addon data ", "@rootdir.a>b "},
    {"predefined @rootdir\\empty.cfg\nmove a,b", "addon data ", "a>b "},
    {"move a,b\npredefined none.cfg\nmove c,d", "addon data ", "a>b "},
    {"Replace @ROOTDIR\\a , @rootdir/b", "addon data ", "b>a a>XXXXXXXXXXXXX "},
    {"remove  @rootdir\\a,b", "addon data ", "a,b>XXXXXXXXXXXXX "},
    {";move a,b\n//move a,b\nmoves a,b\nmove", "addon data ", ""},
    {"move @rootdir\\a,b\nremove r\nmove c", "addon data ", "a>b r>XXXXXXXXXXXXX a>move c "},
    {"exec x.exe\nmove a,b", "addon data ", "", false},
    {"pilots p\nsaved s\nfold f\npak p\nexec x.exe", "addon data ", "", false},
    {"move a,b\nexec x.exe\nmove c,d", "addon data ", "a>b c>d "},
    {"nobzonecfg\nexec x.exe", "addon data ", ""},
};

TEST_F(LegacyLoader, ReadsLines) {
  StartWith("empty.cfg=AddPack");
  test::WriteFile(InRoot("c.cfg"),
                  "AddDirRecurse(\"@RootDir\\mods\\a\"); // AddDirRecurse(\"no\");\n"
                  "  adddirrecurse(\" @rootdir/b\");\nAddDirRecurse(\"c");
  for (const LineCase& c : kLines) {
    SCOPED_TRACE(c.lines);
    const ModEntry entry = Load(DefineLegacy(c.lines));
    std::string folders, renames;
    for (std::size_t i = 1; i < entry.Folders.size(); ++i)
      folders += entry.Folders[i] + " ";
    for (std::size_t i = 1; i < entry.Renames.size(); ++i)
      renames += entry.Renames[i].From + ">" + entry.Renames[i].To + " ";
    EXPECT_EQ(folders, c.folders);
    EXPECT_EQ(renames, c.renames);
    EXPECT_EQ(entry.Standard, c.standard);
  }
}

// Without a name the file is opened again by its bare name, from wherever the program was started.
TEST_F(LegacyLoader, WithoutANameLooksForTheLinesInTheWorkingFolder) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(sandbox_.Home());
  EXPECT_EQ(Load(DefineText("bz2hald1\n\n\n\n\nmove a,b")).Renames.size(), 1u);
  test::WriteFile(sandbox_.Home() / "mod.bzm", "move c,d");
  EXPECT_EQ(Load(DefineText("bz2hald1\n\n\n\n\nmove a,b")).Renames.back().From, "c");
  std::filesystem::current_path(before);
}

}  // namespace
