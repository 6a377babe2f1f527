#include "gameconfig/ui/frmbz2config.h"
#include "gameconfig/ui/frmbz2config1_3.h"
#include "gameconfig/ui/frmextras.h"
#include "tests/window/pagetest.h"
#include "tests/window/picture_corpus.h"

using namespace varnik;

namespace {

using GamePage = test::PageTest;

TEST_F(GamePage, AppliesDarkPlants) {
  test::PageForm<FrmBZ2Config> form;
  test::ShowActive(form);
  for (const int state : {2, 0}) {
    Put("render.cfg", "[Render]\r\ndarkPlants=" + std::to_string(state) + "\r\n");
    form.page.LoadSettings();
    EXPECT_EQ(form.page.chkdarkPlants.Value(), state);
  }
  test::ClickOn(form.page.chkdarkPlants);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\ndarkPlants=0\r\n") << "only Apply writes";
  test::ClickOn(form.page.cmdCfgApply);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\ndarkPlants=1\r\n");
}

TEST_F(GamePage, AppliesUserPrefsAndKeepsForeignNumbers) {
  Put("addon/gameprefs.ini", "[UserPrefs]\r\nShowFPS=True\r\nHovercraftForceView=7\r\nPersonForceView=2\r\n");
  test::PageForm<FrmBZ2Config1_3> form;
  FrmBZ2Config1_3& page = form.page;
  test::ShowActive(form);
  ASSERT_TRUE(page.LoadSettings());
  EXPECT_EQ(page.cmbHovercraft.Text() + page.cmbPerson.Text() + page.cmbTracked.Text(), "Chase(Shift+F3)!1.2 Default");
  test::ClickOn(page.chkFramerate);
  test::ChooseRow(page.cmbTracked, 2);
  test::Type(page.txtAltNick, "me");
  test::ClickOn(page.cmdCFGApply1_3);
  const std::string file = Content("addon/gameprefs.ini");
  for (const char* line : {"ShowFPS=false", "HovercraftForceView=7", "TrackedForceView=1", "IRCAlternateNick=me"})
    EXPECT_NE(file.find(line), std::string::npos) << line;
}

TEST_F(GamePage, ShowsScreenshots) {
  std::string hint;
  test::PageForm<FrmExtras> form([&hint](const std::string& text) { hint = text; });
  FrmExtras& page = form.page;
  test::ShowActive(form);
  page.populatescreenshots();
  EXPECT_FALSE(page.cmbScreenshots.Enabled());
  Put("screenshots/a.bmp", "damaged");
  Put("screenshots/old/B.BMP", test::SoundPicture("bmp"));
  Put("screenshots/other.png", "");
  page.populatescreenshots();
  EXPECT_TRUE(page.cmbScreenshots.Enabled());
  ASSERT_EQ(page.cmbScreenshots.ListCount(), 2);
  for (const int row : {0, 1, 0}) {
    test::ChooseRow(page.cmbScreenshots, row);
    const bool sound = page.cmbScreenshots.Text() == "old\\B.BMP";
    EXPECT_EQ(page.imgScreenshot.Image().WidthInPixels(), sound ? 60 : 0) << page.cmbScreenshots.Text();
  }
  EXPECT_EQ(hint, "Select a screenshot to view.");
}

}  // namespace
