#pragma once

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <string>
#include <vector>

// Pictures as they may lie in an install.
namespace test {

struct PictureCase {
  std::string name;
  std::string content;
};

inline std::string EncodePicture(const QImage& picture, const char* format) {
  QBuffer buffer;
  QImageWriter writer(&buffer, format);
  writer.setQuality(100);
  writer.write(picture);
  return buffer.data().toStdString();
}

// A TGA of 24 bits with rows from the top, all of one colour but for the blue right half.
inline std::string Tga(int width, int height) {
  std::string file("\0\0\2\0\0\0\0\0\0\0\0\0", 12);
  for (const int n : {width & 255, width >> 8, height & 255, height >> 8, 24, 0x20})
    file += static_cast<char>(n);
  for (int i = 0; i < width * height; ++i)
    file += i % width < width / 2 ? std::string("\0\0\xFF", 3) : std::string("\xFF\0\0", 3);
  return file;
}

// Each of 60 by 40 pixels, red on the left and blue on the right.
inline std::vector<PictureCase> PictureCorpus() {
  QImage picture(60, 40, QImage::Format_RGB32);
  picture.fill(Qt::blue);
  for (int pixel = 0; pixel < 30 * 40; ++pixel)
    picture.setPixel(pixel % 30, pixel / 30, 0xFFFF0000);
  const auto with = [&](QImage::Format depth) { return picture.convertToFormat(depth); };
  return {{"24.png", EncodePicture(with(QImage::Format_RGB888), "png")},
          {"8.png", EncodePicture(with(QImage::Format_Indexed8), "png")},
          {"64.png", EncodePicture(with(QImage::Format_RGBA64), "png")},
          {"24.bmp", EncodePicture(with(QImage::Format_RGB888), "bmp")},
          {"24.jpg", EncodePicture(picture, "jpg")},
          {"24.ppm", EncodePicture(picture, "ppm")},
          {"24.ico", EncodePicture(picture, "ico")},
          {"24.tga", Tga(60, 40)},
          {"a png in disguise.tga", EncodePicture(picture, "png")}};
}

}  // namespace test
