#include "support/ui/frmoptions.h"

#include "support/settings.h"
#include "tests/window/pagetest.h"

using namespace varnik;

namespace {

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
    dialog_ = std::make_unique<frmOptions>(OptionsHost{pictures_, icons_,
                                                       [this](const win::Picture&) { told_ += "picture;"; },
                                                       [this](const win::Picture&) { told_ += "icon;"; },
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
    dialog_->Close();
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
  test::PressKey(*dialog_, Qt::Key_Escape);
  EXPECT_FALSE(dialog_->Visible());
}

TEST_F(OptionsDialog, TheStartAtLogInIsAnEntryThatDesktopsAccept) {
  const std::filesystem::path entry = sandbox_.Home() / "config/autostart/varnik-autoload.desktop";
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
