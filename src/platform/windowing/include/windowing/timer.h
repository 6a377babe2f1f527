#pragma once

#include <functional>
#include <memory>

namespace win {

// Raises Tick again and again while it is enabled. Disabling and enabling starts the interval anew.
class Timer {
 public:
  explicit Timer(int intervalMilliseconds, bool enabled = false);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  bool Enabled() const;
  void SetEnabled(bool enabled);

  std::function<void()> Tick;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace win
