#include "installs/ui/frmaddrembz2.h"
#include "support/ui/frmoptions.h"
#include "tests/window/pagetest.h"

#include <QTimer>

using namespace varnik;

namespace {

void PressThrice(frmAddRemBZ2& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  test::PressKey(dialog.lstBZ2Loc, key, modifiers, 3);
}

class LocationDialog : public test::PageTest {
 protected:
  LocationDialog() { StoreRows(); }

  static void StoreRows() {
    for (const std::string row : {"0a", "1b", "2c"}) {
      Store(kInstallsSection, "BZ2Loc" + row.substr(0, 1), "/" + row.substr(1) + "\\");
      Store(kInstallsSection, "BZ2Des" + row.substr(0, 1), row.substr(1));
      Store(kInstallsSection, "BZ2Sel" + row.substr(0, 1), row == "1b" ? "Yes" : "No");
    }
  }

  static std::string Stored() {
    std::string rows;
    for (std::size_t i = 0; !StoredInstallPath(i).empty(); ++i)
      rows += (StoredInstallIsTicked(i) ? "*" : "") + StoredInstallPath(i) + "=" + StoredInstallDescription(i) + ";";
    return rows;
  }
};

TEST_F(LocationDialog, EditsRowsWithTicksAndDescriptions) {
  const struct {
    int row;
    void (*act)(frmAddRemBZ2& dialog);
    const char* saved;
  } cases[] = {
      {-1, [](frmAddRemBZ2& d) { test::ClickTick(d.lstBZ2Loc, 0); }, "*/a\\=a;*/b\\=b;/c\\=c;"},
      {1, [](frmAddRemBZ2& d) { test::Type(d.txtDescriptiveName, "!"); }, "/a\\=a;*/b\\=b!;/c\\=c;"},
      {1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvUp); }, "*/b\\=b;/a\\=a;/c\\=c;"},
      {-1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvDown); }, "/a\\=a;*/b\\=b;/c\\=c;"},
      {0, [](frmAddRemBZ2& d) { PressThrice(d, Qt::Key_Down, Qt::ControlModifier); }, "*/b\\=b;/c\\=c;/a\\=a;"},
      {0, [](frmAddRemBZ2& d) { PressThrice(d, Qt::Key_Delete, {}); }, "*/b\\=b;/c\\=c;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    StoreRows();
    std::string saved;
    frmAddRemBZ2 dialog([&saved] { saved = Stored(); });
    test::ShowActive(dialog);
    if (c.row >= 0) test::ClickRow(dialog.lstBZ2Loc, c.row);
    c.act(dialog);
    const std::string text = dialog.lstBZ2Loc.List(dialog.lstBZ2Loc.ListIndex());
    EXPECT_EQ(dialog.lblSel.Caption(), text.empty() ? "" : "Current Selection: " + text);
    EXPECT_EQ(dialog.txtDescriptiveName.Enabled(), !text.empty());
    test::ClickOn(dialog.cmdSaveChanges);
    EXPECT_EQ(saved, c.saved);
  }
}

TEST_F(LocationDialog, AddsWhatIsTypedWhenItIsAnInstall) {
  const std::string install = sandbox.Install().string();
  const struct {
    std::string typed, told;
    int rows;
  } cases[] = {
      {"", "That location does not appear to be valid.", 3},
      {install, "", 4},
      {install + "\\", "That location is already listed", 4},
      {install + "/", "", 5},
  };
  frmAddRemBZ2 dialog([] {});
  test::ShowActive(dialog);
  for (const auto& c : cases) {
    dialog.txtManual.SetText(c.typed);
    if (!c.told.empty()) ExpectMsgBox(c.told, win::Answer::kOk, "Location ");
    test::PressKey(dialog.txtManual, Qt::Key_Return);
    EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), c.rows);
  }
  QTest::keyClick(dialog.Window(), Qt::Key_Escape);
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(Stored(), "/a\\=a;*/b\\=b;/c\\=c;") << "nothing was saved";
}

TEST_F(LocationDialog, ASearchListsEachInstallOnceAndTakesNoInput) {
  for (const char* file : {"bzone.exe", "data.pak", "binkw32.dll", "two/bzone.exe", "two/data.pak", "two/binkw32.dll",
                           "BZONE.EXE", "not/bzone.exe"})
    test::WriteFile(sandbox.Root() / "disk" / file, "");
  frmAddRemBZ2 dialog([] {});
  const auto search = [&](const std::string& folder, const char* lastMessage) {
    ExpectMsgBox("Please select a folder/drive to start searching from", win::Answer::kOk, "Instructions");
    Expect({win::BoxKind::kFolder, "", "Search Start", 0, ""}, {{}, folder});
    if (!folder.empty()) ExpectMsgBox("Varnik will now search the location you specified for BZ2.");
    if (*lastMessage) ExpectMsgBox(lastMessage);
    test::ClickOn(dialog.cmdSearchBZ2);
  };
  test::ShowActive(dialog);
  dialog.txtManual.SetText((sandbox.Root() / "disk/two").string());
  test::ClickOn(dialog.cmdManualAdd);
  EXPECT_TRUE(dialog.lstBZ2Loc.Selected(3)) << "the menus offer a new row";
  test::ClickRow(dialog.lstBZ2Loc, 1);
  search("", "");
  std::string progress;
  QTimer::singleShot(0, [&] {
    test::ClickOn(dialog.cmdCancel);
    test::RunEvents(500);
    progress = dialog.lblSel.Caption();
  });
  const std::string disk = (sandbox.Root() / "disk").string();
  for (const std::string& folder : {disk, disk + "/not"}) {
    search(folder, "Thank you for waiting. Varnik has finished searching.");
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
    for (const char* maker : {"A", "", "C"})
      pictures_.Add(win::Picture(), maker);
  }

  void Open() {
    const auto noIcon = [](const win::Picture&) {};
    const auto noMapPicture = [this](const win::Picture&) { told_ += "picture;"; };
    const auto bar = [this](bool shown) { told_ += shown ? "bar;" : "no bar;"; };
    dialog_ = std::make_unique<frmOptions>(OptionsHost{pictures_, pictures_, noMapPicture, noIcon, bar});
    test::ShowActive(*dialog_);
  }

  win::ImageList pictures_;
  std::string told_;
  std::unique_ptr<frmOptions> dialog_;
};

TEST_F(OptionsDialog, StoresEachBoxAtOnce) {
  const struct {
    const char* key;
    win::CheckBox frmOptions::*box;
    const bool* flag;
  } boxes[] = {
      {"BinDat", &frmOptions::chkBinData, &ClearBindataOnLaunch},
      {"HighPri", &frmOptions::chkHighPriority, &HighPriority},
      {"OldMods", &frmOptions::chkOldMods, &ShowOldMods},
      {"RenameLog", &frmOptions::chkRenameLog, nullptr},
      {"StatusBar", &frmOptions::chkStatusBar, nullptr},
  };
  for (const auto& c : boxes)
    StoreOption(c.key, "on");
  Open();
  told_.clear();
  for (const auto& c : boxes) {
    SCOPED_TRACE(c.key);
    EXPECT_EQ(((*dialog_).*c.box).Value(), 0) << "only the exact word counts";
    EXPECT_EQ(ReadOption(c.key), "on") << "a box that stays as it was stores nothing";
    test::ClickOn((*dialog_).*c.box);
    EXPECT_EQ(ReadOption(c.key), "On");
    EXPECT_TRUE(!c.flag || *c.flag);
  }
  EXPECT_EQ(told_, "bar;");
  test::ClickOn(dialog_->chkOldMods);
  EXPECT_EQ(ReadOption("OldMods") + (ShowOldMods ? " is on" : ""), "Off");
  const std::filesystem::path entry = sandbox.Home() / "config/autostart/varnik-autoload.desktop";
  test::ClickOn(dialog_->chkOnBoot);
  test::WriteFile(entry, "out of date");
  Open();
  EXPECT_NE(test::ReadFile(entry).find("\"/boot\""), std::string::npos) << "written anew with the present path";
  test::ClickOn(dialog_->chkOnBoot);
  EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(OptionsDialog, SlidersShowAndStoreWhatTheyStandOn) {
  StoreOption("StatusBar", "Off");
  for (const char* stored : {"0", "4", "abc", "2"}) {
    StoreOption("NoMapPic", stored);
    StoreOption("TrayIconNum", stored);
    Open();
    EXPECT_EQ(std::exchange(told_, ""), "picture;");
    EXPECT_EQ(ReadOption("NoMapPic") + ReadOption("TrayIconNum"), stored[0] == '2' ? "22" : "11");
  }
  const auto makers = [this] { return dialog_->imgNoMapPreview.ToolTipText() + dialog_->imgtrayicon.ToolTipText(); };
  EXPECT_EQ(makers(), "Picture origin unknown");
  test::PressKey(dialog_->sldNoMapImage, Qt::Key_Right);
  test::PressKey(dialog_->sldtrayicon, Qt::Key_End);
  EXPECT_EQ(ReadOption("NoMapPic") + ReadOption("TrayIconNum"), "33");
  EXPECT_EQ(makers(), "Picture made by: CIcon made by: C");
}

}  // namespace
