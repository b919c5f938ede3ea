#include "platform/sqlite/SqliteProxyTable.h"

#include <sqlite3.h>

#include <cstdio>
#include <memory>
#include <string_view>

namespace velmora {

namespace {

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct EndStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, EndStatement>;

[[noreturn]] void Fail(sqlite3* database)
{
    throw ProxyTableError(database ? sqlite3_errmsg(database) : "the proxy table cannot be opened");
}

Database Open(const std::string& path)
{
    sqlite3* opened = nullptr;
    // Without SQLITE_OPEN_CREATE: a file that is missing stays missing.
    const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    Database database(opened);
    if (result != SQLITE_OK) Fail(opened);
    return database;
}

std::string Column(sqlite3_stmt* statement, int i)
{
    if (sqlite3_column_type(statement, i) == SQLITE_FLOAT) {
        // A column of numbers may hold a port as 8080.0; its text is that of the number.
        char number[32];
        std::snprintf(number, sizeof number, "%.15g", sqlite3_column_double(statement, i));
        return number;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, i))) : std::string();
}

}  // namespace

std::optional<ProxyTable::Row> SqliteProxyTable::TakeFirst(const std::string& path, const std::string& query,
                                                           const std::string& mark)
{
    constexpr std::string_view kSelect = "select *";
    if (!std::string_view(query).starts_with(kSelect)) throw ProxyTableError("the query is not known");

    const Database database = Open(path);
    // One statement, so that the row is read and marked in one step, whoever else has the file open.
    const std::string update = "update tblProxy set used = ?1 where rowid = (select rowid" +
                               query.substr(kSelect.size()) + " limit 1) returning ip, port";
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database.get(), update.c_str(), -1, &prepared, nullptr) != SQLITE_OK) Fail(database.get());
    const Statement statement(prepared);
    sqlite3_bind_text(prepared, 1, mark.data(), static_cast<int>(mark.size()), SQLITE_TRANSIENT);

    std::optional<Row> row;
    int result = sqlite3_step(prepared);
    if (result == SQLITE_ROW) {
        row = Row{Column(prepared, 0), Column(prepared, 1)};
        result = sqlite3_step(prepared);
    }
    if (result != SQLITE_DONE) Fail(database.get());
    return row;
}

}  // namespace velmora
