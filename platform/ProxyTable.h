// The table of proxy servers.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace velmora {

class ProxyTableError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ProxyTable {
public:
    virtual ~ProxyTable() = default;

    struct Row {
        std::string ip;
        std::string port;
    };

    /// Sets the column `used` of the first row of the database at the path that has another value there to
    /// `mark`, stores that, and gives the row; nothing if there is none. A row whose `used` is null counts
    /// as taken. A file that is missing, locked or foreign, or lacks the table or a column, throws
    /// ProxyTableError; no file is ever created.
    virtual std::optional<Row> TakeFirst(const std::string& path, const std::string& mark) = 0;
};

}  // namespace velmora
