#include "tests/window/picture_corpus.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#include <cstdint>
#include <random>

namespace test {
namespace {

constexpr std::uint32_t kHuge = 30000;

std::string Encode(const char* format, QImage::Format depth, bool progressive = false) {
  QImage picture(60, 40, QImage::Format_RGB32);
  picture.fill(Qt::red);
  QPainter(&picture).fillRect(30, 0, 30, 40, Qt::blue);
  QBuffer buffer;
  QImageWriter writer(&buffer, format);
  writer.setQuality(100);
  writer.setProgressiveScanWrite(progressive);
  writer.write(picture.convertToFormat(depth));
  return buffer.data().toStdString();
}

std::string Number(std::uint32_t value, int bytes, bool bigEndian) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(value >> 8 * (bigEndian ? bytes - 1 - i : i));
  return text;
}

// The check sum of a PNG chunk.
std::uint32_t Crc(const std::string& chunk) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char c : chunk) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit)
      crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
  }
  return ~crc;
}

std::string PngOfSize(std::string png, std::uint32_t width, std::uint32_t height) {
  png.replace(16, 8, Number(width, 4, true) + Number(height, 4, true));
  return png.replace(29, 4, Number(Crc(png.substr(12, 17)), 4, true));
}

std::string BmpOfSize(std::string bmp, std::uint32_t width, std::uint32_t height) {
  return bmp.replace(18, 8, Number(width, 4, false) + Number(height, 4, false));
}

std::string JpegOfSize(std::string jpeg, std::uint32_t width, std::uint32_t height) {
  std::size_t frame = jpeg.find("\xFF\xC0");
  if (frame == std::string::npos) frame = jpeg.find("\xFF\xC2");
  return jpeg.replace(frame + 5, 4, Number(height, 2, true) + Number(width, 2, true));
}

void AddFaults(std::vector<PictureCase>& corpus, const PictureCase& sound) {
  const std::string& content = sound.content;
  for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{9}, std::size_t{20}})
    corpus.push_back({sound.name + " cut to " + std::to_string(length), content.substr(0, length), Shown::kNo});
  for (const std::size_t percent : {30, 60, 95})
    corpus.push_back({sound.name + " cut to " + std::to_string(percent) + "%",
                      content.substr(0, content.size() * percent / 100), Shown::kEither});
  std::minstd_rand random(static_cast<unsigned>(content.size()));
  for (int i = 0; i < 20; ++i) {
    std::string damaged = content;
    for (int j = 0; j < 4; ++j)
      damaged[random() % damaged.size()] = static_cast<char>(random());
    corpus.push_back({sound.name + " damaged " + std::to_string(i), damaged, Shown::kEither});
  }
}

}  // namespace

std::string BmpHeader(int width, int height) {
  std::string header = "BM" + Number(0, 4, false) + Number(0, 4, false) + Number(54, 4, false) + Number(40, 4, false);
  header += Number(static_cast<std::uint32_t>(width), 4, false) + Number(static_cast<std::uint32_t>(height), 4, false);
  return header + Number(1, 2, false) + Number(24, 2, false) + std::string(24, '\0');
}

std::vector<PictureCase> PictureCorpus() {
  std::vector<PictureCase> corpus = {
      {"24.png", Encode("png", QImage::Format_RGB888), Shown::kYes},
      {"24.jpg", Encode("jpg", QImage::Format_RGB888), Shown::kYes},
      {"progressive.jpg", Encode("jpg", QImage::Format_RGB888, true), Shown::kYes},
      {"24.bmp", Encode("bmp", QImage::Format_RGB888), Shown::kYes},
      {"32.png", Encode("png", QImage::Format_ARGB32), Shown::kYes},
      {"64.png", Encode("png", QImage::Format_RGBA64), Shown::kYes},
      {"8.png", Encode("png", QImage::Format_Indexed8), Shown::kYes},
      {"8.bmp", Encode("bmp", QImage::Format_Indexed8), Shown::kYes},
  };
  const std::string png = corpus[0].content, jpeg = corpus[1].content, bmp = corpus[3].content;
  for (std::size_t sound = 0; sound < 4; ++sound)
    AddFaults(corpus, PictureCase(corpus[sound]));
  corpus.push_back({"a png in disguise.bmp", png, Shown::kYes});
  corpus.push_back({"a jpeg in disguise.png", jpeg, Shown::kYes});
  corpus.push_back({"a text in disguise.jpg", "Not a picture.\r\n", Shown::kNo});
  corpus.push_back(
      {"a gif in disguise.bmp", Number(0x38464947, 4, false) + "9a" + std::string(40, '\x11'), Shown::kNo});
  corpus.push_back({"huge.png", PngOfSize(png, kHuge, kHuge), Shown::kNo});
  corpus.push_back({"huge.jpg", JpegOfSize(jpeg, kHuge, kHuge), Shown::kNo});
  corpus.push_back({"huge.bmp", BmpOfSize(bmp, kHuge, kHuge), Shown::kNo});
  corpus.push_back({"on its head and huge.bmp", BmpOfSize(bmp, kHuge, -kHuge), Shown::kNo});
  corpus.push_back({"long.png", PngOfSize(png, 0x7FFFFFFF, 1), Shown::kNo});
  corpus.push_back({"long.bmp", BmpOfSize(bmp, 0x7FFFFFFF, 0x7FFFFFFF), Shown::kNo});
  corpus.push_back({"negative.bmp", BmpOfSize(bmp, 0x80000000, 0x80000000), Shown::kNo});
  corpus.push_back({"nothing.bmp", BmpOfSize(bmp, 0, 0), Shown::kNo});
  corpus.push_back({"larger than its rows.bmp", BmpOfSize(bmp, 2000, 2000), Shown::kEither});
  return corpus;
}

}  // namespace test
