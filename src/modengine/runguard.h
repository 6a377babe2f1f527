#pragma once

// Keeps two processes of Varnik from changing an install, or running the game, at the same time.
namespace varnik {

// Held from before the first change of an install until after the last one. Guards nest within a process; another
// process is refused. The lock ends with its process.
class RunGuard {
 public:
  RunGuard();
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  // False when another process is at work.
  [[nodiscard]] bool IsHeld() const { return held_; }

 private:
  bool held_;
};

// Message shown when the guard is refused.
extern const char kRunRefused[];

}  // namespace varnik
