#include "platform/posix/Folders.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

bool MayWrite(const std::string& path) { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0; }

/// Also of a file or folder that the user may not write at the moment: what is in it must not seem lost.
bool IsOfThisUser(const std::string& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

}  // namespace

std::string FolderOfRunningProgram()
{
    std::string path(4096, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0) return ".";
    path.resize(static_cast<std::size_t>(length));
    const auto slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string FolderOfSession(const std::string& program, const std::string& own)
{
    if ((program + "/").starts_with("/usr/")) return own;
    const std::string session = program + "/session";
    return MayWrite(program) || MayWrite(session) || IsOfThisUser(session) ? program : own;
}

}  // namespace velmora
