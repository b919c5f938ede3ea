// A file system held in memory, and what else the program is handed.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Proxy.h"
#include "platform/ProxyTable.h"
#include "records/RecordItem.h"

namespace velmora::test {

/// The bytes of a record's file as the program writes it.
std::string FileOf(const RecordItem& record);

class MemoryFiles : public Files {
public:
    std::string ProgramFolder() override { return "/app"; }
    bool Exists(const std::string& path) override;
    void MakeFolder(const std::string& path) override;
    bool CanWrite(const std::string& folder) override;
    std::vector<std::string> List(const std::string& folder) override;
    std::string Read(const std::string& path) override;
    void Write(const std::string& path, const std::string& bytes) override;
    void Delete(const std::string& path) override;

    std::map<std::string, std::string> Texts;  ///< Bytes by path.
    std::set<std::string> Folders{"/app"};
    std::set<std::string> Locked;  ///< Files that cannot be read.
};

class MemoryProxy : public Proxy {
public:
    bool SetProxy(ProxyAccess access, const std::string& proxyText) override;

    bool Accepts = true;
    std::vector<std::string> Calls;  ///< "3 http=host:80" for a proxy, "1 ..." for none.
};

/// Hands out its servers, one after the other.
class MemoryProxyTable : public ProxyTable {
public:
    std::optional<Row> TakeFirst(const std::string& path, const std::string& mark) override;

    std::deque<Row> Servers;
    std::vector<std::string> Calls;  ///< "path mark".
};

}  // namespace velmora::test
