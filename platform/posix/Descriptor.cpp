#include "platform/posix/Descriptor.h"

#include <system_error>

#include "platform/Files.h"

namespace velmora {

void Fail(const std::string& doing, const std::string& path, int error)
{
    throw FileError(doing + " " + path + ": " + std::generic_category().message(error));
}

void TakeRightsFromOthers(int open, const struct stat& status, mode_t kept)
{
    const bool isOpenToOthers = (status.st_mode & (S_IRWXG | S_IRWXO)) != 0;
    if (isOpenToOthers && status.st_uid == ::geteuid()) ::fchmod(open, status.st_mode & kept);
}

}  // namespace velmora
