#include "maps/frmmap.h"

#include <QTimer>

#include "maps/maplist.h"
#include "tests/window/pagetest.h"
#include "tests/window/picture_corpus.h"

using namespace varnik;

namespace {

using Strings = std::vector<std::string>;

constexpr std::uint32_t kGreen = 0xFF00FF00, kRed = 0xFFFF0000;

// A window round the page: the box for the name stands on another page there.
struct MapForm : win::Form {
  MapForm() : Form("frmMain", 9000, 6000), page(*this, Host()) {
    txtMapFileName.Move(120, 5500, 2000, 315);
    txtMapFileName.LostFocus = [this] { page.txtMapFileName_LostFocus(); };
    const std::vector<std::uint32_t> green(100, kGreen);
    page.SetNoMapPicture(win::Picture::FromPixels(10, 10, green));
  }

  MapPageHost Host() {
    MapPageHost host;
    host.markMaps = [this](bool mark) { bold = mark, ++marks; };
    host.mapName = [this] { return txtMapFileName.Text(); };
    host.setMapName = [this](const std::string& name) { txtMapFileName.SetText(name); };
    host.askForMapName = [this] { ++asked; };
    host.showSelectedPage = [this] { page.PopulateMapList(0, kAllSubTypes); };
    host.busy.begin = [this] { ++busy, SetEnabled(false); };
    host.busy.end = [this] { busy = 0, SetEnabled(true); };
    host.busy.isUp = [this] { return busy > 0; };
    host.busy.setStatus = [this](const std::string&) { EXPECT_GT(busy, 0); };
    return host;
  }

  bool bold = false;
  int marks = 0, asked = 0, busy = 0;
  win::TextBox txtMapFileName{*this, "txtMapFileName"};
  FrmMap page;
};

class MapPage : public test::PageTest {
 protected:
  MapPage() {
    ClearModList();
    PutMap("Alpha", "mapDesc=text.odf\nmapTga=picture.tga\n[NetVars]\nivar5=1\nivar7=2\n");
    PutMap("Beta", "[NetVars]\nivar5=2\n");
    PutMap("Gamma", "");
    Put("data/gone.bzn", "");
    Put("data/text.odf", "First line.\r\nSecond line.");
    Put("addon/pictures/picture.png", test::SoundPicture("png"));
    page.ClearMaps();
    form.Show();
    ShowAll();
    AwaitTimer();
    page.lstmap.SetFocus();
  }

  void PutMap(const std::string& title, const std::string& lines) const {
    Put("addon/maps/" + title + ".bzn", "");
    Put("addon/maps/" + title + ".inf", "[DESCRIPTION]\nmissionName=" + title + "\n" + lines);
  }

  void ShowAll() { page.PopulateMapList(0, kAllSubTypes); }
  Strings Rows() const { return test::RowsOf(page.lstmap); }
  int RowOf(const std::string& title) const {
    const Strings rows = Rows();
    return static_cast<int>(std::find(rows.begin(), rows.end(), title) - rows.begin());
  }
  static std::string Selected() {
    return SelectedMapIndex < 0 ? std::to_string(SelectedMapIndex) : MapList[SelectedMapIndex].Title;
  }
  void AwaitTimer() const {
    EXPECT_TRUE(test::Await([this] { return !page.tmrMap.Enabled(); }));
  }
  void Choose(const std::string& title) const {
    test::ClickRow(page.lstmap, RowOf(title));
    AwaitTimer();
  }
  std::uint32_t Corner() const { return page.imgmap.Shown().Pixel(0, 0); }

  MapForm form;
  FrmMap& page = form.page;
};

TEST_F(MapPage, AClickShowsTheMapWhenTheTimerHasFired) {
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Beta", "Gamma", "gone.bzn"}));
  EXPECT_EQ(page.lstmap.ListIndex(), RowOf("*No Map*"));
  test::ClickRow(page.lstmap, RowOf("Alpha"));
  EXPECT_EQ(page.txtMapDesc.Text() + Selected(), "No Map Selected-1");
  AwaitTimer();
  EXPECT_EQ(Selected(), "Alpha");
  EXPECT_EQ(page.txtMapDesc.Text(), "First line.\r\nSecond line.");
  EXPECT_EQ(page.lblMapDetails.Caption(), "Map Name: Alpha\r\nMap Type: Deathmatch\r\n Subtype: CTF");
  EXPECT_EQ(form.txtMapFileName.Text(), "Alpha.bzn");
  EXPECT_EQ(Corner(), kRed);
  EXPECT_TRUE(form.bold);
  Choose("gone.bzn");
  EXPECT_EQ(page.txtMapDesc.Text(), "First line.\r\nSecond line.") << "there is no name to look for";
  EXPECT_EQ(page.lblMapDetails.Caption(), "Map Name: gone.bzn\r\nMap Type: N/A");
  EXPECT_EQ(Corner(), kGreen);
  Choose("Gamma");
  EXPECT_EQ(page.txtMapDesc.Text(), "No Description Available");
  Choose("*No Map*");
  EXPECT_EQ(page.txtMapDesc.Text() + page.lblMapDetails.Caption(), "No Map SelectedNo Map Selected");
  EXPECT_EQ(form.txtMapFileName.Text() + Selected(), "-1");
  EXPECT_FALSE(form.bold);
}

TEST_F(MapPage, ADamagedPictureShowsTheNoMapPicture) {
  Put("addon/pictures/picture.png", test::SoundPicture("bmp").substr(0, 30));
  Choose("Alpha");
  EXPECT_EQ(Corner(), kGreen);
}

TEST_F(MapPage, OfManyClicksOnlyTheLastIsServed) {
  form.marks = 0;
  test::ClickRow(page.lstmap, RowOf("Alpha"));
  test::PressKey(page.lstmap, Qt::Key_Down, {}, 2);
  AwaitTimer();
  EXPECT_EQ(form.marks, 1);
  EXPECT_EQ(Selected(), "Gamma");
}

// The search for the text of a map runs events.
TEST_F(MapPage, WhatIsDoneDuringTheWorkComesNext) {
  const struct {
    std::function<void()> act;
    const char* selected;
    const char* file;
  } cases[] = {
      {[this] { test::ClickRow(page.lstmap, RowOf("Beta")); }, "Beta", "Beta.bzn"},
      {[this] { page.ClearMaps(); }, "-1", "Beta.bzn"},
  };
  for (const auto& c : cases) {
    ShowAll();
    AwaitTimer();
    form.marks = 0;
    bool done = false;
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [&] {
      if (done || form.marks > 0 || Selected() != "Alpha") return;
      done = true;
      c.act();
    });
    events.start(0);
    test::ClickRow(page.lstmap, RowOf("Alpha"));
    AwaitTimer();
    EXPECT_TRUE(done);
    EXPECT_EQ(Selected(), c.selected);
    EXPECT_EQ(form.txtMapFileName.Text(), c.file);
    EXPECT_EQ(form.marks, 1);
  }
}

TEST_F(MapPage, TheSelectionComesBackWithThePage) {
  Choose("Beta");
  page.PopulateMapList(1, kAllSubTypes);
  EXPECT_EQ(Rows(), Strings{"*No Map*"});
  EXPECT_EQ(page.lstmap.ListIndex(), -1);
  SearchDirs = {"", "addon", "addon"};
  ShowAll();
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Alpha", "Beta", "Beta", "Gamma", "Gamma"}));
  EXPECT_EQ(page.lstmap.ListIndex(), 4);
  AwaitTimer();
  EXPECT_EQ(Selected(), "Beta");
  form.txtMapFileName.SetText("my.bzn");
  form.busy = 1;
  page.txtMapFileName_LostFocus();
  EXPECT_EQ(Selected(), "Beta") << "the busy window is up";
  form.busy = 0;
  page.txtMapFileName_LostFocus();
  page.PopulateMapList(5, kAllSubTypes);
  EXPECT_EQ(Selected() + page.txtMapDesc.Text(), "-2Manual Entry");
  EXPECT_EQ(page.lstmap.ListIndex(), -1);
}

constexpr char kBadEnding[] = "Invalid Map Filename. Must end in .bzn or .trn";
constexpr char kBadCharacters[] = "Invalid Chars in map name.\r\n\\, +, and - are not valid in map names.";

const struct {
  const char* typed;
  const char* complaint;  // null: none
  const char* selected;
} kNames[] = {
    {"MY.TRN  ", nullptr, "-2"},
    {"my\\map.bzn", nullptr, "-2"},
    {"ALPHA.bzn", nullptr, "Alpha"},
    {"Alpha.bzn ", nullptr, "-2"},
    {"  ", nullptr, "-1"},
    {"m-y.txt", kBadEnding, "Alpha"},
    {"m-y.bzn", kBadCharacters, "Alpha"},
    {"m+y.bzn", kBadCharacters, "Alpha"},
    {"m/y.trn", kBadCharacters, "Alpha"},
};

TEST_F(MapPage, ATypedNameIsJudgedWhenTheBoxIsLeft) {
  for (const auto& c : kNames) {
    SCOPED_TRACE(c.typed);
    Choose("*No Map*");
    Choose("Alpha");
    const std::string before = page.txtMapDesc.Text();
    form.asked = 0;
    form.txtMapFileName.SetFocus();
    form.txtMapFileName.SetText(c.typed);
    if (c.complaint) ExpectMsgBox(c.complaint);
    page.lstmap.SetFocus();
    EXPECT_EQ(form.asked, c.complaint ? 1 : 0);
    EXPECT_EQ(Selected(), c.selected);
    EXPECT_EQ(page.txtMapDesc.Text(), Selected() == "-2"   ? "Manual Entry"
                                      : Selected() == "-1" ? "No Map Selected"
                                                           : before);
    EXPECT_EQ(Corner(), Selected() == "Alpha" ? kRed : kGreen);
    EXPECT_EQ(form.bold, Selected() != "-1");
  }
}

TEST_F(MapPage, RefreshScansAgain) {
  Choose("Alpha");
  PutMap("Delta", "");
  ShowAll();
  EXPECT_EQ(RowOf("Delta"), 5) << "the catalogue is loaded once";
  test::ClickOn(page.cmdMapLstRefresh);
  EXPECT_EQ(RowOf("Delta"), 3);
  EXPECT_TRUE(form.busy == 0 && form.Enabled());
  EXPECT_EQ(Selected(), "-1");
  AwaitTimer();
  EXPECT_EQ(form.txtMapFileName.Text(), "") << "the row of no map is selected now";
}

TEST_F(MapPage, AClickDoesNotOutliveItsList) {
  form.txtMapFileName.SetText("Beta.bzn");
  test::ClickRow(page.lstmap, RowOf("Alpha"));
  page.ClearMaps();
  AwaitTimer();
  EXPECT_EQ(form.txtMapFileName.Text(), "") << "the game would be given a map that no page shows as chosen";
  EXPECT_EQ(Corner(), kGreen);
}

}  // namespace
