// The sandbox in which the engine runs the pages.
#pragma once

namespace velmora {

/// Whether this system lets the engine start its sandbox, or the user has switched it off. Where it
/// cannot start, the engine ends the whole program at the first page.
bool SandboxStarts();

}  // namespace velmora
