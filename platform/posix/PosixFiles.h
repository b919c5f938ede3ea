// The file system of a POSIX desktop.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/posix/ReadAhead.h"

namespace velmora {

/// A name (the last component of a path) can be longer than the file system takes. Such a file lies
/// under a shorter name that follows from the long one and the file system's limit alone; every
/// operation maps it in the same way, so that callers need not know.
class PosixFiles : public Files {
public:
    /// No record comes near this; a file that is longer is neither read nor written.
    static constexpr std::size_t kMaxBytes = std::size_t{16} << 20;

    /// `programFolder` is for the user's files; without one they lie where the running program does.
    explicit PosixFiles(std::string programFolder = {});

    /// The name under which a file lies where names have at most `limit` bytes.
    static std::string DiskName(const std::string& name, std::size_t limit);

    /// Called when a write fails, with the file and the reason. The same failure of the same file is
    /// reported once, until that file can be written again.
    std::function<void(const std::string& why)> WriteFailed;

    std::string ProgramFolder() override { return programFolder_; }
    bool Exists(const std::string& path) override;
    void MakeFolder(const std::string& path) override;
    bool CanWrite(const std::string& folder) override;
    /// Gives names as they lie on disk, in the order of their bytes. On the way it puts the folder in order: it takes
    /// the rights of other users to it, and it removes what a Write that was cut short has left. A write of another
    /// process that is still going on is left alone. From here on ".xml" files are read ahead in that order, each as it
    /// is then, until another file is read or any is changed; the rights of others to the user's own are taken, too.
    std::vector<std::string> List(const std::string& folder) override;
    /// Fails for anything but a plain file of at most kMaxBytes, and never waits for one.
    std::string Read(const std::string& path) override;
    /// The file can be read and written by its owner only. Fails for more than kMaxBytes.
    void Write(const std::string& path, const std::string& bytes) override;
    /// What is no plain file (and no link) is left alone.
    void Delete(const std::string& path) override;

private:
    std::vector<ListedFile> ListPlace(const std::string& place);
    bool IsNextAhead(const std::string& path) const;
    void Replace(const std::string& place, std::string_view bytes);
    void RefuseUnseen(const std::string& doing, const std::string& place) const;

    std::string programFolder_;
    std::unique_ptr<ReadAhead> ahead_;  ///< Null while nothing is read ahead.
    std::string folderAhead_;
    std::set<std::string> unseen_;                 ///< Folders and files that are there and could not be read.
    std::map<std::string, std::string> failures_;  ///< Why the last write of a file failed, by its path.
};

}  // namespace velmora
