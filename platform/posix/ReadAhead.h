// Reading files, and reading those of a folder while others are at work on what has been read.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/Descriptor.h"

namespace velmora {

/// A file as the listing of its folder has it.
struct ListedFile {
    std::string name;
    /// It was a plain file itself; anything else may have been a link, whose target's rights are left as they are.
    bool isPlain;
};

/// Appends the bytes of a file in an open folder, or at a path of its own in AT_FDCWD; false if it is gone. Fails, and
/// may then have appended some, for anything but a plain file of at most PosixFiles::kMaxBytes, and never waits for
/// one. Takes from others what rights they have to a file of the user's that is plain itself.
bool AppendFile(std::string& bytes, int folder, const ListedFile& file);

/// The one thread that the program has beside its own: opening and reading a small file takes as long as making a
/// row of it. The thread touches nothing but what stands here, and ends with the reader.
class ReadAhead {
public:
    ReadAhead(Descriptor folder, std::vector<ListedFile> files);
    ~ReadAhead();
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    /// The file that is to be taken next; null when there is none left.
    const ListedFile* Next() const { return next_ < files_.size() ? &files_[next_] : nullptr; }
    /// Its bytes; none if it is gone by now. Throws FileError if it could not be read, and goes on behind it.
    std::string Take();

private:
    /// Files one behind the other. Memory that one thread takes and the other gives back is slow to have, so it goes
    /// over in few pieces.
    struct Batch {
        struct Part {
            std::size_t size;
            std::exception_ptr failure;  ///< Why there are no bytes.
        };
        std::string bytes;
        std::vector<Part> parts;
    };

    /// Adds the bytes of a file to a batch, or why there are none.
    void Read(const ListedFile& file, Batch& batch) const;
    void Run();
    /// Hands a batch over, as soon as there is room; false if nobody wants it.
    bool Give(Batch batch);
    Batch TakeBatch();

    const Descriptor folder_;
    const std::vector<ListedFile> files_;
    std::size_t next_ = 0;  ///< The file to be taken next.
    Batch taken_;           ///< Where its bytes are, or come from.
    std::size_t nextPart_ = 0;
    std::size_t nextByte_ = 0;

    std::mutex mutex_;  ///< Of what follows.
    std::condition_variable changed_;
    std::deque<Batch> ahead_;  ///< What nobody has taken yet.
    std::size_t bytesAhead_ = 0;
    bool isOver_ = false;  ///< Nobody wants any more.

    std::thread thread_;
};

}  // namespace velmora
