// The sandbox in which the engine runs the pages.
#pragma once

#include <string>

namespace velmora {

/// What keeps the engine from starting its sandbox on this system, as a sentence for the user; empty
/// if nothing does, or the user has switched the sandbox off. Where it cannot start, the engine ends
/// the whole program at the first page.
std::string SandboxObstacle();

/// Whether the user has switched the sandbox off, by the engine's environment variable for it.
bool IsSandboxOff();

}  // namespace velmora
