#include "support/ui/modfreeimage.h"

#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "tests/window/picture_corpus.h"
#include "windowing/form.h"
#include "windowing/picturebox.h"

#include <FreeImage.h>

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <functional>

namespace {

using test::Shown;
using win::DrawingHandle;

constexpr std::uint32_t kRed = 0xFFFF0000, kBlue = 0xFF0000FF;
constexpr std::uint32_t kNearly = 0xFFF8F8F8;  // a JPEG is not exact

struct PictureForm : win::Form {
  PictureForm() : Form("frmPicture", 3000, 3000) { box.Move(0, 0, 1200, 1200); }
  win::PictureBox box{*this, "imgmap"};
};

class FreeImage : public test::WindowTest {
 protected:
  std::string Put(const std::string& name, const std::string& content) {
    test::WriteFile(sandbox.Install() / name, content);
    return sandbox.InstallText() + name;
  }

  // The rows are a hole in the file.
  std::string PutBlack(const std::string& name, int width, int height) {
    const std::string path = Put(name, test::BmpHeader(width, height));
    std::filesystem::resize_file(sandbox.Install() / name, 54 + std::uintmax_t{3} * width * height);
    return path;
  }

  test::Sandbox sandbox;
  PictureForm form;
};

TEST_F(FreeImage, ShowsWhatCanBeShownAndNothingElse) {
  for (const test::PictureCase& c : test::PictureCorpus()) {
    SCOPED_TRACE(c.name);
    form.box.SetPicture(win::Picture());
    const bool shown = varnik::ShowPictureFile(Put(c.name, c.content), form.box);
    EXPECT_EQ(shown, c.shown == Shown::kEither ? shown : c.shown == Shown::kYes);
    if (c.shown != Shown::kYes) continue;
    const win::Picture picture = form.box.Shown();
    EXPECT_EQ(picture.Pixel(0, 0) & kNearly, kRed & kNearly);
    EXPECT_EQ(picture.Pixel(59, 39) & kNearly, kBlue & kNearly);
    EXPECT_NE(picture.Pixel(60, 10) & kNearly, kBlue & kNearly);
    EXPECT_NE(picture.Pixel(10, 40) & kNearly, kRed & kNearly);
  }
  EXPECT_FALSE(varnik::ShowPictureFile(sandbox.InstallText(), form.box));
  EXPECT_FALSE(varnik::ShowPictureFile(sandbox.InstallText() + "none.png", form.box));
}

std::size_t AddressSpace() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// In a process of its own, which may not take more than 256 MiB beyond what it has.
TEST_F(FreeImage, NoPictureTakesMuchMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address sanitizer keeps memory that the program has given back";
#endif
  std::vector<std::string> files;
  for (const test::PictureCase& c : test::PictureCorpus())
    files.push_back(Put(c.name, c.content));
  const std::string large = PutBlack("large.bmp", 4096, 4096);
  const std::string larger = PutBlack("larger.bmp", 6000, 4096);
  const auto showAll = [&] {
    const rlim_t most = AddressSpace() + (256u << 20);
    const rlimit limit = {most, most};
    if (setrlimit(RLIMIT_AS, &limit) != 0) _exit(2);
    for (const std::string& file : files)
      varnik::ShowPictureFile(file, form.box);
    const bool good = varnik::ShowPictureFile(large, form.box) && !varnik::ShowPictureFile(larger, form.box);
    _exit(good ? 0 : 1);
  };
  EXPECT_EXIT(showAll(), testing::ExitedWithCode(0), "");
}

// What a conversion and a drawing need, in order.
class FreeImageBridge : public FreeImage {
 protected:
  FreeImageBridge() {
    varnik::InitFreeImage();
    dib = FreeImage_Allocate(2, 2, 24, 0, 0, 0);
    Put("any.png", test::PictureCorpus()[0].content);
    header = FreeImage_Load(FIF_PNG, (sandbox.Install() / "any.png").c_str(), FIF_LOAD_NOPIXELS);
    RGBQUAD white = {255, 255, 255, 0};
    FreeImage_SetPixelColor(dib, 0, 1, &white);  // the upper left pixel: rows count from the bottom
  }
  ~FreeImageBridge() override {
    FreeImage_Unload(dib);
    FreeImage_Unload(header);
    FreeImage_DeInitialise();
  }

  DrawingHandle Bitmap() {
    DrawingHandle bitmap = 0;
    EXPECT_TRUE(varnik::FreeImage_BMP_From_DIB(dib, bitmap));
    return bitmap;
  }

  FIBITMAP* dib = nullptr;
  FIBITMAP* header = nullptr;  // without pixels
};

TEST_F(FreeImageBridge, BothWaysDrawTheSame) {
  const DrawingHandle bitmap = Bitmap();
  FIBITMAP* copy = nullptr;
  ASSERT_TRUE(varnik::FreeImage_DIB_From_BMP(bitmap, copy));
  EXPECT_EQ(FreeImage_GetBPP(copy), 32u);
  EXPECT_TRUE(varnik::FreeImage_RenderBitmap(bitmap, form.box.DeviceContext(), 10, 10, -1, 0, false));
  EXPECT_TRUE(varnik::FreeImage_RenderBitmap(bitmap, form.box.DeviceContext(), 20, 10, -1, -1, true));
  EXPECT_TRUE(varnik::FreeImage_RenderDIB(copy, form.box.DeviceContext(), 30, 10, 0, -1));
  const win::Picture shown = form.box.Shown();
  for (const int x : {10, 30}) {
    EXPECT_EQ(shown.Pixel(x, 10), 0xFFFFFFFFu);
    EXPECT_EQ(shown.Pixel(x + 1, 11), 0xFF000000u);
  }
  EXPECT_EQ(shown.Pixel(20, 10), 0xFF000000u);
  EXPECT_EQ(shown.Pixel(21, 11), 0xFFFFFFFFu);
  // A conversion first destroys what its output holds.
  DrawingHandle reused = bitmap;
  EXPECT_TRUE(varnik::FreeImage_BMP_From_DIB(dib, reused));
  EXPECT_EQ(win::GetObjectType(bitmap), 0);
  EXPECT_TRUE(varnik::FreeImage_DIB_From_BMP(reused, copy));
  EXPECT_TRUE(win::DeleteObject(reused));
  FreeImage_Unload(copy);
}

TEST_F(FreeImageBridge, AFailureIsNamed) {
  DrawingHandle bitmap = Bitmap();
  DrawingHandle none = 0;
  FIBITMAP* copy = nullptr;
  const DrawingHandle dc = form.box.DeviceContext();
  const DrawingHandle window = win::GetDesktopWindow();
  const struct {
    std::function<bool()> act;
    const char* error;
  } cases[] = {
      {[&] { return varnik::FreeImage_BMP_From_DIB(nullptr, none); },
       "[FreeImage_BMP_From_DIB] No DIB specified to convert"},
      {[&] { return varnik::FreeImage_BMP_From_DIB(header, none); },
       "[FreeImage_BMP_From_DIB] FreeImage_GetBits failed to get the DIB's bits"},
      {[&] { return varnik::FreeImage_DIB_From_BMP(0, copy); },
       "[FreeImage_DIB_From_BMP] No bitmap specified to convert"},
      {[&] { return varnik::FreeImage_DIB_From_BMP(window, copy); },
       "[FreeImage_DIB_From_BMP] GetObjectAPI failed with error code 6"},
      {[&] { return varnik::FreeImage_RenderDIB(nullptr, dc, 0, 0, -1, -1); },
       "[FreeImage_RenderDIB] No DIB specified to render"},
      {[&] { return varnik::FreeImage_RenderDIB(dib, window, 0, 0, -1, -1); },
       "[FreeImage_RenderDIB] DC specified was invalid"},
      {[&] { return varnik::FreeImage_RenderDIB(header, dc, 0, 0, -1, -1); },
       "[FreeImage_RenderDIB] Could not get the DIB's bits"},
      {[&] { return varnik::FreeImage_RenderDIB(dib, dc, 0, 0, -1, 1); },
       "[FreeImage_RenderDIB] SetDIBitsToDevice failed to render the DIB to the specified DC with error code 87"},
      {[&] { return varnik::FreeImage_RenderBitmap(0, dc, 0, 0, -1, -1, false); },
       "[FreeImage_RenderBitmap] No bitmap specified to render"},
      {[&] { return varnik::FreeImage_RenderBitmap(dc, dc, 0, 0, -1, -1, false); },
       "[FreeImage_RenderBitmap] Handle specified is not a valid BITMAP"},
      {[&] { return varnik::FreeImage_RenderBitmap(bitmap, window, 0, 0, -1, -1, false); },
       "[FreeImage_RenderBitmap] DC specified is not valid"},
      {[&] { return varnik::FreeImage_GetBitmapWidth(0) != 0; },
       "[FreeImage_GetBitmapWidth] No bitmap specified to get the info for"},
      {[&] { return varnik::FreeImage_GetBitmapHeight(window) != 0; },
       "[FreeImage_GetBitmapHeight] Handle specified is not a valid BITMAP"},
  };
  for (const auto& c : cases) {
    varnik::SetFreeImageError("", false);
    EXPECT_FALSE(c.act());
    EXPECT_EQ(varnik::FreeImageLastError, c.error);
  }
  varnik::FreeImage_BMP_From_DIB(nullptr, none);
  EXPECT_EQ(varnik::FreeImageLastError, cases[12].error) << "the first failure stays";
  FreeImage_OutputMessageProc(FIF_PNG, "by the library");
  EXPECT_EQ(varnik::FreeImageLastError, "by the library");
  EXPECT_EQ(varnik::FreeImage_GetBitmapWidth(bitmap), 2);
  win::DeleteObject(bitmap);
}

}  // namespace
