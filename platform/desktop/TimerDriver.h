// Makes a timer tick on the program's main loop.
#pragma once

#include <sigc++/connection.h>

#include "platform/controls/Controls.h"

namespace velmora {

class TimerDriver {
public:
    /// Drives `timer` from now on, for as long as this lives. The timer must outlive it.
    explicit TimerDriver(Timer& timer);
    ~TimerDriver();
    TimerDriver(const TimerDriver&) = delete;
    TimerDriver& operator=(const TimerDriver&) = delete;

private:
    void Restart();

    Timer& timer_;
    sigc::connection clock_;
    Subscription interval_, enabled_;
};

}  // namespace velmora
