// Open files and folders.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace velmora {

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor()
    {
        if (fd_ >= 0) ::close(fd_);
    }

    int Get() const { return fd_; }
    bool Valid() const { return fd_ >= 0; }

private:
    int fd_;
};

/// Throws FileError with what the system says of an error.
[[noreturn]] void Fail(const std::string& doing, const std::string& path, int error);

/// Takes from everybody but the owner, if that is this user, what rights they have. No failure matters.
void TakeRightsFromOthers(int open, const struct stat& status, mode_t kept);

}  // namespace velmora
