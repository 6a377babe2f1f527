#include "maps/ui/frmmap.h"

#include "maps/maplist.h"
#include "tests/window/pagetest.h"
#include "tests/window/picture_corpus.h"

#include <QTimer>

using namespace varnik;

namespace {

using Strings = std::vector<std::string>;

constexpr std::uint32_t kGreen = 0xFF00FF00, kRed = 0xFFFF0000;

class MapPage : public test::MainWindowTest {
 protected:
  MapPage() {
    ListInstall();
    PutMap("Alpha", "mapDesc=text.odf\nmapTga=picture.tga\n[NetVars]\nivar5=1\nivar7=2\n");
    PutMap("Beta", "[NetVars]\nivar5=2\n");
    PutMap("Gamma", "");
    Put("data/gone.bzn", "");
    Put("data/text.odf", "First line.\r\nSecond line.");
    Put("addon/pictures/picture.png", test::SoundPicture("png"));
    Open();
    QImage green(10, 10, QImage::Format_RGB32);
    green.fill(kGreen);
    Page().SetNoMapPicture(win::Picture(green));
    test::ClickNode(main->SettingTree, "Maps");
    AwaitTimer();
  }

  void PutMap(const std::string& title, const std::string& lines) const {
    Put("addon/maps/" + title + ".bzn", "");
    Put("addon/maps/" + title + ".inf", "[DESCRIPTION]\nmissionName=" + title + "\n" + lines);
  }

  Strings Rows() const { return test::RowsOf(Page().lstmap); }
  int RowOf(const std::string& title) const {
    const Strings rows = Rows();
    return static_cast<int>(std::find(rows.begin(), rows.end(), title) - rows.begin());
  }
  static std::string Selected() {
    return SelectedMapIndex < 0 ? std::to_string(SelectedMapIndex) : MapList[SelectedMapIndex].Title;
  }
  void AwaitTimer() const {
    EXPECT_TRUE(test::Await([this] { return !Page().tmrMap.Enabled(); }));
  }
  void Choose(const std::string& title) const {
    test::ClickRow(Page().lstmap, RowOf(title));
    AwaitTimer();
  }

  // The selected map and what the page says of it; the name that the game is given; whether it has a picture.
  void ExpectShown(const std::string& text, const std::string& details, const std::string& name, bool picture) const {
    EXPECT_EQ(Selected() + "|" + Page().txtMapDesc.Text(), text);
    EXPECT_EQ(Page().lblMapDetails.Caption(), details);
    EXPECT_EQ(Name().Text(), name);
    EXPECT_EQ(Page().imgmap.Shown().Pixel(0, 0), picture ? kRed : kGreen);
    EXPECT_EQ(main->SettingTree.Bold("RMap"), Selected() != "-1");
  }

  FrmMap& Page() const { return main->mapPage; }
  win::TextBox& Name() const { return main->cmdLinePage.txtMapFileName; }
};

TEST_F(MapPage, AClickShowsTheMapWhenTheTimerHasFired) {
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Beta", "Gamma", "gone.bzn"}));
  EXPECT_EQ(Page().lstmap.ListIndex(), RowOf("*No Map*"));
  test::ClickRow(Page().lstmap, RowOf("Alpha"));
  ExpectShown("-1|No Map Selected", "No Map Selected", "", false);
  AwaitTimer();
  const std::string alpha = "Map Name: Alpha\r\nMap Type: Deathmatch\r\n Subtype: CTF";
  ExpectShown("Alpha|First line.\r\nSecond line.", alpha, "Alpha.bzn", true);
  Choose("gone.bzn");  // it has no name to look for a text under
  ExpectShown("gone.bzn|First line.\r\nSecond line.", "Map Name: gone.bzn\r\nMap Type: N/A", "gone.bzn", false);
  Put("data/text.odf", std::string((1u << 20) + 1, 'x'));
  Choose("Alpha");
  EXPECT_EQ(Page().txtMapDesc.Text(), "No Description Available");
  Put("data/text.odf", "First line.\r\nSecond line.");
  Choose("Gamma");
  EXPECT_EQ(Page().txtMapDesc.Text(), "No Description Available");
  Put("addon/pictures/picture.png", test::SoundPicture("bmp").substr(0, 30));
  Choose("Alpha");
  ExpectShown("Alpha|First line.\r\nSecond line.", alpha, "Alpha.bzn", false);
  Choose("*No Map*");
  ExpectShown("-1|No Map Selected", "No Map Selected", "", false);
}

// The search for the text of a map runs events.
TEST_F(MapPage, WhatIsDoneDuringTheWorkComesNext) {
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[this] { test::ClickRow(Page().lstmap, RowOf("Beta")); }, "Beta"},
      {[this] { Page().ClearMaps(); }, "-1"},
  };
  for (const auto& [act, selected] : cases) {
    bool done = false;
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [&, act = act] {
      if (done || Selected() != "Alpha" || Name().Text() == "Alpha.bzn") return;
      done = true;
      act();
    });
    events.start(0);
    test::ClickRow(Page().lstmap, RowOf("Alpha"));
    AwaitTimer();
    EXPECT_TRUE(done);
    EXPECT_EQ(Selected(), selected);
    EXPECT_EQ(Name().Text(), "Beta.bzn");
  }
  test::RunEvents();
  test::ClickNode(main->SettingTree, "Maps");
  AwaitTimer();
  test::ClickRow(Page().lstmap, RowOf("Alpha"));
  Page().ClearMaps();
  AwaitTimer();
  ExpectShown("-1|No Map Selected", "No Map Selected", "", false);
}

TEST_F(MapPage, TheSelectionComesBackWithThePage) {
  Choose("Beta");
  main->SettingTree_NodeClick("CMap1");
  EXPECT_EQ(Rows(), Strings{"*No Map*"});
  EXPECT_EQ(Page().lstmap.ListIndex(), -1);
  SearchDirs = {"", "addon", "addon"};
  test::ClickNode(main->SettingTree, "Maps");
  EXPECT_EQ(Rows(), (Strings{"*No Map*", "Alpha", "Alpha", "Beta", "Beta", "Gamma", "Gamma"}));
  EXPECT_EQ(Page().lstmap.ListIndex(), 4);
  AwaitTimer();
  EXPECT_EQ(Selected(), "Beta");
  PutMap("Delta", "");
  test::ClickNode(main->SettingTree, "Maps");
  EXPECT_EQ(Rows().size(), 7u) << "the catalogue is loaded once";
  test::ClickOn(Page().cmdMapLstRefresh);
  EXPECT_EQ(Rows().size(), 9u);
  EXPECT_TRUE(main->Enabled() && !busy.Visible());
  AwaitTimer();
  EXPECT_EQ(Selected() + Name().Text(), "-1");
}

TEST_F(MapPage, EscapeOrACloseBoxEndsAScan) {
  Put("varnik.lst", "addon\\maps\\Beta.inf,addon\\maps\\\r\n");
  const std::function<void()> ways[] = {
      [this] {
        QApplication::setActiveWindow(busy.Window());
        QTest::keyClick(busy.Window(), Qt::Key_Escape);
      },
      [this] { QTest::keyClick(main->Window()->windowHandle(), Qt::Key_Escape); },
      [this] { busy.Window()->close(); },
      [this] { main->Window()->close(); },
  };
  for (const auto& stop : ways) {
    SCOPED_TRACE(&stop - ways);
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [&] {
      if (!busy.Visible()) return;
      events.stop();
      stop();
    });
    test::RunEvents(100);  // a short scan runs events only after a pause
    events.start(0);
    test::ClickOn(Page().cmdMapLstRefresh);
    EXPECT_FALSE(MapsLoaded || busy.Visible());
    EXPECT_TRUE(main->Loaded() && main->Enabled());
    EXPECT_EQ(test::ReadFile(InRoot("varnik.lst")), "addon\\maps\\Beta.inf,addon\\maps\\\r\n");
  }
}

TEST_F(MapPage, ATypedNameIsJudgedWhenTheBoxIsLeft) {
  const std::string alpha = "Alpha|First line.\r\nSecond line.", manual = "-2|Manual Entry";
  const std::string ending = "Invalid Map Filename. Must end in .bzn or .trn";
  const std::string characters = "Invalid Chars in map name.\r\n\\, +, and - are not valid in map names.";
  const struct {
    std::string typed, complaint, shown;
  } cases[] = {
      {"MY.TRN  ", "", manual},       {"my\\map.bzn", "", manual},    {"Alpha.bzn ", "", manual},
      {"ALPHA.bzn", "", alpha},       {"m-y.txt", ending, alpha},     {"m-y.bzn", characters, alpha},
      {"m+y.bzn", characters, alpha}, {"m/y.trn", characters, alpha}, {"  ", "", "-1|No Map Selected"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    test::ClickNode(main->SettingTree, "Maps");
    Choose("*No Map*");
    Choose("Alpha");
    const std::string details = Page().lblMapDetails.Caption();
    main->SettingTree_NodeClick("RCMD");
    test::ShowActive(*main);
    Name().SetFocus();
    Name().SetText(c.typed);
    if (!c.complaint.empty()) ExpectMsgBox(c.complaint);
    main->SettingTree.SetFocus();
    EXPECT_EQ(Name().HasFocus(), !c.complaint.empty());
    if (!c.complaint.empty()) {
      test::RunEvents(20);
      EXPECT_EQ(main->SettingTree.SelectedItem(), "RCMD") << "the tree follows the page";
    }
    ExpectShown(c.shown, c.shown == alpha ? details : c.shown.substr(3), c.typed, c.shown == alpha);
    Name().SetText("Alpha.bzn");
  }
  main->SettingTree_NodeClick("RCMD");
  Name().SetFocus();
  Name().SetText("thrown-away.txt");
  test::PressKey(Name(), Qt::Key_F5);
  AwaitTimer();
  EXPECT_EQ(Name().Text(), "") << "and nothing was said of it";
}

}  // namespace
