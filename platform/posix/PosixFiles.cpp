#include "platform/posix/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t kMaxNameBytes = 255;
constexpr std::size_t kKeptNameBytes = 200;
constexpr std::size_t kMaxExtensionBytes = 16;
constexpr std::string_view kTemporaryPrefix = ".velmora-write-";
constexpr std::string_view kTemporaryPattern = "XXXXXX";

[[noreturn]] void Fail(const std::string& doing, const std::string& path, int error)
{
    throw FileError(doing + " " + path + ": " + std::generic_category().message(error));
}

class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return fd_; }
    bool Valid() const { return fd_ >= 0; }
    bool Close() { return fd_ < 0 || ::close(std::exchange(fd_, -1)) == 0; }

private:
    int fd_;
};

std::string FolderOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// FNV-1a, 64 bits, in hexadecimal digits: the same on every machine and in every version.
std::string HashOf(std::string_view text)
{
    std::uint64_t hash = 14695981039346656037u;
    for (const unsigned char c : text) hash = (hash ^ c) * 1099511628211u;
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
    return digits.data();
}

std::string DiskName(const std::string& name)
{
    if (name.size() <= kMaxNameBytes) return name;
    const auto dot = name.rfind('.');
    const bool keepsExtension = dot != std::string::npos && name.size() - dot <= kMaxExtensionBytes;
    const std::string extension = keepsExtension ? name.substr(dot) : std::string();
    return name.substr(0, kKeptNameBytes) + "-" + HashOf(name) + extension;
}

/// Where the file of a path really lies. Every operation passes its path through here.
std::string DiskPath(const std::string& path)
{
    if (path.find('\0') != std::string::npos) throw FileError("a path cannot hold a zero byte");
    const auto slash = path.rfind('/');
    const auto nameAt = slash == std::string::npos ? 0 : slash + 1;
    return path.substr(0, nameAt) + DiskName(path.substr(nameAt));
}

bool IsTemporary(std::string_view name)
{
    return name.starts_with(kTemporaryPrefix) && name.size() == kTemporaryPrefix.size() + kTemporaryPattern.size();
}

/// Makes renames and deletions in the folder last. Some file systems cannot do this for a folder;
/// there is nothing to be done about it then.
void SyncFolder(const std::string& folder)
{
    const Descriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd.Valid()) ::fsync(fd.Get());
}

void WriteAll(int fd, std::string_view bytes, const std::string& path)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) Fail("cannot write", path, errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// A file under a name of its own, deleted again unless it is moved to its place. It is locked as
/// long as it is being written, which tells it from what a process that ended has left.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& folder)
        : path_(folder + "/" + std::string(kTemporaryPrefix) + std::string(kTemporaryPattern)),
          fd_(::mkostemp(path_.data(), O_CLOEXEC))
    {
        if (!fd_.Valid()) Fail("cannot make a file in", folder, errno);
        ::flock(fd_.Get(), LOCK_EX | LOCK_NB);
    }
    ~TemporaryFile()
    {
        if (!moved_) ::unlink(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Fill(std::string_view bytes)
    {
        WriteAll(fd_.Get(), bytes, path_);
        if (::fsync(fd_.Get()) != 0) Fail("cannot flush", path_, errno);
    }

    void MoveTo(const std::string& target)
    {
        if (::rename(path_.c_str(), target.c_str()) != 0) Fail("cannot replace", target, errno);
        moved_ = true;
    }

private:
    std::string path_;
    Descriptor fd_;
    bool moved_ = false;
};

void RemoveLeftover(const std::string& path)
{
    const Descriptor fd(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (fd.Valid() && ::flock(fd.Get(), LOCK_EX | LOCK_NB) == 0) ::unlink(path.c_str());
}

std::string FolderOfRunningProgram()
{
    std::string path(4096, '\0');
    const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0) return ".";
    path.resize(static_cast<std::size_t>(length));
    return FolderOf(path);
}

}  // namespace

PosixFiles::PosixFiles(std::string programFolder)
    : programFolder_(programFolder.empty() ? FolderOfRunningProgram() : std::move(programFolder))
{
}

bool PosixFiles::Exists(const std::string& path)
{
    struct stat status {};
    return ::lstat(DiskPath(path).c_str(), &status) == 0;
}

void PosixFiles::MakeFolder(const std::string& path)
{
    const std::string place = DiskPath(path);
    if (::mkdir(place.c_str(), 0700) != 0) Fail("cannot make", place, errno);
    SyncFolder(FolderOf(place));
}

bool PosixFiles::CanWrite(const std::string& folder)
{
    if (folder.find('\0') != std::string::npos) return false;
    const std::string place = DiskPath(folder);
    struct stat status {};
    return ::stat(place.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           ::faccessat(AT_FDCWD, place.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::vector<FileEntry> PosixFiles::List(const std::string& folder)
{
    const std::string place = DiskPath(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(place.c_str()), ::closedir);
    if (!listing) Fail("cannot list", place, errno);

    std::vector<FileEntry> files;
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string name = entry->d_name;
        if (IsTemporary(name)) {
            RemoveLeftover(place + "/" + name);
            continue;
        }
        struct stat status {};
        if (::fstatat(::dirfd(listing.get()), name.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode)) continue;
        files.push_back({name, static_cast<std::uint64_t>(status.st_size)});
    }
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.Name < b.Name; });
    return files;
}

std::string PosixFiles::Read(const std::string& path)
{
    const std::string place = DiskPath(path);
    // Without O_NONBLOCK, opening a pipe would wait for its writer.
    const Descriptor fd(::open(place.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!fd.Valid()) Fail("cannot open", place, errno);
    struct stat status {};
    if (::fstat(fd.Get(), &status) != 0) Fail("cannot read", place, errno);
    if (!S_ISREG(status.st_mode)) throw FileError(place + " is no plain file");

    std::string bytes;
    std::vector<char> block(64 * 1024);
    for (;;) {
        const ssize_t got = ::read(fd.Get(), block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) Fail("cannot read", place, errno);
        if (got == 0) return bytes;
        if (bytes.size() + static_cast<std::size_t>(got) > kMaxReadBytes) throw FileError(place + " is too long");
        bytes.append(block.data(), static_cast<std::size_t>(got));
    }
}

void PosixFiles::Write(const std::string& path, const std::string& bytes)
{
    const std::string place = DiskPath(path);
    TemporaryFile file(FolderOf(place));
    file.Fill(bytes);
    file.MoveTo(place);
    SyncFolder(FolderOf(place));
}

void PosixFiles::Delete(const std::string& path)
{
    const std::string place = DiskPath(path);
    struct stat status {};
    if (::lstat(place.c_str(), &status) != 0) {
        if (errno == ENOENT) return;
        Fail("cannot look at", place, errno);
    }
    if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode)) return;
    if (::unlink(place.c_str()) != 0) Fail("cannot delete", place, errno);
    SyncFolder(FolderOf(place));
}

}  // namespace velmora
