// The table of proxy servers in an SQLite file.
#pragma once

#include "platform/ProxyTable.h"

namespace velmora {

class SqliteProxyTable : public ProxyTable {
public:
    std::optional<Row> TakeFirst(const std::string& path, const std::string& query, const std::string& mark) override;
};

}  // namespace velmora
