#include "installs/ui/frmaddrembz2.h"

#include "support/settings.h"
#include "tests/window/pagetest.h"

#include <QTimer>

using namespace varnik;

namespace {

constexpr char kAsStored[] = "/a\\=a;*/b\\=b;/c\\=c;";

class LocationDialog : public test::PageTest {
 protected:
  LocationDialog() { StoreRows({"/a\\", "/b\\", "/c\\"}); }

  static void StoreRows(const std::vector<std::string>& paths) {
    for (std::size_t i = 0; i < paths.size(); ++i) {
      const std::string n = std::to_string(i);
      Store(kInstallsSection, "BZ2Loc" + n, paths[i]);
      Store(kInstallsSection, "BZ2Des" + n, paths[i].substr(1, 1));
      Store(kInstallsSection, "BZ2Sel" + n, i == 1 ? "Yes" : "No");
    }
  }

  static std::string Stored() {
    std::string rows;
    for (std::size_t i = 0; !StoredInstallPath(i).empty(); ++i)
      rows += (StoredInstallIsTicked(i) ? "*" : "") + StoredInstallPath(i) + "=" + StoredInstallDescription(i) + ";";
    return rows;
  }

  std::string saved_;  // what was stored when the dialog told of it
};

struct Step {
  const char* what;
  int row;
  void (*act)(frmAddRemBZ2& dialog);
  const char* saved;
  const char* focused;
};

void PressThrice(frmAddRemBZ2& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  for (int i = 0; i < 3; ++i)
    QTest::keyClick(dialog.lstBZ2Loc.Widget(), key, modifiers);
}

const Step kSteps[] = {
    {"tick", -1, [](frmAddRemBZ2& d) { test::ClickTick(d.lstBZ2Loc, 0); }, "*/a\\=a;*/b\\=b;/c\\=c;", "lstBZ2Loc"},
    {"describe", 1, [](frmAddRemBZ2& d) { test::Type(d.txtDescriptiveName, "!"); }, "/a\\=a;*/b\\=b!;/c\\=c;",
     "lstBZ2Loc"},
    {"up", 1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvUp); }, "*/b\\=b;/a\\=a;/c\\=c;", "cmdMvUp"},
    {"up from the top", 0, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvUp); }, kAsStored, "cmdMvUp"},
    {"down with no row", -1, [](frmAddRemBZ2& d) { test::ClickOn(d.cmdMvDown); }, kAsStored, "cmdMvDown"},
    {"to the end and beyond", 0, [](frmAddRemBZ2& d) { PressThrice(d, Qt::Key_Down, Qt::ControlModifier); },
     "*/b\\=b;/c\\=c;/a\\=a;", "lstBZ2Loc"},
    {"remove, which selects none", 0, [](frmAddRemBZ2& d) { PressThrice(d, Qt::Key_Delete); }, "*/b\\=b;/c\\=c;",
     "lstBZ2Loc"},
};

TEST_F(LocationDialog, EditsRowsWithTicksAndDescriptions) {
  for (const Step& c : kSteps) {
    SCOPED_TRACE(c.what);
    StoreRows({"/a\\", "/b\\", "/c\\"});
    frmAddRemBZ2 dialog([this] { saved_ = Stored(); });
    test::ShowActive(dialog);
    if (c.row >= 0) test::ClickRow(dialog.lstBZ2Loc, c.row);
    c.act(dialog);
    EXPECT_EQ(test::Focused(dialog), c.focused);
    const std::string text = dialog.lstBZ2Loc.List(dialog.lstBZ2Loc.ListIndex());
    EXPECT_EQ(dialog.lblSel.Caption(), text.empty() ? "" : "Current Selection: " + text);
    EXPECT_EQ(dialog.lblSel.ToolTipText(), text);
    EXPECT_EQ(dialog.txtDescriptiveName.Enabled(), !text.empty());
    test::ClickOn(dialog.cmdSaveChanges);
    EXPECT_EQ(saved_, c.saved);
    EXPECT_FALSE(dialog.Visible());
  }
}

TEST_F(LocationDialog, DiscardsWhatWasNotSaved) {
  frmAddRemBZ2 dialog([] { FAIL(); });
  test::ShowActive(dialog);
  for (int i = 0; i < 3; ++i) {
    test::ClickRow(dialog.lstBZ2Loc, 0);
    test::ClickOn(dialog.cmdRemove);
  }
  EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), 0);
  EXPECT_EQ(dialog.txtDescriptiveName.Text(), "");
  test::PressKey(dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.Visible());
  EXPECT_EQ(Stored(), kAsStored);
}

TEST_F(LocationDialog, AddsWhatIsTypedWhenItIsAnInstall) {
  constexpr char kInvalid[] = "That location does not appear to be valid.";
  constexpr char kListed[] = "That location is already listed";
  const std::string install = sandbox_.Install().string();
  const struct {
    std::string typed, becomes, told, title;
    int rows;
  } cases[] = {
      {"/nowhere", "/nowhere\\", kInvalid, "Location invalid", 3},
      {"", "\\", kInvalid, "Location invalid", 3},
      {install, install + "\\", "", "", 4},
      {install, install + "\\", kListed, "Location Exists", 4},
      {install + "/", install + "/", "", "", 5},
      {install + "/", install + "/", kListed, "Location Exists", 5},
  };
  frmAddRemBZ2 dialog([] {});
  test::ShowActive(dialog);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    dialog.txtManual.SetText(c.typed);
    if (!c.told.empty()) boxes.ExpectMsgBox(c.told, win::Answer::kOk, c.title);
    test::PressKey(dialog.txtManual, Qt::Key_Return);
    EXPECT_EQ(dialog.lstBZ2Loc.ListCount(), c.rows);
    EXPECT_FALSE(dialog.lstBZ2Loc.Selected(c.rows - 1));
    EXPECT_EQ(dialog.txtManual.Text(), c.becomes);
  }
}

class LocationSearch : public LocationDialog {
 protected:
  LocationSearch() {
    for (const char* file : {"one/bzone.exe", "one/data.pak", "one/binkw32.dll", "one/two/bzone.exe",
                             "one/two/data.pak", "one/two/binkw32.dll", "one/BZONE.EXE", "not/bzone.exe"})
      test::WriteFile(sandbox_.Root() / "disk" / file, "");
    test::ShowActive(dialog_);
  }

  void Search(const std::string& folder, bool toItsEnd = true) {
    boxes.ExpectMsgBox("Please select a folder/drive to start searching from in the next window.", win::Answer::kOk,
                       "Instructions");
    boxes.ExpectFolderDialog("Search Start", folder);
    if (!folder.empty())
      boxes.ExpectMsgBox(
          "Varnik will now search the location you specified for BZ2. During this time Varnik may appear to have "
          "stopped responding. It is most likely busy searching your computer. Please be patient.");
    if (!folder.empty() && toItsEnd) boxes.ExpectMsgBox("Thank you for waiting. Varnik has finished searching.");
    test::ClickOn(dialog_.cmdSearchBZ2);
  }

  frmAddRemBZ2 dialog_{[] {}};
  const std::string disk_ = (sandbox_.Root() / "disk").string();
};

TEST_F(LocationSearch, ListsEachInstallOnce) {
  test::ClickRow(dialog_.lstBZ2Loc, 1);
  Search("");
  EXPECT_EQ(dialog_.lstBZ2Loc.ListCount(), 3);
  for (const std::string& folder : {disk_, disk_, disk_ + "/not"}) {
    Search(folder);
    EXPECT_EQ(dialog_.lstBZ2Loc.ListCount(), 5);
    EXPECT_EQ(dialog_.lblSel.Caption(), "Current Selection: /b\\");
    EXPECT_TRUE(dialog_.Enabled());
  }
}

TEST_F(LocationSearch, TakesNoInputAndTellsHowFarItIs) {
  std::string progress;
  QTimer::singleShot(0, [&] {
    test::ClickOn(dialog_.cmdCancel);
    QTest::qWait(500);
    progress = dialog_.lblSel.Caption();
  });
  Search(disk_);
  EXPECT_TRUE(dialog_.Visible());
  EXPECT_TRUE(progress.starts_with("Searching: ")) << progress;
}

TEST_F(LocationSearch, SaysNothingMoreWhenTheProgramEndsMeanwhile) {
  QTimer::singleShot(0, [&] { dialog_.Close(win::UnloadMode::kAppWindows); });
  Search(disk_, false);
  EXPECT_FALSE(dialog_.Visible());
}

}  // namespace
