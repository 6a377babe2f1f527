#pragma once

#include "windowing/picture.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace win {

// A list of pictures, counted from 1, each with a text of its own.
class ImageList {
 public:
  void Add(const Picture& picture, const std::string& tag = "") { entries_.push_back({picture, tag}); }

  // `load` adds the entries behind those added so far, once one of them or their number is asked for.
  void AddOnDemand(std::function<void(ImageList&)> load) { load_ = std::move(load); }

  int Count() {
    if (const auto load = std::exchange(load_, nullptr)) load(*this);
    return static_cast<int>(entries_.size());
  }

  // Outside 1 to Count: an empty picture, an empty text.
  Picture At(int index) { return Holds(index) ? entries_[index - 1].picture : Picture(); }
  std::string Tag(int index) { return Holds(index) ? entries_[index - 1].tag : std::string(); }

 private:
  struct Entry {
    Picture picture;
    std::string tag;
  };
  bool Holds(int index) { return index >= 1 && (index <= static_cast<int>(entries_.size()) || index <= Count()); }
  std::vector<Entry> entries_;
  std::function<void(ImageList&)> load_;
};

}  // namespace win
