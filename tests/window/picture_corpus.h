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

// Of 60 by 40 pixels, red on the left and blue on the right.
inline std::string SoundPicture(const char* format, QImage::Format depth = QImage::Format_RGB888) {
  QImage picture(60, 40, QImage::Format_RGB32);
  picture.fill(Qt::blue);
  for (int pixel = 0; pixel < 30 * 40; ++pixel)
    picture.setPixel(pixel % 30, pixel / 30, 0xFFFF0000);
  return EncodePicture(picture.convertToFormat(depth), format);
}

inline std::vector<PictureCase> PictureCorpus() {
  return {{"24.png", SoundPicture("png")},
          {"8.png", SoundPicture("png", QImage::Format_Indexed8)},
          {"64.png", SoundPicture("png", QImage::Format_RGBA64)},
          {"24.bmp", SoundPicture("bmp")},
          {"24.jpg", SoundPicture("jpg")},
          {"24.ppm", SoundPicture("ppm")},
          {"24.ico", SoundPicture("ico")},
          {"24.tga", Tga(60, 40)},
          {"a png in disguise.tga", SoundPicture("png")}};
}

}  // namespace test
