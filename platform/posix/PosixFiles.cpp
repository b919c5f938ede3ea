#include "platform/posix/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/posix/Descriptor.h"
#include "platform/posix/Folders.h"
#include "platform/text/Search.h"

namespace velmora {

namespace {

/// Some file systems claim a longer limit and count in other units than bytes.
constexpr std::size_t kMaxNameBytes = 255;
constexpr std::size_t kKeptNameBytes = 200;
constexpr std::size_t kHashDigits = 16;
constexpr std::size_t kMaxExtensionBytes = 16;
constexpr std::string_view kTemporaryPrefix = ".velmora-write-";
constexpr std::string_view kTemporaryPattern = "XXXXXX";

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
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    std::array<char, kHashDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hash));
    return digits.data();
}

std::size_t NameLimit(const std::string& folder)
{
    const long limit = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    return limit > 0 ? std::min(static_cast<std::size_t>(limit), kMaxNameBytes) : kMaxNameBytes;
}

/// Where the file of a path really lies. Every operation passes its path through here.
std::string DiskPath(const std::string& path)
{
    if (path.find('\0') != std::string::npos) throw FileError("a path cannot hold a zero byte");
    const auto slash = path.rfind('/');
    const auto nameAt = slash == std::string::npos ? 0 : slash + 1;
    const std::string name = path.substr(nameAt);
    return path.substr(0, nameAt) + PosixFiles::DiskName(name, NameLimit(FolderOf(path)));
}

bool IsRecord(std::string_view name)
{
    constexpr std::string_view kExtension = ".xml";
    return name.size() >= kExtension.size() &&
           EqualIgnoringCase(name.substr(name.size() - kExtension.size()), kExtension);
}

bool IsTemporary(std::string_view name)
{
    return name.starts_with(kTemporaryPrefix) && name.size() == kTemporaryPrefix.size() + kTemporaryPattern.size();
}

Descriptor OpenFolder(const std::string& folder)
{
    return Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

/// Keeps listings of a folder and replacements of its files apart: where a listing comes in pieces, a file
/// that is replaced meanwhile can be missing in it, or stand in it twice. Copies of the program hold such a
/// lock for moments; another holder, or a copy that is stopped, is not waited for longer than a second.
void LockFolder(int folder, int how)
{
    constexpr int kMostTries = 5000;
    constexpr unsigned kPause = 200;  // In microseconds.
    for (int i = 0; i < kMostTries && ::flock(folder, how | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i) {
        ::usleep(kPause);
    }
}

/// Makes renames and deletions in the folder last. Some file systems cannot do this for a folder;
/// there is nothing to be done about it then.
void SyncFolder(const std::string& folder)
{
    const Descriptor fd = OpenFolder(folder);
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

/// Whether an open file still has this name.
bool IsAt(const std::string& path, const Descriptor& fd)
{
    struct stat named {};
    struct stat open {};
    return ::lstat(path.c_str(), &named) == 0 && ::fstat(fd.Get(), &open) == 0 && named.st_dev == open.st_dev &&
           named.st_ino == open.st_ino;
}

/// The new text of a file, under a name of its own beside it, deleted again unless it is moved to its
/// place. It is locked until then, which tells it from what a process that ended has left.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target) : target_(target)
    {
        // Another copy of the program, as it starts, can take the file for a leftover as long as it is not
        // locked.
        constexpr int kMostTries = 100;
        for (int i = 0; i < kMostTries; ++i) {
            path_ = FolderOf(target) + "/" + std::string(kTemporaryPrefix) + std::string(kTemporaryPattern);
            fd_ = Descriptor(::mkostemp(path_.data(), O_CLOEXEC));
            if (!fd_.Valid()) Fail("cannot write", target_, errno);
            const bool isTaken = ::flock(fd_.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
            if (!isTaken && IsAt(path_, fd_)) return;
        }
        Fail("cannot write", target_, EBUSY);
    }
    ~TemporaryFile()
    {
        if (!moved_) ::unlink(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Fill(std::string_view bytes)
    {
        WriteAll(fd_.Get(), bytes, target_);
        if (::fsync(fd_.Get()) != 0) Fail("cannot write", target_, errno);
    }

    void MoveToTarget()
    {
        const Descriptor folder = OpenFolder(FolderOf(target_));
        LockFolder(folder.Get(), LOCK_EX);
        if (::rename(path_.c_str(), target_.c_str()) != 0) Fail("cannot write", target_, errno);
        moved_ = true;
    }

private:
    std::string target_;
    std::string path_;
    Descriptor fd_;
    bool moved_ = false;
};

void RemoveLeftover(const std::string& path)
{
    // Open for writing, since a network file system gives no lock otherwise.
    const Descriptor fd(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    // The name may have gone to another writer's file before the lock was there.
    if (fd.Valid() && ::flock(fd.Get(), LOCK_EX | LOCK_NB) == 0 && IsAt(path, fd)) ::unlink(path.c_str());
}

bool IsFileOrLink(const struct stat& status) { return S_ISREG(status.st_mode) || S_ISLNK(status.st_mode); }

}  // namespace

PosixFiles::PosixFiles(std::string programFolder)
    : programFolder_(programFolder.empty() ? FolderOfRunningProgram() : std::move(programFolder))
{
}

std::string PosixFiles::DiskName(const std::string& name, std::size_t limit)
{
    if (name.size() <= limit) return name;
    const auto dot = name.rfind('.');
    const bool keepsExtension = dot != std::string::npos && name.size() - dot <= kMaxExtensionBytes;
    const std::string extension = keepsExtension ? name.substr(dot) : std::string();
    constexpr std::size_t kAdded = 1 + kHashDigits + kMaxExtensionBytes;
    const std::size_t kept = std::min(kKeptNameBytes, limit > kAdded ? limit - kAdded : 0);
    return name.substr(0, kept) + "-" + HashOf(name) + extension;
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
    unseen_.erase(place);
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

std::vector<std::string> PosixFiles::List(const std::string& folder)
{
    const std::string place = DiskPath(folder);
    unseen_.insert(place);
    ahead_.reset();
    std::vector<ListedFile> files = ListPlace(place);
    unseen_.erase(place);
    std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    std::vector<std::string> names;
    names.reserve(files.size());
    for (const ListedFile& file : files) names.push_back(file.name);
    std::erase_if(files, [](const ListedFile& file) { return !IsRecord(file.name); });
    folderAhead_ = folder;
    Descriptor open = OpenFolder(place);
    if (open.Valid()) ahead_ = std::make_unique<ReadAhead>(std::move(open), std::move(files));
    return names;
}

std::vector<ListedFile> PosixFiles::ListPlace(const std::string& place)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(place.c_str()), ::closedir);
    if (!listing) Fail("cannot list", place, errno);
    const int folder = ::dirfd(listing.get());
    LockFolder(folder, LOCK_SH);
    struct stat status {};
    if (::fstat(folder, &status) == 0) TakeRightsFromOthers(folder, status, S_IRWXU);

    std::vector<ListedFile> files;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(listing.get());
        if (!entry && errno != 0) Fail("cannot list", place, errno);
        if (!entry) return files;
        std::string name = entry->d_name;
        if (IsTemporary(name)) {
            RemoveLeftover(place + "/" + name);
            continue;
        }
        // Most file systems tell at once what a name is. Of a link it matters what it leads to.
        bool isPlain = entry->d_type == DT_REG;
        if (entry->d_type == DT_UNKNOWN && ::fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            isPlain = S_ISREG(status.st_mode);
        }
        if (!isPlain && ::fstatat(folder, entry->d_name, &status, 0) != 0) {
            if (errno != ENOENT) unseen_.insert(place + "/" + name);
            continue;
        }
        if (isPlain || S_ISREG(status.st_mode)) files.push_back({std::move(name), isPlain});
    }
}

std::string PosixFiles::Read(const std::string& path)
{
    std::string bytes;
    bool isThere = true;
    try {
        if (IsNextAhead(path)) {
            bytes = ahead_->Take();
            if (!ahead_->Next()) ahead_.reset();
        } else {
            ahead_.reset();
            isThere = AppendFile(bytes, AT_FDCWD, {DiskPath(path), false});
        }
    } catch (const std::exception&) {
        unseen_.insert(DiskPath(path));
        throw;
    }
    if (!isThere) Fail("cannot open", path, ENOENT);
    if (!unseen_.empty()) unseen_.erase(DiskPath(path));
    return bytes;
}

bool PosixFiles::IsNextAhead(const std::string& path) const
{
    const ListedFile* const next = ahead_ ? ahead_->Next() : nullptr;
    if (!next || path.size() != folderAhead_.size() + 1 + next->name.size()) return false;
    return path.starts_with(folderAhead_) && path[folderAhead_.size()] == '/' && path.ends_with(next->name);
}

void PosixFiles::Write(const std::string& path, const std::string& bytes)
{
    try {
        Replace(DiskPath(path), bytes);
        failures_.erase(path);
    } catch (const FileError& error) {
        const std::string why = error.what();
        if (std::exchange(failures_[path], why) != why && WriteFailed) WriteFailed(why);
        throw;
    }
}

void PosixFiles::Replace(const std::string& place, std::string_view bytes)
{
    ahead_.reset();
    if (bytes.size() > kMaxBytes) throw FileError("cannot write " + place + ": it would be too long to be read again");
    RefuseUnseen("cannot write", place);
    struct stat status {};
    if (::lstat(place.c_str(), &status) == 0 && !IsFileOrLink(status)) {
        throw FileError("cannot write " + place + ": what lies there is no file");
    }
    TemporaryFile file(place);
    file.Fill(bytes);
    file.MoveToTarget();
    SyncFolder(FolderOf(place));
}

void PosixFiles::Delete(const std::string& path)
{
    ahead_.reset();
    const std::string place = DiskPath(path);
    struct stat status {};
    if (::lstat(place.c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) return;
        Fail("cannot look at", place, errno);
    }
    if (!IsFileOrLink(status)) return;
    RefuseUnseen("cannot delete", place);
    if (::unlink(place.c_str()) != 0) Fail("cannot delete", place, errno);
    SyncFolder(FolderOf(place));
}

void PosixFiles::RefuseUnseen(const std::string& doing, const std::string& place) const
{
    if (unseen_.contains(place)) throw FileError(doing + " " + place + ": the file there could not be read");
    const std::string folder = FolderOf(place);
    if (unseen_.contains(folder)) throw FileError(doing + " " + place + ": its folder could not be listed");
}

}  // namespace velmora
