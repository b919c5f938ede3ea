// How long the main loop stands still.
#pragma once

#include <glibmm/main.h>

#include <algorithm>
#include <chrono>

namespace velmora::test {

/// The longest time for which the main loop stood still since this was made.
class Heartbeat {
public:
    ~Heartbeat() { beat_.disconnect(); }
    double Longest() const { return longest_; }  ///< In seconds.

private:
    bool Beat()
    {
        const auto now = std::chrono::steady_clock::now();
        longest_ = std::max(longest_, std::chrono::duration<double>(now - last_).count());
        last_ = now;
        return true;
    }

    double longest_ = 0;
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
    sigc::connection beat_ = Glib::signal_timeout().connect([this] { return Beat(); }, 5);
};

}  // namespace velmora::test
