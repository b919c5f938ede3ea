// Whole reads and writes on a stream socket, with a limit on the wait. Both ends of the page channel
// use it.
#pragma once

#include <poll.h>
#include <sched.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <functional>

namespace velmora {

using Clock = std::chrono::steady_clock;

// The other end answers in a few microseconds as a rule, less than it takes to be put to sleep and
// woken. Looking again and again for this long makes a round trip three to four times as fast. The
// processor is handed on between two looks: both ends may have to share it, and an end that only
// watched would keep the other from answering.
inline constexpr std::chrono::microseconds kWatch{100};

/// Looks for a moment, without sleeping, whether the socket is ready for `events` (POLLIN, POLLOUT).
inline bool Watch(int descriptor, short events, Clock::time_point deadline)
{
    const auto watchEnd = std::min(deadline, Clock::now() + kWatch);
    do {
        pollfd entry{descriptor, events, 0};
        if (poll(&entry, 1, 0) > 0) return true;
        sched_yield();
    } while (Clock::now() < watchEnd);
    return false;
}

/// Waits until the socket is ready for `events`; false at the deadline.
inline bool WaitFor(int descriptor, short events, Clock::time_point deadline)
{
    if (Watch(descriptor, events, deadline)) return true;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left < 0) return false;
        pollfd entry{descriptor, events, 0};
        const int ready = poll(&entry, 1, static_cast<int>(left));
        if (ready > 0) return true;
        if (ready == 0 || errno != EINTR) return false;
    }
}

/// Waits as WaitFor does; an end may have its own way to spend the time.
using Wait = std::function<bool(int descriptor, short events, Clock::time_point deadline)>;

/// Reads exactly `size` bytes; false if the other end hung up or the deadline passed.
inline bool ReceiveAll(int descriptor, void* data, std::size_t size, Clock::time_point deadline,
                       const Wait& wait = WaitFor)
{
    auto* bytes = static_cast<char*>(data);
    while (size > 0) {
        const ssize_t got = recv(descriptor, bytes, size, MSG_DONTWAIT);
        if (got > 0) {
            bytes += got;
            size -= static_cast<std::size_t>(got);
        } else if (got == 0 || (errno != EAGAIN && errno != EINTR)) {
            return false;
        } else if (!wait(descriptor, POLLIN, deadline)) {
            return false;
        }
    }
    return true;
}

/// Writes all bytes; false if the other end hung up or the deadline passed.
inline bool SendAll(int descriptor, const void* data, std::size_t size, Clock::time_point deadline,
                    const Wait& wait = WaitFor)
{
    const auto* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t sent = send(descriptor, bytes, size, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent > 0) {
            bytes += sent;
            size -= static_cast<std::size_t>(sent);
        } else if (errno != EAGAIN && errno != EINTR) {
            return false;
        } else if (!wait(descriptor, POLLOUT, deadline)) {
            return false;
        }
    }
    return true;
}

}  // namespace velmora
