#include "maps/ui/frmmap.h"

#include "installs/installlist.h"
#include "maps/maplist.h"
#include "modengine/catalogue.h"
#include "support/runstate.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "tests/window/picture_corpus.h"
#include "windowing/form.h"

#include <QTimer>

#include <functional>
#include <memory>

namespace {

using Strings = std::vector<std::string>;

constexpr std::uint32_t kGreen = 0xFF00FF00, kRed = 0xFFFF0000;

// A window round the page: the box for the name stands on another page there.
struct MapForm : win::Form {
  MapForm() : Form("frmMain", 9000, 6000), page(*this, Host()) {
    txtMapFileName.Move(120, 5500, 2000, 315);
    txtMapFileName.LostFocus = [this] { page.txtMapFileName_LostFocus(); };
    QImage green(10, 10, QImage::Format_RGB32);
    green.fill(Qt::green);
    page.SetNoMapPicture(win::Picture(green));
  }

  varnik::MapPageHost Host() {
    varnik::MapPageHost host;
    host.markMaps = [this](bool mark) { bold = mark, ++marks; };
    host.mapName = [this] { return txtMapFileName.Text(); };
    host.setMapName = [this](const std::string& name) { txtMapFileName.SetText(name); };
    host.askForMapName = [this] { ++asked; };
    host.showSelectedPage = [this] { page.PopulateMapList(0, varnik::kAllSubTypes); };
    host.busy.begin = [this] { ++busy, SetEnabled(false); };
    host.busy.end = [this] { busy = 0, SetEnabled(true); };
    host.busy.isUp = [this] { return busy > 0; };
    host.busy.setStatus = [this](const std::string&) { EXPECT_GT(busy, 0); };
    return host;
  }

  bool bold = false;
  int marks = 0, asked = 0, busy = 0;
  win::TextBox txtMapFileName{*this, "txtMapFileName"};
  varnik::FrmMap page;
};

class MapPage : public test::WindowTest {
 protected:
  MapPage() {
    sandbox.MakeInstall();
    varnik::UseInstallFolder(sandbox.InstallText());
    varnik::ClearModList();
    varnik::SelectModFolders(-1);
    PutMap("Alpha", "mapDesc=text.odf\nmapTga=picture.tga\n[NetVars]\nivar5=1\nivar7=2\n");
    PutMap("Beta", "[NetVars]\nivar5=2\n");
    PutMap("Gamma", "");
    Put("data/gone.bzn", "");
    Put("data/text.odf", "First line.\r\nSecond line.");
    Put("addon/pictures/picture.png", test::PictureCorpus()[0].content);
    form = std::make_unique<MapForm>();
    form->page.ClearMaps();
    form->Show();
    form->page.lstmap.SetFocus();
  }

  void Put(const std::string& name, const std::string& content) const {
    test::WriteFile(sandbox.Install() / name, content);
  }
  void PutMap(const std::string& title, const std::string& lines) const {
    Put("addon/maps/" + title + ".bzn", "");
    Put("addon/maps/" + title + ".inf", "[DESCRIPTION]\nmissionName=" + title + "\n" + lines);
  }

  void ShowAll() const { form->page.PopulateMapList(0, varnik::kAllSubTypes); }
  Strings Rows() const {
    Strings rows;
    for (int i = 0; i < form->page.lstmap.ListCount(); ++i)
      rows.push_back(form->page.lstmap.List(i));
    return rows;
  }
  int RowOf(const std::string& title) const {
    const Strings rows = Rows();
    return static_cast<int>(std::find(rows.begin(), rows.end(), title) - rows.begin());
  }
  static int IndexOf(const std::string& title) {
    for (std::size_t row = 1; row < varnik::MapList.size(); ++row)
      if (varnik::MapList[row].Title == title) return static_cast<int>(row);
    return 0;
  }
  void AwaitTimer() const {
    EXPECT_TRUE(test::Await([this] { return !form->page.tmrMap.Enabled(); }));
  }
  void Choose(const std::string& title) const {
    test::ClickRow(form->page.lstmap, RowOf(title));
    AwaitTimer();
  }
  std::uint32_t Corner() const { return form->page.imgmap.Shown().Pixel(0, 0); }

  test::Sandbox sandbox;
  std::unique_ptr<MapForm> form;
};

TEST_F(MapPage, AClickShowsTheMapWhenTheTimerHasFired) {
  ShowAll();
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Beta", "Gamma", "gone.bzn"}));
  AwaitTimer();
  test::ClickRow(form->page.lstmap, RowOf("Alpha"));
  EXPECT_EQ(form->page.txtMapDesc.Text(), "No Map Selected");
  EXPECT_EQ(varnik::SelectedMapIndex, -1);
  AwaitTimer();
  EXPECT_EQ(varnik::SelectedMapIndex, IndexOf("Alpha"));
  EXPECT_EQ(form->page.txtMapDesc.Text(), "First line.\r\nSecond line.");
  EXPECT_EQ(form->page.lblMapDetails.Caption(), "Map Name: Alpha\r\nMap Type: Deathmatch\r\n Subtype: CTF");
  EXPECT_EQ(form->txtMapFileName.Text(), "Alpha.bzn");
  EXPECT_EQ(Corner(), kRed);
  EXPECT_TRUE(form->bold);
}

TEST_F(MapPage, WhatAMapLacksIsSaidOrStays) {
  ShowAll();
  Choose("Alpha");
  Choose("gone.bzn");
  EXPECT_EQ(form->page.txtMapDesc.Text(), "First line.\r\nSecond line.") << "there is no name to look for";
  EXPECT_EQ(form->page.lblMapDetails.Caption(), "Map Name: gone.bzn\r\nMap Type: N/A");
  EXPECT_EQ(Corner(), kGreen);
  Choose("Gamma");
  EXPECT_EQ(form->page.txtMapDesc.Text(), "No Description Available");
  Choose("*No Map*");
  EXPECT_EQ(form->page.txtMapDesc.Text(), "No Map Selected");
  EXPECT_EQ(form->page.lblMapDetails.Caption(), "No Map Selected");
  EXPECT_EQ(form->txtMapFileName.Text(), "");
  EXPECT_EQ(varnik::SelectedMapIndex, -1);
  EXPECT_FALSE(form->bold);
}

TEST_F(MapPage, ADamagedPictureFallsToTheNextNameAndAtLastToTheStandBy) {
  Put("addon/maps/picture.tga", "not a picture");
  Put("addon/maps/picture.bmp", test::PictureCorpus()[3].content);
  ShowAll();
  Choose("Alpha");
  EXPECT_EQ(Corner(), kRed);
  Put("addon/maps/picture.bmp", "not a picture");
  Put("addon/pictures/picture.png", "not a picture");
  Choose("Beta");
  Choose("Alpha");
  EXPECT_EQ(Corner(), kGreen);
  Put("addon/maps/picture.tga", test::PictureCorpus()[3].content);
  Choose("Beta");
  Choose("Alpha");
  EXPECT_EQ(Corner(), kRed) << "a picture is what its content is";
}

TEST_F(MapPage, OfManyClicksOnlyTheLastIsServed) {
  ShowAll();
  Choose("*No Map*");
  form->marks = 0;
  test::ClickRow(form->page.lstmap, RowOf("Alpha"));
  test::PressKey(form->page.lstmap, Qt::Key_Down);
  test::PressKey(form->page.lstmap, Qt::Key_Down);
  AwaitTimer();
  EXPECT_EQ(form->marks, 1);
  EXPECT_EQ(varnik::SelectedMapIndex, IndexOf("Gamma"));
}

// The search for the text of a map runs events.
TEST_F(MapPage, WhatIsDoneDuringTheWorkComesNext) {
  const struct {
    std::function<void()> act;
    const char* title;
    const char* file;
  } cases[] = {
      {[this] { test::ClickRow(form->page.lstmap, RowOf("Beta")); }, "Beta", "Beta.bzn"},
      {[this] { form->page.ClearMaps(); }, nullptr, "Beta.bzn"},
  };
  for (const auto& c : cases) {
    ShowAll();
    AwaitTimer();
    form->marks = 0;
    bool done = false;
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [&] {
      if (done || form->marks > 0 || varnik::SelectedMapIndex != IndexOf("Alpha")) return;
      done = true;
      c.act();
    });
    events.start(0);
    test::ClickRow(form->page.lstmap, RowOf("Alpha"));
    AwaitTimer();
    EXPECT_TRUE(done);
    EXPECT_EQ(varnik::SelectedMapIndex, c.title ? IndexOf(c.title) : -1);
    EXPECT_EQ(form->txtMapFileName.Text(), c.file);
    EXPECT_EQ(form->bold, c.title != nullptr);
    EXPECT_EQ(form->marks, 1);
  }
}

TEST_F(MapPage, TheSelectionComesBackWithThePage) {
  ShowAll();
  EXPECT_EQ(form->page.lstmap.ListIndex(), RowOf("*No Map*"));
  Choose("Beta");
  form->page.PopulateMapList(1, varnik::kAllSubTypes);
  EXPECT_EQ(Rows(), (Strings{"*No Map*"}));
  EXPECT_EQ(form->page.lstmap.ListIndex(), -1);
  varnik::SearchDirs = {"", "addon", "addon"};
  ShowAll();
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Alpha", "Beta", "Beta", "Gamma", "Gamma"}));
  EXPECT_EQ(form->page.lstmap.ListIndex(), 4);
  AwaitTimer();
  EXPECT_EQ(varnik::SelectedMapIndex, IndexOf("Beta"));
}

TEST_F(MapPage, ACacheWithoutRowsLeavesTheListAlone) {
  Put("varnik.lst", "");
  ShowAll();
  EXPECT_EQ(Rows(), Strings{});
}

struct NameCase {
  const char* typed;
  const char* complaint;  // null: none
  const char* text;       // of the page afterwards, null: as it was
};

constexpr char kBadEnding[] = "Invalid Map Filename. Must end in .bzn or .trn";
constexpr char kBadCharacters[] = "Invalid Chars in map name.\r\n\\, +, and - are not valid in map names.";

const NameCase kNames[] = {
    {"my.bzn", nullptr, "Manual Entry"},      {"MY.TRN  ", nullptr, "Manual Entry"},
    {"my\\map.bzn", nullptr, "Manual Entry"}, {"ALPHA.bzn", nullptr, nullptr},
    {"Alpha.bzn ", nullptr, "Manual Entry"},  {"  ", nullptr, "No Map Selected"},
    {"my.bz", kBadEnding, nullptr},           {"m-y.txt", kBadEnding, nullptr},
    {"m-y.bzn", kBadCharacters, nullptr},     {"m+y.bzn", kBadCharacters, nullptr},
    {"m/y.trn", kBadCharacters, nullptr},
};

TEST_F(MapPage, ATypedNameIsJudgedWhenTheBoxIsLeft) {
  ShowAll();
  for (const NameCase& c : kNames) {
    SCOPED_TRACE(c.typed);
    Choose("*No Map*");
    Choose("Alpha");
    const std::string before = form->page.txtMapDesc.Text();
    form->asked = 0;
    form->txtMapFileName.SetFocus();
    form->txtMapFileName.SetText("");
    test::Type(form->txtMapFileName, c.typed);
    if (c.complaint) boxes.ExpectMsgBox(c.complaint);
    form->page.lstmap.SetFocus();
    EXPECT_EQ(form->asked, c.complaint ? 1 : 0);
    EXPECT_EQ(form->page.txtMapDesc.Text(), c.text ? c.text : before);
    const bool manual = c.text && std::string(c.text) == "Manual Entry";
    EXPECT_EQ(varnik::SelectedMapIndex, manual ? -2 : c.text ? -1 : IndexOf("Alpha"));
    EXPECT_EQ(Corner(), c.text ? kGreen : kRed);
    EXPECT_EQ(form->bold, varnik::SelectedMapIndex != -1);
  }
}

TEST_F(MapPage, ATypedNameSurvivesAChangeOfPage) {
  ShowAll();
  AwaitTimer();
  form->txtMapFileName.SetText("my.bzn");
  form->busy = 1;
  form->page.txtMapFileName_LostFocus();
  EXPECT_EQ(varnik::SelectedMapIndex, -1) << "the busy window is up";
  form->busy = 0;
  form->page.txtMapFileName_LostFocus();
  form->page.PopulateMapList(5, varnik::kAllSubTypes);
  EXPECT_EQ(varnik::SelectedMapIndex, -2);
  EXPECT_EQ(form->page.lstmap.ListIndex(), -1);
  EXPECT_EQ(form->page.txtMapDesc.Text(), "Manual Entry");
}

TEST_F(MapPage, RefreshScansAgain) {
  ShowAll();
  Choose("Alpha");
  PutMap("Delta", "");
  form->page.PopulateMapList(0, varnik::kAllSubTypes);
  EXPECT_EQ(RowOf("Delta"), 5) << "the catalogue is loaded once";
  test::ClickOn(form->page.cmdMapLstRefresh);
  EXPECT_EQ(RowOf("Delta"), 3);
  EXPECT_EQ(form->busy, 0);
  EXPECT_TRUE(form->Enabled());
  EXPECT_EQ(varnik::SelectedMapIndex, -1);
  AwaitTimer();
  EXPECT_EQ(form->txtMapFileName.Text(), "") << "the row of no map is selected now";
}

TEST_F(MapPage, AClickDoesNotOutliveItsList) {
  ShowAll();
  AwaitTimer();
  form->txtMapFileName.SetText("Beta.bzn");
  test::ClickRow(form->page.lstmap, RowOf("Alpha"));
  form->page.ClearMaps();
  AwaitTimer();
  EXPECT_EQ(form->txtMapFileName.Text(), "") << "the game would be given a map that no page shows as chosen";
  EXPECT_EQ(Rows(), Strings{});
  EXPECT_EQ(Corner(), kGreen);
}

}  // namespace
