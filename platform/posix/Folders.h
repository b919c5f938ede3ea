// Where the program lies, and where its user's files do.
#pragma once

#include <string>

namespace velmora {

/// The folder that the running program lies in, whatever link it was started by.
std::string FolderOfRunningProgram();

/// The folder that the user's session folder lies in: `program`, the program's own, if the user may make files in it,
/// or has or may use a session folder there already. Otherwise others use the same copy, and each of them has
/// `own`, a folder of this user's. A copy that belongs to the system (below /usr) is everybody's, for root too.
std::string FolderOfSession(const std::string& program, const std::string& own);

}  // namespace velmora
