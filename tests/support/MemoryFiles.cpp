#include "tests/support/MemoryFiles.h"

#include "platform/text/CodePage.h"
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

std::vector<std::string> MemoryFiles::List(const std::string& folder)
{
    MayFail<FileError>();
    if (!Folders.contains(folder)) throw FileError("no folder " + folder);
    std::vector<std::string> names;
    for (const auto& [path, text] : Texts) {
        const auto name = path.rfind('/') + 1;
        if (path.substr(0, name - 1) == folder) names.push_back(path.substr(name));
    }
    return names;
}

std::string MemoryFiles::Read(const std::string& path)
{
    MayFail<FileError>();
    const auto found = Texts.find(path);
    if (found == Texts.end() || Locked.contains(path)) throw FileError("cannot read " + path);
    return found->second;
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
