#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>

namespace win {

// A set of file names that finds them without regard to case. It may lie over another set, whose names then count too
// unless they are hidden here.
class FolderNames {
 public:
  void Add(std::string_view name);

  // Neither adds the name nor hides it any more.
  void Remove(std::string_view name);

  // The name does not count, also when the set below has it.
  void Hide(std::string_view name);

  // `below` is looked at by Find alone, and must be alive then. Null: no set below.
  void LayOver(const FolderNames* below) { below_ = below; }

  // The name itself, otherwise the first in name order of those that equal it without regard to case, in whichever of
  // the two encodings; nothing when there is none. Good until the next change.
  const std::string* Find(std::string_view wanted) const;

  // Of the names added here.
  std::size_t Count() const { return names_.size(); }

 private:
  using Visitor = std::function<void(const std::string& name)>;
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const;
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };
  // The names that equal `wanted` without regard to case.
  void VisitAlike(std::string_view wanted, const Visitor& visit) const;

  std::unordered_multiset<std::string, Hash, Equal> names_;
  std::set<std::string, std::less<>> hidden_;
  const FolderNames* below_ = nullptr;
};

}  // namespace win
