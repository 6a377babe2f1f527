#pragma once

#include "platform/system/process/instance.h"

#include <string>

// Keeps two processes of Varnik from changing an install, or running the game, at the same time.
namespace varnik {

// Held from before the first change of an install until after the last one. Guards nest within a process; another
// process is refused. The locks end with their process.
class RunGuard {
 public:
  // Of one user's processes only one is at work. With the root of an install, which ends in a separator, no other
  // user's is at work on it either, nor one with other settings; empty text is no install.
  explicit RunGuard(const std::string& root = "");
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  // False when another process is at work.
  [[nodiscard]] bool IsHeld() const { return held_ && install_.IsAllowed(); }

 private:
  bool held_;
  win::FolderLock install_;
};

// Message shown when the guard is refused.
extern const char kRunRefused[];

}  // namespace varnik
