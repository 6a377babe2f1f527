#pragma once

#include <string>
#include <vector>

// Pictures as they may lie in an install, sound ones and faulty ones, in the three formats that maps come with.
namespace test {

enum class Shown { kYes, kNo, kEither };  // kEither: a decoder may make something of what is there

struct PictureCase {
  std::string name;
  std::string content;
  Shown shown;
};

// Every sound picture has 60 by 40 pixels, red on the left and blue on the right.
std::vector<PictureCase> PictureCorpus();

// What stands ahead of the rows of a BMP of 24 bits.
std::string BmpHeader(int width, int height);

}  // namespace test
