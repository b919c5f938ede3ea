#include "platform/sqlite/SqliteProxyTable.h"

#include <sqlite3.h>

#include <cstdio>
#include <memory>
#include <vector>

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

Statement Prepare(const Database& database, const std::string& sql)
{
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database.get(), sql.c_str(), -1, &prepared, nullptr) != SQLITE_OK) Fail(database.get());
    return Statement(prepared);
}

void Execute(const Database& database, const char* sql)
{
    if (sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(database.get());
}

std::string NamedColumn(sqlite3_stmt* row, const char* name)
{
    for (int i = 0; i < sqlite3_column_count(row); ++i) {
        if (sqlite3_stricmp(sqlite3_column_name(row, i), name) == 0) return Column(row, i);
    }
    throw ProxyTableError(std::string("the proxy table has no column ") + name);
}

std::string Quoted(std::string name)
{
    for (auto i = name.find('"'); i != std::string::npos; i = name.find('"', i + 2)) name.insert(i, 1, '"');
    return '"' + name + '"';
}

constexpr const char* kRowId = "_rowid_";

/// Rows, and the columns, the first ones, that tell a row from all others.
struct Selection {
    Statement rows;
    std::vector<std::string> keys;
};

Selection SelectOthers(const Database& database, const std::string& mark)
{
    // All columns, though three would do: with those alone an index could serve, which has an order of its own.
    const std::string select = "* from tblProxy where used <> " + QuoteSqlText(mark);
    try {
        return {Prepare(database, std::string("select ") + kRowId + ", " + select), {kRowId}};
    } catch (const ProxyTableError&) {
        // A table without row ids has a key among its columns.
        Selection selection{Prepare(database, "select " + select), {}};
        for (int i = 0; i < sqlite3_column_count(selection.rows.get()); ++i) {
            selection.keys.push_back(Quoted(sqlite3_column_name(selection.rows.get(), i)));
        }
        return selection;
    }
}

/// What sets `used` in the row that the selection stands at.
Statement PrepareMark(const Database& database, const Selection& selection, const std::string& mark)
{
    std::string sql = "update tblProxy set used = ?1 where true";
    for (const std::string& key : selection.keys) sql += " and " + key + " is ?";
    Statement update = Prepare(database, sql);
    sqlite3_bind_text(update.get(), 1, mark.data(), static_cast<int>(mark.size()), SQLITE_TRANSIENT);
    for (int i = 0; i < static_cast<int>(selection.keys.size()); ++i) {
        sqlite3_bind_value(update.get(), i + 2, sqlite3_column_value(selection.rows.get(), i));
    }
    return update;
}

std::optional<ProxyTable::Row> MarkFirst(const Database& database, const std::string& mark)
{
    const Selection selection = SelectOthers(database, mark);
    sqlite3_stmt* const row = selection.rows.get();
    const int result = sqlite3_step(row);
    if (result == SQLITE_DONE) return std::nullopt;
    if (result != SQLITE_ROW) Fail(database.get());
    // Before the values are read as texts, which may change their types.
    const Statement update = PrepareMark(database, selection, mark);
    ProxyTable::Row values{NamedColumn(row, "ip"), NamedColumn(row, "port")};
    if (sqlite3_step(update.get()) != SQLITE_DONE) Fail(database.get());
    if (sqlite3_changes(database.get()) != 1) throw ProxyTableError("the row could not be marked");
    return values;
}

}  // namespace

std::string QuoteSqlText(const std::string& s) { return "'" + s + "'"; }

std::optional<ProxyTable::Row> SqliteProxyTable::TakeFirst(const std::string& path, const std::string& mark)
{
    const Database database = Open(path);
    // Nobody else writes between the reading and the marking; what fails on the way is undone by closing.
    Execute(database, "begin immediate");
    std::optional<Row> taken = MarkFirst(database, mark);
    Execute(database, "commit");
    return taken;
}

}  // namespace velmora
