#include <QTimer>

#include "installs/frmaddrembz2.h"
#include "support/frmoptions.h"
#include "tests/window/pagetest.h"

using namespace varnik;

namespace {

constexpr char kAsStored[] = "/a\\=a;*/b\\=b;/c\\=c;";

class LocationDialog : public test::PageTest {
 protected:
  static void StoreRows() {
    int row = 0;
    for (const std::string name : {"a", "b", "c"}) {
      const std::string n = std::to_string(row++);
      Store(kInstallsSection, "BZ2Loc" + n, "/" + name + "\\");
      Store(kInstallsSection, "BZ2Des" + n, name);
      Store(kInstallsSection, "BZ2Sel" + n, name == "b" ? "Yes" : "No");
    }
  }

  static std::string Stored() {
    std::string rows;
    for (std::size_t i = 0; !StoredInstallPath(i).empty(); ++i)
      rows += (StoredInstallIsTicked(i) ? "*" : "") + StoredInstallPath(i) + "=" + StoredInstallDescription(i) + ";";
    return rows;
  }
};

const struct {
  const char* what;
  int row;
  void (*act)(frmAddRemBZ2& dialog);
  const char* saved;
  const char* focused;
} kSteps[] = {
    {"tick", -1, [](frmAddRemBZ2& d) { test::ClickTick(d.lstBZ2Loc, 0); }, "*/a\\=a;*/b\\=b;/c\\=c;", "lstBZ2Loc"},
    {"describe", 1, [](frmAddRemBZ2& d) { test::Type(d.txtDescriptiveName, "!"); }, "/a\\=a;*/b\\=b!;/c\\=c;",
     "lstBZ2Loc"},
    {"up", 1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvUp); }, "*/b\\=b;/a\\=a;/c\\=c;", "cmdMvUp"},
    {"down with no row", -1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvDown); }, kAsStored, "cmdMvDown"},
    {"to the end and beyond", 0,
     [](frmAddRemBZ2& d) { test::PressKey(d.lstBZ2Loc, Qt::Key_Down, Qt::ControlModifier, 3); },
     "*/b\\=b;/c\\=c;/a\\=a;", "lstBZ2Loc"},
    {"remove, which selects none", 0, [](frmAddRemBZ2& d) { test::PressKey(d.lstBZ2Loc, Qt::Key_Delete, {}, 3); },
     "*/b\\=b;/c\\=c;", "lstBZ2Loc"},
};

TEST_F(LocationDialog, EditsRowsWithTicksAndDescriptions) {
  for (const auto& c : kSteps) {
    SCOPED_TRACE(c.what);
    StoreRows();
    std::string saved;
    frmAddRemBZ2 dialog([&saved] { saved = Stored(); });
    test::ShowActive(dialog);
    if (c.row >= 0) test::ClickRow(dialog.lstBZ2Loc, c.row);
    c.act(dialog);
    EXPECT_EQ(test::Focused(dialog), c.focused);
    const std::string text = dialog.lstBZ2Loc.List(dialog.lstBZ2Loc.ListIndex());
    EXPECT_EQ(dialog.lblSel.Caption(), text.empty() ? "" : "Current Selection: " + text);
    EXPECT_EQ(dialog.lblSel.ToolTipText(), text);
    EXPECT_EQ(dialog.txtDescriptiveName.Enabled(), !text.empty());
    test::ClickOn(dialog.cmdSaveChanges);
    EXPECT_EQ(saved, c.saved);
    EXPECT_FALSE(dialog.Visible());
  }
}

TEST_F(LocationDialog, AddsWhatIsTypedWhenItIsAnInstall) {
  const std::string install = sandbox.Install().string();
  const struct {
    std::string typed, becomes, told, title;
    int rows;
  } cases[] = {
      {"", "\\", "That location does not appear to be valid.", "Location invalid", 0},
      {install, install + "\\", "", "", 1},
      {install, install + "\\", "That location is already listed", "Location Exists", 1},
      {install + "/", install + "/", "", "", 2},
  };
  frmAddRemBZ2 dialog([] {});
  test::ShowActive(dialog);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    dialog.txtManual.SetText(c.typed);
    if (!c.told.empty()) ExpectMsgBox(c.told, win::Answer::kOk, c.title);
    test::PressKey(dialog.txtManual, Qt::Key_Return);
    EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), c.rows);
    EXPECT_FALSE(dialog.lstBZ2Loc.Selected(c.rows - 1));
    EXPECT_EQ(dialog.txtManual.Text(), c.becomes);
  }
  QTest::keyClick(dialog.Window(), Qt::Key_Escape);
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(Stored(), "") << "nothing was saved";
}

TEST_F(LocationDialog, ASearchListsEachInstallOnceAndTakesNoInput) {
  StoreRows();
  for (const char* file : {"one/bzone.exe", "one/data.pak", "one/binkw32.dll", "one/two/bzone.exe", "one/two/data.pak",
                           "one/two/binkw32.dll", "one/BZONE.EXE", "not/bzone.exe"})
    test::WriteFile(sandbox.Root() / "disk" / file, "");
  frmAddRemBZ2 dialog([] {});
  const auto search = [&](const std::string& folder, const char* lastMessage) {
    ExpectMsgBox("Please select a folder/drive to start searching from", win::Answer::kOk, "Instructions");
    Expect({win::BoxKind::kFolder, "", "Search Start", 0, ""}, {{}, folder});
    if (!folder.empty()) ExpectMsgBox("Varnik will now search the location you specified for BZ2.");
    if (*lastMessage) ExpectMsgBox(lastMessage);
    test::ClickOn(dialog.cmdSearchBZ2);
  };
  const char* const found = "Thank you for waiting. Varnik has finished searching.";
  const std::string disk = (sandbox.Root() / "disk").string();
  test::ShowActive(dialog);
  test::ClickRow(dialog.lstBZ2Loc, 1);
  search("", "");
  EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), 3);
  std::string progress;
  QTimer::singleShot(0, [&] {
    test::ClickOn(dialog.cmdCancel);
    test::RunEvents(500);
    progress = dialog.lblSel.Caption();
  });
  for (const std::string& folder : {disk, disk, disk + "/not"}) {
    search(folder, found);
    EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), 5);
    EXPECT_EQ(dialog.lblSel.Caption(), "Current Selection: /b\\");
    EXPECT_TRUE(dialog.Enabled() && dialog.Visible());
  }
  EXPECT_TRUE(progress.starts_with("Searching: ")) << progress;
  QTimer::singleShot(0, [&] { dialog.Close(win::UnloadMode::kAppWindows); });
  search(disk, "");
  EXPECT_FALSE(dialog.Visible()) << "nothing more is said when the program ends";
}

class OptionsDialog : public test::PageTest {
 protected:
  OptionsDialog() {
    for (const char* maker : {"A", "", "C"}) {
      pictures_.Add(win::Picture(), maker);
      icons_.Add(win::Picture(), maker);
    }
  }

  void Open() {
    told_.clear();
    const auto tell = [this](const char* what) { return [this, what](const auto&) { told_ += what; }; };
    dialog_ = std::make_unique<frmOptions>(OptionsHost{pictures_, icons_, tell("picture;"), tell("icon;"),
                                                       [this](bool shown) { told_ += shown ? "bar;" : "no bar;"; }});
    test::ShowActive(*dialog_);
  }

  win::ImageList pictures_, icons_;
  std::string told_;
  std::unique_ptr<frmOptions> dialog_;
};

TEST_F(OptionsDialog, StoresEachBoxAtOnce) {
  const struct {
    const char* key;
    win::CheckBox frmOptions::*box;
    bool* flag;
    const char* told;
  } kBoxes[] = {
      {"BinDat", &frmOptions::chkBinData, &ClearBindataOnLaunch, ""},
      {"HighPri", &frmOptions::chkHighPriority, &HighPriority, ""},
      {"OldMods", &frmOptions::chkOldMods, &ShowOldMods, ""},
      {"RenameLog", &frmOptions::chkRenameLog, nullptr, ""},
      {"StatusBar", &frmOptions::chkStatusBar, nullptr, "no bar;"},
  };
  for (const auto& c : kBoxes) {
    SCOPED_TRACE(c.key);
    StoreOption(c.key, "on");
    Open();
    EXPECT_EQ(((*dialog_).*c.box).Value(), 0) << "only the exact word counts";
    EXPECT_EQ(ReadOption(c.key), "on") << "a box that stays as it was stores nothing";
    for (const std::string stored : {"On", "Off"}) {
      told_.clear();
      test::ClickOn((*dialog_).*c.box);
      EXPECT_EQ(ReadOption(c.key), stored);
      EXPECT_TRUE(!c.flag || *c.flag == (stored == "On"));
    }
    EXPECT_EQ(told_, c.told);
  }
}

TEST_F(OptionsDialog, SlidersShowAndStoreWhatTheyStandOn) {
  for (const char* stored : {"0", "4", "abc", "2"}) {
    StoreOption("NoMapPic", stored);
    StoreOption("TrayIconNum", stored);
    StoreOption("StatusBar", "Off");
    Open();
    EXPECT_EQ(told_, "picture;icon;");
    EXPECT_EQ(ReadOption("NoMapPic") + ReadOption("TrayIconNum"), stored[0] == '2' ? "22" : "11");
  }
  EXPECT_EQ(dialog_->imgNoMapPreview.ToolTipText() + dialog_->imgtrayicon.ToolTipText(), "Picture origin unknown");
  test::PressKey(dialog_->sldNoMapImage, Qt::Key_Right);
  test::PressKey(dialog_->sldtrayicon, Qt::Key_End);
  EXPECT_EQ(ReadOption("NoMapPic") + ReadOption("TrayIconNum"), "33");
  EXPECT_EQ(dialog_->imgNoMapPreview.ToolTipText() + dialog_->imgtrayicon.ToolTipText(),
            "Picture made by: CIcon made by: C");
}

TEST_F(OptionsDialog, TheStartAtLogInIsAnEntryThatDesktopsAccept) {
  const std::filesystem::path entry = sandbox.Home() / "config/autostart/varnik-autoload.desktop";
  Open();
  EXPECT_EQ(dialog_->chkOnBoot.Value(), 0);
  test::ClickOn(dialog_->chkOnBoot);
  EXPECT_NE(test::ReadFile(entry).find("\"/boot\""), std::string::npos) << test::ReadFile(entry);
  EXPECT_EQ(system(("desktop-file-validate " + entry.string()).c_str()), 0);
  test::WriteFile(entry, "out of date");
  Open();
  EXPECT_EQ(dialog_->chkOnBoot.Value(), 1);
  EXPECT_NE(test::ReadFile(entry), "out of date") << "written anew with the present path";
  test::ClickOn(dialog_->chkOnBoot);
  EXPECT_FALSE(std::filesystem::exists(entry));
}

}  // namespace
