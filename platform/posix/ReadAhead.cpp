#include "platform/posix/ReadAhead.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/posix/PosixFiles.h"

namespace velmora {

namespace {

/// Bytes that wait to be taken, but for one batch more; and what makes a batch, but for one file more.
constexpr std::size_t kMostBytesAhead = std::size_t{1} << 20;
constexpr std::size_t kBytesOfBatch = std::size_t{16} << 10;
constexpr std::size_t kFilesOfBatch = 64;

/// Appends the bytes of an open file. Fails for anything but a plain one of at most kMaxBytes.
void AppendWhole(std::string& bytes, const Descriptor& open, const struct stat& status, const std::string& name)
{
    if (!S_ISREG(status.st_mode)) throw FileError(name + " is no plain file");
    // Read to its end, which may be another by now; a file of the length that is known needs one call.
    const std::size_t before = bytes.size();
    for (std::size_t size = 0;;) {
        const auto known = static_cast<std::size_t>(status.st_size);
        if (std::max(size, known) > PosixFiles::kMaxBytes) throw FileError(name + " is too long");
        bytes.resize(before + std::max(known, 2 * size) + 1);
        const ssize_t got = ::read(open.Get(), bytes.data() + before + size, bytes.size() - before - size);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) Fail("cannot read", name, errno);
        size += static_cast<std::size_t>(got);
        if (got > 0 && size != known) continue;
        bytes.resize(before + size);
        return;
    }
}

}  // namespace

bool AppendFile(std::string& bytes, int folder, const ListedFile& file)
{
    // Without O_NONBLOCK, opening a pipe would wait for its writer.
    constexpr int kHow = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor open(::openat(folder, file.name.c_str(), file.isPlain ? kHow | O_NOFOLLOW : kHow));
    if (!open.Valid() && errno == ENOENT) return false;
    struct stat status {};
    if (!open.Valid() || ::fstat(open.Get(), &status) != 0) Fail("cannot open", file.name, errno);
    if (file.isPlain) TakeRightsFromOthers(open.Get(), status, S_IRUSR | S_IWUSR);
    AppendWhole(bytes, open, status, file.name);
    return true;
}

ReadAhead::ReadAhead(Descriptor folder, std::vector<ListedFile> files)
    : folder_(std::move(folder)), files_(std::move(files))
{
    if (files_.empty()) return;
    try {
        thread_ = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        // The user may have no more threads: each file is read as it is asked for.
    }
}

ReadAhead::~ReadAhead()
{
    if (!thread_.joinable()) return;
    {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

std::string ReadAhead::Take()
{
    const ListedFile& file = files_.at(next_++);
    if (nextPart_ == taken_.parts.size()) {
        taken_ = Batch();
        nextPart_ = nextByte_ = 0;
        if (thread_.joinable()) {
            taken_ = TakeBatch();
        } else {
            Read(file, taken_);
        }
    }
    const Batch::Part& part = taken_.parts[nextPart_++];
    if (part.failure) std::rethrow_exception(part.failure);
    return taken_.bytes.substr(std::exchange(nextByte_, nextByte_ + part.size), part.size);
}

ReadAhead::Batch ReadAhead::TakeBatch()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !ahead_.empty(); });
    Batch batch = std::move(ahead_.front());
    ahead_.pop_front();
    bytesAhead_ -= batch.bytes.size();
    changed_.notify_one();
    return batch;
}

void ReadAhead::Run()
{
    Batch batch;
    for (const ListedFile& file : files_) {
        Read(file, batch);
        const bool isFull = batch.bytes.size() >= kBytesOfBatch || batch.parts.size() == kFilesOfBatch;
        if ((isFull || &file == &files_.back()) && !Give(std::exchange(batch, {}))) return;
    }
}

bool ReadAhead::Give(Batch batch)
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return bytesAhead_ < kMostBytesAhead || isOver_; });
    bytesAhead_ += batch.bytes.size();
    ahead_.push_back(std::move(batch));
    changed_.notify_one();
    return !isOver_;
}

void ReadAhead::Read(const ListedFile& file, Batch& batch) const
{
    const std::size_t before = batch.bytes.size();
    std::exception_ptr failure;
    try {
        AppendFile(batch.bytes, folder_.Get(), file);
    } catch (const std::exception&) {
        failure = std::current_exception();
        batch.bytes.resize(before);
    }
    batch.parts.push_back({batch.bytes.size() - before, failure});
}

}  // namespace velmora
