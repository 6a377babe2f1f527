#pragma once

// Keeps two programs of ours from changing an install, or running the game, at the same time.
namespace varnik {

// Held from before the first change of an install to behind the last one. Guards nest within a process; another process
// is refused. One that dies holds nothing.
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

// What a person is told who is refused.
extern const char kRunRefused[];

}  // namespace varnik
