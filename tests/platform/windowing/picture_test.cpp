#include "windowing/picture.h"

#include "platform/system/process/picturedecoder.h"
#include "tests/harness/sandbox.h"
#include "tests/harness/window_app.h"
#include "tests/window/picture_corpus.h"
#include "windowing/form.h"
#include "windowing/picturebox.h"

#include <signal.h>
#include <sys/wait.h>

#include <random>

namespace {

using std::chrono::steady_clock;
using win::Picture;

constexpr std::uint32_t kRed = 0xFFFF0000, kBlue = 0xFF0000FF;
constexpr std::uint32_t kNearly = 0xFFF8F8F8;  // a JPEG is not exact

class PictureTest : public test::WindowTest {
 protected:
  std::string Put(const std::string& name, const std::string& content) {
    test::WriteFile(sandbox.Root() / name, content);
    return (sandbox.Root() / name).string();
  }

  test::Sandbox sandbox;
};

TEST_F(PictureTest, EveryFormatIsShown) {
  const std::vector<test::PictureCase> sound = test::PictureCorpus();
  for (const test::PictureCase& c : sound) {
    const Picture picture = Picture::FromFile(Put(c.name, c.content));
    EXPECT_EQ(picture.Pixel(0, 0) & kNearly, kRed & kNearly) << c.name;
    EXPECT_EQ(picture.Pixel(59, 39) & kNearly, kBlue & kNearly) << c.name;
  }
  // The rows are a hole in the file.
  const std::string large = Put("large.bmp", sound[3].content.substr(0, 54).replace(18, 8, "\x28\x23\0\0\xD0\7\0", 8));
  std::filesystem::resize_file(large, 54 + std::uintmax_t{3} * 9000 * 2000);
  EXPECT_EQ(Picture::FromFile(large).WidthInPixels(), 9000);
}

TEST_F(PictureTest, TransparencyIsKeptOrIgnored) {
  QImage half(8, 8, QImage::Format_ARGB32);
  half.fill(0x80FF0000);
  const std::string png = Put("half.png", test::EncodePicture(half, "png"));
  EXPECT_EQ(Picture::FromFile(png).Pixel(1, 1), 0x80FF0000);
  EXPECT_EQ(Picture::FromFile(png, win::Alpha::kIgnored).Pixel(1, 1), kRed);
  half.fill(0x00FF0000);
  const std::string unset = Put("unset.png", test::EncodePicture(half, "png"));
  EXPECT_EQ(Picture::FromFile(unset).Pixel(1, 1), kRed) << "a picture that nobody would see";
}

TEST_F(PictureTest, WhatIsNoPictureCostsLittleAndHarmsNothing) {
  const std::vector<test::PictureCase> sound = test::PictureCorpus();
  const std::string& png = sound[0].content;
  std::string tall = sound[3].content;
  tall.replace(18, 8, "\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F");
  std::vector<test::PictureCase> cases = {
      {"nothing.png", ""},
      {"text.jpg", "hello"},
      {"cut.png", png.substr(0, 20)},
      {"folder/", ""},
      {"tall.bmp", tall},
      {"bomb.png", std::string(png).insert(33, "\x4C\xE7\x80\x00tEXtComment", 15)},
  };
  std::minstd_rand random(7);
  for (int seed = 0; seed < 60; ++seed) {
    std::string tga = test::Tga(9, 9);
    for (int i = 0; i < 4; ++i)
      tga[random() % 18] = static_cast<char>(random());
    cases.push_back({"damaged " + std::to_string(seed) + ".tga", tga});
  }
  const std::string good = Put("good.png", png);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    SCOPED_TRACE(cases[i].name);
    const auto start = steady_clock::now();
    const bool empty = Picture::FromFile(Put(cases[i].name, cases[i].content)).Empty();
    EXPECT_LT(steady_clock::now() - start, 2 * win::PictureDecoder::kTimeLimit);
    EXPECT_TRUE(empty || i >= 6);
    EXPECT_FALSE(Picture::FromFile(good).Empty());
  }
}

// A stand-in decoder: what it says, what is expected of it, and whether it is kept for the next picture.
TEST_F(PictureTest, NoDecoderIsTrusted) {
  const struct {
    const char* script;
    bool shown, kept;
  } cases[] = {
      {"printf '\\1\\0\\0\\0\\1\\0\\0\\0abcd'; sleep 9", true, true},
      {"printf '\\0\\0\\0\\0\\0\\0\\0\\0'; sleep 9", false, true},
      {"printf '\\1\\0\\0\\0\\0\\0\\0\\0'; sleep 9", false, false},
      {"printf '\\0\\0\\0\\177\\0\\0\\0\\177'; sleep 9", false, false},
      {"printf '\\2\\0\\0\\0\\1\\0\\0\\0abcd'", false, false},
      {"printf 'cut'", false, false},
      {"sleep 9", false, false},
  };
  const std::string picture = Put("a.png", test::PictureCorpus()[0].content);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    const std::string program = Put("decoder", std::string("#!/bin/sh\nexec >&0\n") + c.script);
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    win::PictureDecoder decoder(program);
    EXPECT_EQ(static_cast<bool>(decoder.Decode(picture, false)), c.shown);
    EXPECT_EQ(decoder.Process() > 0, c.kept);
  }
}

TEST_F(PictureTest, ADeadDecoderIsReplacedAndLeavesNothing) {
  const std::string picture = Put("a.png", test::PictureCorpus()[0].content);
  win::PictureDecoder decoder(BINARY_DIR "/varnik-picture");
  pid_t before = -1;
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(decoder.Decode(picture, false));
    ASSERT_TRUE(decoder.Decode(picture, false));
    EXPECT_NE(decoder.Process(), before);
    EXPECT_TRUE(test::Await([before] { return before < 0 || kill(before, 0) != 0; })) << "a zombie";
    before = decoder.Process();
    kill(before, SIGKILL);
    siginfo_t ended;
    waitid(P_PID, static_cast<id_t>(before), &ended, WEXITED | WNOWAIT);
  }
}

TEST_F(PictureTest, ABoxShowsItsPictureAsItsSizeSays) {
  const struct {
    win::PictureSize size;
    double width;            // of the box afterwards, in twips
    std::uint32_t farPixel;  // at 25, 10
  } cases[] = {
      {win::PictureSize::kOwn, 600, kRed},  // 40 pixels of the 60
      {win::PictureSize::kStretch, 600, kBlue},
      {win::PictureSize::kAutoSize, 900, kRed},
  };
  const Picture halves = Picture::FromFile(Put("a.tga", test::Tga(60, 40)));
  for (const auto& c : cases) {
    win::Form form("frmPicture", 3000, 3000);
    win::PictureBox box(form, "imgmap", c.size);
    box.Move(0, 0, 600, 600);
    box.SetPicture(halves);
    EXPECT_DOUBLE_EQ(box.Width(), c.width);
    EXPECT_EQ(box.Shown().Pixel(25, 10), c.farPixel);
  }
}

}  // namespace
