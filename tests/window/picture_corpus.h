#pragma once

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <random>
#include <string>
#include <vector>

// Pictures as they may lie in an install, sound ones and damaged ones.
namespace test {

enum class Shown { kYes, kNo, kEither };  // kEither: a decoder may make something of what is there

struct PictureCase {
  std::string name;
  std::string content;
  Shown shown;
};

// 60 by 40 pixels, red on the left and blue on the right.
inline std::string SoundPicture(const char* format, QImage::Format depth = QImage::Format_RGB888) {
  QImage picture(60, 40, QImage::Format_RGB32);
  picture.fill(Qt::red);
  QPainter(&picture).fillRect(30, 0, 30, 40, Qt::blue);
  QBuffer file;
  picture.convertToFormat(depth).save(&file, format, 100);
  return file.data().toStdString();
}

inline std::vector<PictureCase> PictureCorpus() {
  const std::string png = SoundPicture("png"), jpeg = SoundPicture("jpg"), bmp = SoundPicture("bmp");
  std::vector<PictureCase> corpus = {
      {"24.png", png, Shown::kYes},
      {"24.jpg", jpeg, Shown::kYes},
      {"24.bmp", bmp, Shown::kYes},
      {"64.png", SoundPicture("png", QImage::Format_RGBA64), Shown::kYes},
      {"8.bmp", SoundPicture("bmp", QImage::Format_Indexed8), Shown::kYes},
      {"a png under another name.bmp", png, Shown::kYes},
      {"a text.jpg", "Not a picture.\r\n", Shown::kNo},
      {"a gif.bmp", "GIF89a" + std::string(40, '\x11'), Shown::kNo},
      {"30,000 by 30,000.bmp", std::string(bmp).replace(18, 8, "\x30\x75\0\0\x30\x75\0\0", 8), Shown::kNo},
      {"30,000 by 30,000.jpg", std::string(jpeg).replace(jpeg.find("\xFF\xC0") + 5, 4, "\x75\x30\x75\x30"), Shown::kNo},
      {"negative.bmp", std::string(bmp).replace(18, 8, "\0\0\0\x80\0\0\0\x80", 8), Shown::kNo},
      {"larger than its rows.bmp", std::string(bmp).replace(19, 1, "\x07"), Shown::kEither},
  };
  std::minstd_rand random;
  for (const std::string& sound : {png, jpeg, bmp}) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{20}, sound.size() / 3, sound.size() * 95 / 100})
      corpus.push_back({"cut", sound.substr(0, length), length <= 20 ? Shown::kNo : Shown::kEither});
    for (int i = 0; i < 20; ++i) {
      corpus.push_back({"damaged", sound, Shown::kEither});
      for (int j = 0; j < 4; ++j)
        corpus.back().content[random() % sound.size()] = static_cast<char>(random());
    }
  }
  return corpus;
}

}  // namespace test
