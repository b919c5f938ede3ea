// The table of proxy servers in an SQLite file.
#pragma once

#include "platform/ProxyTable.h"

namespace velmora {

/// The text between single quotes. Quotes inside it are not doubled.
std::string QuoteSqlText(const std::string& s);

class SqliteProxyTable : public ProxyTable {
public:
    std::optional<Row> TakeFirst(const std::string& path, const std::string& mark) override;
};

}  // namespace velmora
