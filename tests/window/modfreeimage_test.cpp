#include "support/modfreeimage.h"

#include "platform/windowing/picturebox.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "tests/window/picture_corpus.h"

namespace {

constexpr std::uint32_t kNearly = 0xFFF8F8F8;  // a JPEG is not exact
constexpr std::uint32_t kRed = 0xFFFF0000 & kNearly, kBlue = 0xFF0000FF & kNearly;

using PictureFile = test::WindowTest;

TEST_F(PictureFile, ShowsWhatCanBeShownAndNothingElse) {
  test::Sandbox sandbox;
  win::Form form("frmPicture", 3000, 3000);
  win::PictureBox box(form, "imgmap");
  box.Move(0, 0, 1200, 1200);
  const std::string path = sandbox.InstallText() + "picture";
  EXPECT_FALSE(varnik::ShowPictureFile(path, box));
  EXPECT_FALSE(varnik::ShowPictureFile(sandbox.InstallText(), box));
  for (const test::PictureCase& c : test::PictureCorpus()) {
    SCOPED_TRACE(c.name);
    test::WriteFile(sandbox.Install() / "picture", c.content);
    const bool shown = varnik::ShowPictureFile(path, box);
    EXPECT_EQ(shown, c.shown == test::Shown::kEither ? shown : c.shown == test::Shown::kYes);
    if (c.shown != test::Shown::kYes) continue;
    const win::Picture picture = box.Shown();
    EXPECT_EQ(picture.Pixel(0, 0) & kNearly, kRed);
    EXPECT_EQ(picture.Pixel(59, 39) & kNearly, kBlue);
    EXPECT_NE(picture.Pixel(60, 10) & kNearly, kBlue);
    EXPECT_NE(picture.Pixel(10, 40) & kNearly, kRed);
  }
}

}  // namespace
