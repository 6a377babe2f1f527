#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace win {

// A set of file names that finds them without regard to case.
class FolderNames {
 public:
  void Add(std::string_view name);
  void Remove(std::string_view name);

  // The name itself, otherwise the first in name order of those that equal it without regard to case, in whichever of
  // the two encodings; nothing when there is none. Good until the next change.
  const std::string* Find(std::string_view wanted) const;

  std::size_t Count() const { return names_.size(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const;
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };
  std::unordered_multiset<std::string, Hash, Equal> names_;
};

}  // namespace win
