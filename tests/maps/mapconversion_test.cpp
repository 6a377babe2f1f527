#include "maps/mapconversion.h"

#include "tests/maps/maptest.h"

namespace {

class MapConversion : public test::MapTest {
 protected:
  MapConversion() {
    MakeInstall("1.3");
    win::WindowServices services;
    services.msgBox = [this](const std::string& text, int style, const std::string& title) {
      questions_.push_back(title + ": " + text);
      EXPECT_EQ(style, win::kYesNo);
      return answer_;
    };
    win::SetWindowServices(services);
  }

  void PutMap(const std::string& name, const std::string& netVars,
              const std::string& folder = "addon/missions/multiplayer/") const {
    PutFile(folder + name + ".bzn");
    PutFile(folder + name + ".inf", "[NetVars]\r\n" + netVars);
  }
  std::string Inf(const std::string& name, const std::string& folder = "addon/missions/multiplayer/") const {
    return test::ReadFile(InRoot(folder + name + ".inf"));
  }

  win::Answer answer_ = win::Answer::kYes;
  std::vector<std::string> questions_;
};

struct TagCase {
  const char* name;
  const char* netVars;
  const char* tag;
};

const TagCase kTags[] = {
    {"none", "", "dm"},
    {"zero", "ivar7=2\r\nivar12=1\r\n", "dm"},
    {"normal", "ivar5=1\r\nivar7=7\r\n", "dm"},
    {"koth", "ivar5=1\r\nivar7=1\r\n", "koth"},
    {"ctf", "ivar5=1\r\nivar7=258\r\n", "ctf"},
    {"loot", "ivar5=1\r\nivar7=3\r\nivar12=1\r\n", "loot"},
    {"odd", "ivar5=1\r\nivar7=4\r\n", "dm"},
    {"race5", "ivar5=1\r\nivar7=5\r\n", "race"},
    {"race6", "ivar5=1\r\nivar7=6\r\n", "race"},
    {"negative", "ivar5=1\r\nivar7=-1\r\n", "dm"},
    {"mpi", "ivar5=2\r\nivar12=1\r\n", "mpi"},
    {"strategy", "ivar5=3\r\n", "st"},
};

TEST_F(MapConversion, WritesTheTagThatTheNumbersMean) {
  for (const TagCase& c : kTags)
    PutMap(c.name, c.netVars);
  PutMap("set", "ivar5=1\r\nsvar7 = \"mpi\"\r\n");
  std::filesystem::permissions(InRoot("addon/missions/multiplayer/ctf.inf"), std::filesystem::perms::owner_read);
  varnik::LoadMapList(true);
  for (const TagCase& c : kTags)
    EXPECT_EQ(Inf(c.name), std::string("[NetVars]\r\n") + c.netVars + "svar7=" + c.tag + "\r\n") << c.name;
  EXPECT_EQ(Inf("set"), "[NetVars]\r\nivar5=1\r\nsvar7 = \"mpi\"\r\n");
  EXPECT_EQ(questions_,
            std::vector<std::string>{
                "Convert Maps?: Some of your multiplayer map configuration files are not 1.3 ready. Would you like to "
                "convert them for 1.3 use?\r\nNote: This process is based on ivar information only and may produce "
                "inaccurate results."});
  varnik::LoadMapList(false);
  EXPECT_EQ(questions_.size(), 1u);
}

TEST_F(MapConversion, NoIsAskedOnceInALoadAndAgainInTheNext) {
  answer_ = win::Answer::kNo;
  PutMap("one", "ivar5=1\r\n");
  PutMap("two", "ivar5=1\r\n");
  const auto before = test::Snapshot(InRoot("addon"));
  varnik::LoadMapList(true);
  EXPECT_EQ(questions_.size(), 1u);
  varnik::LoadMapList(false);
  EXPECT_EQ(questions_.size(), 2u);
  EXPECT_EQ(test::Snapshot(InRoot("addon")), before);
}

TEST_F(MapConversion, LeavesOtherMapsAlone) {
  PutMap("m", "ivar5=1\r\n", "addon/missions/instant/");
  PutMap("m", "ivar5=1\r\n", "data/missions/multiplayer/");
  varnik::LoadMapList(true);
  PutMap("m", "ivar5=1\r\n");
  SelectMod({"mod"});
  varnik::LoadMapList(true);
  EXPECT_EQ(Inf("m"), "[NetVars]\r\nivar5=1\r\n");
  MakeInstall("1.2");
  PutMap("m", "ivar5=1\r\n");
  varnik::LoadMapList(true);
  EXPECT_TRUE(questions_.empty());
}

}  // namespace
