#include "windowing/timer.h"

#include "platform/windowing/qtsupport.h"

#include <QPointer>
#include <QTimer>

namespace win {

struct Timer::Impl {
  // A handler that pumps events must not meet itself.
  void RaiseTick(const std::function<void()>& tick) {
    if (ticking) return;
    const QPointer<QTimer> alive = &timer;
    ticking = true;
    Raise(tick);
    if (alive) ticking = false;
  }

  QTimer timer;
  bool enabled = false;
  bool ticking = false;
};

Timer::Timer(int intervalMilliseconds, bool enabled) : impl_(std::make_unique<Impl>()) {
  impl_->timer.setTimerType(Qt::PreciseTimer);
  impl_->timer.setInterval(intervalMilliseconds);
  QObject::connect(&impl_->timer, &QTimer::timeout, &impl_->timer, [this] { impl_->RaiseTick(Tick); });
  SetEnabled(enabled);
}

Timer::~Timer() = default;

bool Timer::Enabled() const { return impl_->enabled; }

void Timer::SetEnabled(bool enabled) {
  if (enabled == impl_->enabled) return;
  impl_->enabled = enabled;
  if (!enabled)
    impl_->timer.stop();
  else
    impl_->timer.start();
}

}  // namespace win
