#pragma once

#include <cstdint>
#include <string>

namespace varnik {

// One row of the map catalogue. A map whose .inf was not found keeps empty DescFile and PictureFile, Title equal to
// FileName, and zero in the number fields, which are the game's network variables reduced to what tells map types
// apart.
struct MapEntry {
  std::string FileName;  // a .bzn name without folder
  std::string Folder;    // relative to the install root, with trailing backslash; empty for a map in the root
  std::string Title;
  std::string DescFile;     // name of the description text file
  std::string PictureFile;  // name of the picture file
  bool Ivar3Set = false;
  std::int16_t Ivar5 = 0;
  std::int16_t Ivar7 = 0;  // without its two high flags; 0 unless Ivar5 is 1
  bool Ivar12Set = false;
};

}  // namespace varnik
