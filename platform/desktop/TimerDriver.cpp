#include "platform/desktop/TimerDriver.h"

#include <glibmm/main.h>

namespace velmora {

TimerDriver::TimerDriver(Timer& timer) : timer_(timer)
{
    interval_ = timer.Interval.Changed.Connect([this] { Restart(); });
    enabled_ = timer.Enabled.Changed.Connect([this] { Restart(); });
    Restart();
}

TimerDriver::~TimerDriver() { clock_.disconnect(); }

void TimerDriver::Restart()
{
    clock_.disconnect();
    if (!timer_.Enabled() || timer_.Interval() <= 0) return;
    const auto tick = [this] {
        timer_.Tick.Raise();
        return true;
    };
    clock_ = Glib::signal_timeout().connect(tick, static_cast<unsigned>(timer_.Interval()));
}

}  // namespace velmora
