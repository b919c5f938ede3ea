// The file system, as far as the records need it. Paths and texts are bytes; every failure throws
// FileError and leaves what was on disk as it was.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {

class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A folder or a file that is there but could not be listed or read holds what nobody has seen: until it
/// could, nothing in it or at its place is written over or deleted.
class Files {
public:
    virtual ~Files() = default;

    /// The folder for the user's files: the one that the program lies in, or, of a copy that others use as
    /// well, one of the user's own. Without a slash at its end.
    virtual std::string ProgramFolder() = 0;

    /// Whether anything of that name exists.
    virtual bool Exists(const std::string& path) = 0;
    /// Whether files can be made in a folder; false as well if it is no folder. Never throws.
    virtual bool CanWrite(const std::string& folder) = 0;
    /// Makes a folder that only its owner may enter.
    virtual void MakeFolder(const std::string& path) = 0;
    /// The names of the plain files of a folder, sub-folders left out. Those that are read next, in this order, may be
    /// read ahead.
    virtual std::vector<std::string> List(const std::string& folder) = 0;
    /// The bytes of a file. A file that is too long for any record (see the implementation) fails.
    virtual std::string Read(const std::string& path) = 0;
    /// Puts a file with these bytes at the path. At every instant either the whole old or the whole
    /// new file is on disk.
    virtual void Write(const std::string& path, const std::string& bytes) = 0;
    /// Deletes a plain file. No file there is no failure.
    virtual void Delete(const std::string& path) = 0;
};

}  // namespace velmora
