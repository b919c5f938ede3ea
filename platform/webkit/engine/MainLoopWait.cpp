#include "platform/webkit/engine/MainLoopWait.h"

#include <glib-unix.h>

#include <algorithm>

namespace velmora {

namespace {

// A page's answer takes less as a rule. For so long the main loop stands still: it would draw the page
// after each field of a form.
constexpr std::chrono::milliseconds kUsual{3};

}  // namespace

bool WaitOnMainLoop(int descriptor, short events, Clock::time_point deadline)
{
    if (WaitFor(descriptor, events, std::min(deadline, Clock::now() + kUsual))) return true;
    bool isReady = false;
    const auto ready = +[](gint, GIOCondition, gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_CONTINUE;
    };
    const auto condition = static_cast<GIOCondition>((events & POLLIN ? G_IO_IN : G_IO_OUT) | G_IO_HUP | G_IO_ERR);
    const guint watch = g_unix_fd_add_full(G_PRIORITY_HIGH, descriptor, condition, ready, &isReady, nullptr);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    // Ends the iteration at the deadline, when nothing else happens.
    const guint alarm = g_timeout_add(
        static_cast<guint>(std::max<long>(left, 0)), [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!isReady && Clock::now() < deadline) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(alarm);
    g_source_remove(watch);
    return isReady;
}

}  // namespace velmora
