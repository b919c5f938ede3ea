// Reads the files of a folder while others are at work on those that it has read.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Files.h"
#include "platform/posix/Descriptor.h"

namespace velmora {

/// A file as the listing of its folder has it.
struct ListedFile {
    std::string name;
    /// It was a plain file itself; anything else may have been a link, whose target's rights are left as they are.
    bool isPlain;
    bool isWanted;  ///< Its bytes are.
};

/// The one thread that the program has beside its own: opening and reading a small file takes as long as making a
/// row of it. The thread touches nothing but what stands here, and ends with the reader.
class ReadAhead : public FolderReader {
public:
    /// Whether a file that is there could be read; told as it is taken.
    using Noted = std::function<void(const std::string& name, bool wasRead)>;

    ReadAhead(Descriptor folder, std::vector<ListedFile> files, Noted noted);
    ~ReadAhead() override;
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    std::optional<File> Next() override;

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
    void ReadBytes(const ListedFile& file, std::string& bytes) const;
    void Run();
    /// Hands a batch over, as soon as there is room; false if nobody wants it.
    bool Give(Batch batch);
    Batch Take();

    const Descriptor folder_;
    const std::vector<ListedFile> files_;
    const Noted noted_;
    std::size_t next_ = 0;  ///< The file to be handed out next.
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
