// The file system of a POSIX desktop.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace velmora {

/// A name (the last component of a path) of more than 255 bytes is more than the file system takes.
/// Such a file lies under a shorter name that follows from the long one alone; every operation maps
/// it in the same way, so that callers need not know.
class PosixFiles : public Files {
public:
    /// No record comes near this; a file that is longer is not read.
    static constexpr std::size_t kMaxReadBytes = 16 * 1024 * 1024;

    /// Without a folder, ProgramFolder() is the one that the running program lies in.
    explicit PosixFiles(std::string programFolder = {});

    std::string ProgramFolder() override { return programFolder_; }
    std::string Separator() override { return "/"; }
    bool Exists(const std::string& path) override;
    void MakeFolder(const std::string& path) override;
    bool CanWrite(const std::string& folder) override;
    /// Gives names as they lie on disk, in the order of their bytes. On the way it removes what a
    /// Write that was cut short has left in the folder; a write of another process that is still
    /// going on is left alone.
    std::vector<FileEntry> List(const std::string& folder) override;
    /// Fails for anything but a plain file of at most kMaxReadBytes, and never waits for one.
    std::string Read(const std::string& path) override;
    /// The file can be read and written by its owner only.
    void Write(const std::string& path, const std::string& bytes) override;
    /// What is no plain file (and no link) is left alone.
    void Delete(const std::string& path) override;

private:
    std::string programFolder_;
};

}  // namespace velmora
