// Waiting for a page without holding up the engine.
#pragma once

#include "platform/wire/Socket.h"

namespace velmora {

/// Waits until the socket is ready for `events`, false at the deadline, and lets the main loop run
/// meanwhile: a page's own script may ask the engine something which the engine asks the program, and
/// would wait for the program while the program waits for the page.
bool WaitOnMainLoop(int descriptor, short events, Clock::time_point deadline);

}  // namespace velmora
