#include "tests/support/MemoryFiles.h"

#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "shell/frmBrowser.h"
#include "tests/support/Faults.h"

namespace velmora::test {

std::string FileOf(const RecordItem& record) { return BytesOfText(frmBrowser::BuildSessionXml(record) + "\r\n"); }

bool MemoryFiles::Exists(const std::string& path)
{
    return !faults.IsNow() && (Folders.contains(path) || Texts.contains(path));
}

bool MemoryFiles::CanWrite(const std::string& folder) { return !faults.IsNow() && Folders.contains(folder); }

void MemoryFiles::MakeFolder(const std::string& path)
{
    MayFail<FileError>();
    if (Folders.contains(path)) throw FileError("cannot make " + path);
    Folders.insert(path);
}

std::unique_ptr<FolderReader> MemoryFiles::ReadFolder(const std::string& folder, const std::string& ending)
{
    struct Reader : FolderReader {
        std::optional<File> Next() override
        {
            if (left.empty()) return std::nullopt;
            const std::string path = left.front();
            left.pop_front();
            const bool isWanted = EqualIgnoringCase(path.substr(path.rfind('.')), wanted);
            if (isWanted) MayFail<FileError>();
            if (isWanted && disk->Locked.contains(path)) throw FileError("cannot read " + path);
            return File{path.substr(path.rfind('/') + 1), isWanted ? disk->Texts[path] : ""};
        }

        MemoryFiles* disk = nullptr;
        std::string wanted;
        std::deque<std::string> left;
    };
    MayFail<FileError>();
    if (!Folders.contains(folder)) throw FileError("no folder " + folder);
    auto reader = std::make_unique<Reader>();
    reader->disk = this;
    reader->wanted = ending;
    for (const auto& [path, text] : Texts) {
        if (path.substr(0, path.rfind('/')) == folder) reader->left.push_back(path);
    }
    return reader;
}

void MemoryFiles::Write(const std::string& path, const std::string& bytes)
{
    MayFail<FileError>();
    if (!Folders.contains(path.substr(0, path.rfind('/')))) throw FileError("cannot write " + path);
    Texts[path] = bytes;
}

void MemoryFiles::Delete(const std::string& path)
{
    MayFail<FileError>();
    Texts.erase(path);
}

bool MemoryProxy::SetProxy(ProxyAccess access, const std::string& proxyText)
{
    Calls.push_back(std::to_string(static_cast<int>(access)) + " " + proxyText);
    return Accepts && !faults.IsNow();
}

std::optional<ProxyTable::Row> MemoryProxyTable::TakeFirst(const std::string& path, const std::string& mark)
{
    Calls.push_back(path + " " + mark);
    MayFail<ProxyTableError>();
    if (Servers.empty()) return std::nullopt;
    const Row row = Servers.front();
    Servers.pop_front();
    return row;
}

}  // namespace velmora::test
