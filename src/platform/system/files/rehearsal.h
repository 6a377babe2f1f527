#pragma once

#include <memory>
#include <string>
#include <vector>

namespace win {

class DiskPicture;

struct PathDifference {
  enum class Kind { kNew, kGone, kChanged };

  std::string path;
  Kind kind = Kind::kNew;
};

// While one lives, the verbs of this layer change nothing: neither files nor what the program stores. They answer as
// ever, though, and each sees what those before it would have changed. Programs are not started; the answer is whether
// one could be. Nobody else may change the same folders meanwhile, and everything happens in one thread.
class Rehearsal {
 public:
  Rehearsal();
  ~Rehearsal();
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;

  static bool IsOn();

  // How the disk would differ from now, in name order, without what the program stores. What lies below `folder`, a
  // Windows path, has a path that begins with it as it was given, anything else a native one. Of a folder that moved or
  // was made only the folder itself.
  std::vector<PathDifference> Differences(const std::string& folder) const;

 private:
  std::unique_ptr<DiskPicture> picture_;
};

}  // namespace win
