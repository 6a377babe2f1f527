#include "windowing/picture.h"

#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "windowing/drawing.h"
#include "windowing/form.h"
#include "windowing/imagelist.h"
#include "windowing/picturebox.h"

#include <QBuffer>
#include <QImage>

#include <cstring>
#include <vector>

namespace {

using win::BitmapInfoHeader;
using win::DrawingHandle;
using win::Picture;

constexpr std::uint32_t kRed = 0xFFFF0000, kGreen = 0xFF00FF00, kBlue = 0xFF0000FF, kWhite = 0xFFFFFFFF;

// Red and green above blue and white.
QImage FourPixels() {
  QImage image(2, 2, QImage::Format_RGB32);
  image.setPixel(0, 0, kRed);
  image.setPixel(1, 0, kGreen);
  image.setPixel(0, 1, kBlue);
  image.setPixel(1, 1, kWhite);
  return image;
}

std::string FileOf(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format, 100);
  return bytes.toStdString();
}

std::string Bmp(std::int32_t width, std::int32_t height) {
  std::string file = FileOf(FourPixels(), "BMP");
  std::memcpy(file.data() + 18, &width, 4);
  std::memcpy(file.data() + 22, &height, 4);
  return file;
}

class PictureTest : public test::WindowTest {};

TEST_F(PictureTest, FilesOfEachKindAreReadByTheirContent) {
  test::Sandbox sandbox;
  for (const char* format : {"BMP", "PNG", "ICO", "JPG"}) {
    test::WriteFile(sandbox.Root() / "Shot.bmp", FileOf(FourPixels().scaled(16, 16), format));
    const Picture picture = Picture::FromFile(sandbox.Root().string() + "\\SHOT.BMP");
    ASSERT_EQ(picture.WidthInPixels(), 16) << format;
    EXPECT_GT(picture.Pixel(1, 1) >> 16 & 0xFF, 200u) << format;
  }
}

TEST_F(PictureTest, WhatIsNoPictureIsEmpty) {
  const std::string png = FileOf(FourPixels(), "PNG");
  const std::pair<const char*, std::string> contents[] = {
      {"nothing", ""},
      {"text", "hello"},
      {"cut in its head", png.substr(0, 20)},
      {"cut in its body", png.substr(0, png.size() / 2)},
      {"a drawing that could name other files", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
      {"a size that no memory has", Bmp(30000, 30000)},
      {"a size that overflows", Bmp(0x7FFFFFFF, 0x7FFFFFFF)},
      {"a negative width", Bmp(-2, 2)},
  };
  for (const auto& [what, content] : contents)
    EXPECT_TRUE(Picture::FromFileContent(content).Empty()) << what;
  test::Sandbox sandbox;
  EXPECT_TRUE(Picture::FromFile("").Empty());
  EXPECT_TRUE(Picture::FromFile(sandbox.Root().string() + "\\missing.bmp").Empty());
  EXPECT_TRUE(Picture::FromFile(sandbox.Root().string()).Empty());
  const std::uint32_t pixels[] = {kRed, kGreen};
  EXPECT_TRUE(Picture::FromPixels(2, 2, pixels).Empty());
  EXPECT_EQ(Picture::FromPixels(1, 2, pixels).Pixel(0, 1), kGreen);
}

TEST_F(PictureTest, AnImageListCountsFromOne) {
  win::ImageList list;
  list.Add(Picture(FourPixels()), "Anna");
  EXPECT_EQ(list.At(1).WidthInPixels(), 2);
  EXPECT_EQ(list.Tag(1), "Anna");
  for (const int index : {0, 2, -1})
    EXPECT_TRUE(list.At(index).Empty() && list.Tag(index).empty()) << index;
}

TEST_F(PictureTest, ABoxShowsItsPictureAsItsSizeSays) {
  struct Case {
    win::PictureSize size;
    double width;            // of the box afterwards, in twips
    std::uint32_t farPixel;  // at 40, 10
  };
  QImage halves(100, 100, QImage::Format_RGB32);
  halves.fill(kRed);
  for (int y = 0; y < 100; ++y)
    for (int x = 50; x < 100; ++x)
      halves.setPixel(x, y, kBlue);
  const Case cases[] = {
      {win::PictureSize::kOwn, 900, kRed},  // 60 pixels of the 100
      {win::PictureSize::kStretch, 900, kBlue},
      {win::PictureSize::kAutoSize, 1500, kRed},
  };
  for (const Case& c : cases) {
    win::Form form("frmPicture", 3000, 3000);
    win::PictureBox box(form, "imgmap", c.size);
    box.Move(0, 0, 900, 900);
    box.SetPicture(Picture(halves));
    EXPECT_DOUBLE_EQ(box.Width(), c.width);
    EXPECT_EQ(box.Shown().Pixel(40, 10), c.farPixel);
  }
}

// A device-independent bitmap of FourPixels with its colours behind the header.
struct Dib {
  explicit Dib(int bitCount, bool topDown = false) {
    const std::string file = FileOf(bitCount == 8    ? FourPixels().convertToFormat(QImage::Format_Indexed8)
                                    : bitCount == 24 ? FourPixels().convertToFormat(QImage::Format_RGB888)
                                                     : FourPixels(),
                                    "BMP");
    std::uint32_t start = 0;
    std::memcpy(&start, file.data() + 10, 4);
    info.assign(file.begin() + 14, file.begin() + start);
    bits.assign(file.begin() + start, file.end());
    if (!topDown) return;
    Header().height = -Header().height;
    std::swap_ranges(bits.begin(), bits.begin() + bits.size() / 2, bits.begin() + bits.size() / 2);
  }

  BitmapInfoHeader& Header() { return *reinterpret_cast<BitmapInfoHeader*>(info.data()); }

  std::vector<char> info, bits;
};

class DrawingTest : public PictureTest {
 protected:
  DrawingTest() : form("frmPicture", 3000, 3000), box(form, "imgmap") { box.Move(0, 0, 1500, 1500); }

  DrawingHandle MakeBitmap(Dib dib) {
    const DrawingHandle dc = win::GetDC(win::GetDesktopWindow());
    const DrawingHandle bitmap =
        win::CreateDIBitmap(dc, &dib.Header(), win::kCbmInit, dib.bits.data(), &dib.Header(), 0);
    EXPECT_TRUE(win::ReleaseDC(win::GetDesktopWindow(), dc));
    return bitmap;
  }

  void ExpectFourPixels(int x, int y) {
    const Picture shown = box.Shown();
    EXPECT_EQ(shown.Pixel(x, y), kRed);
    EXPECT_EQ(shown.Pixel(x + 1, y), kGreen);
    EXPECT_EQ(shown.Pixel(x, y + 1), kBlue);
    EXPECT_EQ(shown.Pixel(x + 1, y + 1), kWhite);
  }

  win::Form form;
  win::PictureBox box;
};

TEST_F(DrawingTest, ABitmapGoesThroughAMemoryContextIntoTheBox) {
  for (const int bitCount : {8, 24, 32}) {
    SCOPED_TRACE(bitCount);
    const DrawingHandle bitmap = MakeBitmap(Dib(bitCount));
    win::BitmapDescription description;
    ASSERT_TRUE(win::GetObject(bitmap, description));
    EXPECT_EQ(description.width, 2);
    const DrawingHandle work = win::CreateCompatibleDC(0);
    const DrawingHandle before = win::SelectObject(work, bitmap);
    EXPECT_FALSE(win::DeleteObject(bitmap)) << "it is in use";
    EXPECT_TRUE(win::BitBlt(box.DeviceContext(), 3, 4, 2, 2, work, 0, 0, win::kSrcCopy));
    ExpectFourPixels(3, 4);
    EXPECT_TRUE(win::BitBlt(box.DeviceContext(), 0, 0, 2, 2, work, 0, 0, win::kNotSrcCopy));
    EXPECT_EQ(box.Shown().Pixel(0, 0), 0xFF00FFFFu);
    EXPECT_EQ(win::SelectObject(work, before), bitmap);
    EXPECT_TRUE(win::DeleteDC(work));
    EXPECT_TRUE(win::DeleteObject(bitmap));
    EXPECT_FALSE(win::DeleteObject(bitmap));
    box.SetPicture(Picture());
  }
}

TEST_F(DrawingTest, BitsGoOutAndInAgain) {
  const DrawingHandle bitmap = MakeBitmap(Dib(24));
  const DrawingHandle dc = win::GetDC(win::GetDesktopWindow());
  for (const int bitCount : {24, 32}) {
    Dib out(bitCount);
    std::fill(out.bits.begin(), out.bits.end(), '\0');
    EXPECT_EQ(win::GetDIBits(dc, bitmap, 0, 2, out.bits.data(), &out.Header(), 0), 2);
    EXPECT_EQ(win::SetDIBitsToDevice(box.DeviceContext(), 5, 6, 2, 2, 0, 0, 0, 2, out.bits.data(), &out.Header(), 0),
              2);
    ExpectFourPixels(5, 6);
  }
  EXPECT_TRUE(win::DeleteObject(bitmap));
  EXPECT_TRUE(win::ReleaseDC(win::GetDesktopWindow(), dc));
}

TEST_F(DrawingTest, ADibMayStandOnItsHeadAndBeDrawnInPart) {
  Dib dib(32, true);
  EXPECT_EQ(win::SetDIBitsToDevice(box.DeviceContext(), 5, 6, 2, 2, 0, 0, 0, 2, dib.bits.data(), &dib.Header(), 0), 2);
  ExpectFourPixels(5, 6);
  EXPECT_EQ(win::SetDIBitsToDevice(box.DeviceContext(), 20, 20, 1, 1, 1, 0, 0, 2, dib.bits.data(), &dib.Header(), 0),
            2);
  EXPECT_EQ(box.Shown().Pixel(20, 20), kWhite) << "the source counts from the lower left corner";
}

// Whatever way its bits take, a bitmap may lie across the edge of what it is drawn on, and its fourth byte says
// nothing.
TEST_F(DrawingTest, WhatLiesOutsideIsCutOff) {
  for (const int bitCount : {8, 24, 32}) {
    SCOPED_TRACE(bitCount);
    Dib dib(bitCount == 32 ? 24 : bitCount);
    if (bitCount == 32) {
      dib.Header().bitCount = 32;
      dib.bits = {'\xFF', 0, 0, 0, '\xFF', '\xFF', '\xFF', 0, 0, 0, '\xFF', 0, 0, '\xFF', 0, 0};
    }
    const auto draw = [&](int x, int y) {
      return win::SetDIBitsToDevice(box.DeviceContext(), x, y, 2, 2, 0, 0, 0, 2, dib.bits.data(), &dib.Header(), 0);
    };
    box.SetPicture(Picture());
    EXPECT_EQ(draw(-1, -1), 2);
    EXPECT_EQ(draw(99, 50), 2);
    EXPECT_EQ(draw(500, 500), 2);
    EXPECT_EQ(box.Shown().Pixel(0, 0), kWhite);
    EXPECT_EQ(box.Shown().Pixel(99, 51), kBlue);
  }
}

TEST_F(DrawingTest, HandlesOfTheWrongKindAreRefused) {
  Dib dib(32);
  const DrawingHandle desktop = win::GetDC(win::GetDesktopWindow());
  const DrawingHandle bitmap = MakeBitmap(dib);
  EXPECT_EQ(win::GetObjectType(win::GetDesktopWindow()), 0);
  EXPECT_EQ(win::GetObjectType(0), 0);
  EXPECT_EQ(win::GetObjectType(box.DeviceContext()), win::kObjDc);
  EXPECT_EQ(win::GetObjectType(bitmap), win::kObjBitmap);
  EXPECT_EQ(win::GetDC(desktop), 0u);
  EXPECT_FALSE(win::DeleteDC(box.DeviceContext()));
  EXPECT_FALSE(win::ReleaseDC(win::GetDesktopWindow(), box.DeviceContext()));
  EXPECT_EQ(win::SelectObject(desktop, bitmap), 0u);
  EXPECT_FALSE(win::BitBlt(box.DeviceContext(), 0, 0, 2, 2, bitmap, 0, 0, win::kSrcCopy));
  EXPECT_EQ(win::GetLastError(), 6u);
  struct Case {
    const char* what;
    std::function<void(BitmapInfoHeader&)> spoil;
  };
  const Case cases[] = {
      {"no width", [](BitmapInfoHeader& info) { info.width = 0; }},
      {"a height that cannot be negated", [](BitmapInfoHeader& info) { info.height = INT32_MIN; }},
      {"too large", [](BitmapInfoHeader& info) { info.width = info.height = 100000; }},
      {"odd depth", [](BitmapInfoHeader& info) { info.bitCount = 5; }},
      {"compressed", [](BitmapInfoHeader& info) { info.compression = 1; }},
      {"more colours than there can be", [](BitmapInfoHeader& info) { info.clrUsed = 1u << 30; }},
  };
  for (const Case& c : cases) {
    Dib spoilt(32);
    c.spoil(spoilt.Header());
    EXPECT_EQ(win::CreateDIBitmap(desktop, &spoilt.Header(), win::kCbmInit, spoilt.bits.data(), &spoilt.Header(), 0),
              0u)
        << c.what;
    EXPECT_EQ(
        win::SetDIBitsToDevice(box.DeviceContext(), 0, 0, 2, 2, 0, 0, 0, 2, spoilt.bits.data(), &spoilt.Header(), 0), 0)
        << c.what;
  }
  EXPECT_TRUE(win::DeleteObject(bitmap));
  EXPECT_TRUE(win::ReleaseDC(win::GetDesktopWindow(), desktop));
}

}  // namespace
