#include "platform/windowing/picture.h"

#include <QBuffer>
#include <QImage>

#include "platform/windowing/picturebox.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"

namespace {

using win::Picture;

// Red on the left and blue on the right.
QImage Halves(int size) {
  QImage image(size, size, QImage::Format_RGB32);
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x)
      image.setPixel(x, y, x < size / 2 ? 0xFFFF0000 : 0xFF0000FF);
  return image;
}

using PictureTest = test::WindowTest;

TEST_F(PictureTest, FilesAreReadByTheirContent) {
  test::Sandbox sandbox;
  const std::string path = sandbox.Root().string() + "\\SHOT.BMP";
  for (const char* format : {"BMP", "PNG", "ICO", "JPG"}) {
    QBuffer file;
    Halves(32).save(&file, format, 100);
    test::WriteFile(sandbox.Root() / "Shot.bmp", file.data().toStdString());
    const Picture picture = Picture::FromFile(path);
    ASSERT_EQ(picture.WidthInPixels(), 32) << format;
    EXPECT_GT(picture.Pixel(1, 1) >> 16 & 0xFF, 200u) << format;
    test::WriteFile(sandbox.Root() / "Shot.bmp", file.data().left(20).toStdString());
    EXPECT_TRUE(Picture::FromFile(path).Empty()) << format;
  }
  EXPECT_TRUE(Picture::FromFileContent("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>").Empty());
  EXPECT_TRUE(Picture::FromFile("").Empty() && Picture::FromFile(sandbox.Root().string()).Empty());
}

TEST_F(PictureTest, ABoxShowsItsPictureAsItsSizeSays) {
  const struct {
    win::PictureSize size;
    double width;            // of the box afterwards, in twips
    std::uint32_t farPixel;  // at 40, 10
  } cases[] = {
      {win::PictureSize::kOwn, 900, 0xFFFF0000},  // 60 pixels of the 100
      {win::PictureSize::kStretch, 900, 0xFF0000FF},
      {win::PictureSize::kAutoSize, 1500, 0xFFFF0000},
  };
  for (const auto& c : cases) {
    win::Form form("frmPicture", 3000, 3000);
    win::PictureBox box(form, "imgmap", c.size);
    box.Move(0, 0, 900, 900);
    box.SetPicture(Picture(Halves(100)));
    EXPECT_DOUBLE_EQ(box.Width(), c.width);
    EXPECT_EQ(box.Shown().Pixel(40, 10), c.farPixel);
  }
}

}  // namespace
