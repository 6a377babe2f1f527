#pragma once

#include "windowing/picture.h"

#include <string>
#include <vector>

namespace win {

// A list of pictures, counted from 1, each with a text of its own.
class ImageList {
 public:
  void Add(const Picture& picture, const std::string& tag = "") { entries_.push_back({picture, tag}); }
  int Count() const { return static_cast<int>(entries_.size()); }

  // Outside 1 to Count: an empty picture, an empty text.
  Picture At(int index) const { return Holds(index) ? entries_[index - 1].picture : Picture(); }
  std::string Tag(int index) const { return Holds(index) ? entries_[index - 1].tag : std::string(); }

 private:
  struct Entry {
    Picture picture;
    std::string tag;
  };
  bool Holds(int index) const { return index >= 1 && index <= Count(); }
  std::vector<Entry> entries_;
};

}  // namespace win
