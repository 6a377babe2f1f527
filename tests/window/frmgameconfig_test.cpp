#include "gameconfig/ui/frmbz2config.h"
#include "gameconfig/ui/frmbz2config1_3.h"
#include "gameconfig/ui/frmextras.h"
#include "tests/window/pagetest.h"

#include <algorithm>

using namespace varnik;

namespace {

using GamePage = test::PageTest;

TEST_F(GamePage, AppliesDarkPlants) {
  test::PageForm<FrmBZ2Config> form;
  test::ShowActive(form);
  for (const auto& [stored, state] : {std::pair("7", 1), {"2", 2}, {"0", 0}}) {
    test::WriteFile(InRoot("render.cfg"), std::string("[Render]\r\ndarkPlants=") + stored + "\r\n");
    form.page.LoadSettings();
    EXPECT_EQ(form.page.chkdarkPlants.Value(), state);
  }
  test::ClickOn(form.page.chkdarkPlants);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\ndarkPlants=0\r\n") << "only Apply writes";
  test::ClickOn(form.page.cmdCfgApply);
  EXPECT_EQ(Content("render.cfg"), "[Render]\r\ndarkPlants=1\r\n");
}

TEST_F(GamePage, AppliesUserPrefsAndKeepsForeignNumbers) {
  test::WriteFile(InRoot("addon/gameprefs.ini"),
                  "[UserPrefs]\r\nShowFPS=True\r\nHovercraftForceView=7\r\nPersonForceView=2\r\nWalkerForceView=x\r\n");
  test::PageForm<FrmBZ2Config1_3> form;
  FrmBZ2Config1_3& page = form.page;
  test::ShowActive(form);
  ASSERT_TRUE(page.LoadSettings());
  EXPECT_EQ(page.cmbHovercraft.ListIndex(), -1);
  EXPECT_EQ(page.cmbPerson.Text() + page.cmbTracked.Text() + page.cmbWalker.Text(),
            "Chase(Shift+F3)!1.2 DefaultCockpit(Shift+F1)");
  test::ClickOn(page.chkFramerate);
  test::ClickOn(page.chkVsync);
  test::ChooseRow(page.cmbTracked, 2);
  test::Type(page.txtAltNick, "me");
  test::ClickOn(page.cmdCFGApply1_3);
  EXPECT_EQ(Content("addon/gameprefs.ini"),
            "[UserPrefs]\r\nShowFPS=false\r\nHovercraftForceView=7\r\nPersonForceView=2\r\nWalkerForceView=0\r\n"
            "VSyncOn=true\r\nTrackedForceView=1\r\nIRCAlternateNick=me\r\nIRCUserID=player\r\n"
            "IRCFullName=Battlezone II Player\r\n");
}

std::string BitmapHead(std::uint32_t width, std::uint32_t height) {
  const auto number = [](std::uint32_t value) { return std::string(reinterpret_cast<const char*>(&value), 4); };
  return "BM" + number(0) + number(0) + number(54) + number(40) + number(width) + number(height) +
         std::string("\1\0\x18\0", 4) + std::string(24, '\0');
}

// Of one colour, 24 bits a pixel; `width` a multiple of 4.
std::string Bitmap(std::uint32_t width, std::uint32_t height) {
  return BitmapHead(width, height) + std::string(std::size_t{3} * width * height, '\x40');
}

TEST_F(GamePage, ShowsScreenshots) {
  std::string hint;
  test::PageForm<FrmExtras> form([&hint](const std::string& text) { hint = text; });
  FrmExtras& page = form.page;
  test::ShowActive(form);
  page.populatescreenshots();
  EXPECT_FALSE(page.cmbScreenshots.Enabled());
  const struct {
    const char* name;
    std::string content;
    int width;
  } files[] = {
      {"a.bmp", Bitmap(4, 2), 4},
      {"old/B.BMP", Bitmap(5000, 4000), 5000},
      {"broken.bmp", BitmapHead(8, 8).substr(0, 40), 0},
      {"huge.bmp", BitmapHead(60000, 60000), 0},
      {"none.bmp", "", 0},
  };
  test::WriteFile(InRoot("screenshots/other.png"), "");
  for (const auto& file : files)
    test::WriteFile(InRoot(std::string("screenshots/") + file.name), file.content);
  page.populatescreenshots();
  EXPECT_TRUE(page.cmbScreenshots.Enabled());
  ASSERT_EQ(page.cmbScreenshots.ListCount(), static_cast<int>(std::size(files)));
  for (int row = 0; row < page.cmbScreenshots.ListCount(); ++row) {
    test::ChooseRow(page.cmbScreenshots, row);
    std::string name = page.cmbScreenshots.Text();
    std::replace(name.begin(), name.end(), '\\', '/');
    const auto* file =
        std::find_if(std::begin(files), std::end(files), [&name](const auto& f) { return name == f.name; });
    ASSERT_NE(file, std::end(files)) << name;
    EXPECT_EQ(page.imgScreenshot.Image().WidthInPixels(), file->width) << name;
  }
  EXPECT_EQ(hint, "Select a screenshot to view.");
  page.populatescreenshots();
  EXPECT_TRUE(page.imgScreenshot.Image().Empty());
}

}  // namespace
