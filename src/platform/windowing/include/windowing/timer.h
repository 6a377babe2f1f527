#pragma once

#include <functional>
#include <memory>

namespace win {

// Raises Tick again and again while it is enabled. Disabling and enabling starts the interval anew; an interval of 0
// never ticks.
class Timer {
 public:
  explicit Timer(int intervalMilliseconds, bool enabled = false);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  int Interval() const;
  void SetInterval(int milliseconds);
  bool Enabled() const;
  void SetEnabled(bool enabled);

  std::function<void()> Tick;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace win
