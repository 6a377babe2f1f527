#pragma once

#include <string>

// Files that a definition names.
namespace varnik {

// Full path of the file below the root of the selected install, else below `mods\` of the program's folder; empty when
// it is in neither.
std::string FindModFile(const std::string& name);

// How many files one pass reads beside its definition, and how deep they include each other. A file may include itself,
// and one that does so twice doubles the work with each level; no real definition comes near.
struct ReadBounds {
  static constexpr int kMaxDepth = 64;
  static constexpr int kMaxFiles = 256;

  int depth = 0;
  int files = 0;
};

// Held while a pass reads a file that its definition names.
class IncludeScope {
 public:
  explicit IncludeScope(ReadBounds& bounds)
      : bounds_(bounds), allowed_(bounds.depth < ReadBounds::kMaxDepth && bounds.files < ReadBounds::kMaxFiles) {
    ++bounds_.depth;
    ++bounds_.files;
  }
  ~IncludeScope() { --bounds_.depth; }
  IncludeScope(const IncludeScope&) = delete;
  IncludeScope& operator=(const IncludeScope&) = delete;

  // False beyond the bounds: the directive is skipped.
  bool IsAllowed() const { return allowed_; }

 private:
  ReadBounds& bounds_;
  bool allowed_;
};

}  // namespace varnik
