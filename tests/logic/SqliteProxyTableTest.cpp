#include "platform/sqlite/SqliteProxyTable.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace velmora {

class SqliteProxyTableTest : public testing::Test {
protected:
    SqliteProxyTableTest()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "velmora-list-XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~SqliteProxyTableTest() override { std::filesystem::remove_all(folder); }

    using Database = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;
    Database Open()
    {
        sqlite3* database = nullptr;
        sqlite3_open(File().c_str(), &database);
        return {database, sqlite3_close};
    }
    static void Execute(const Database& database, const std::string& sql)
    {
        ASSERT_EQ(sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    }
    std::string File() const { return folder / "proxyserver.mdb"; }
    /// The server that a program's run gets: "address|port", "none" or "unusable".
    std::string Take()
    {
        try {
            const auto row = SqliteProxyTable().TakeFirst(File(), "Y");
            return row ? row->ip + "|" + row->port : "none";
        } catch (const ProxyTableError&) {
            return "unusable";
        }
    }

    std::filesystem::path folder;
};

TEST_F(SqliteProxyTableTest, HandsOutEachFreeServerOnce)
{
    for (const std::string kind : {"", " without rowid"}) {
        std::filesystem::remove(File());
        Execute(Open(), "create table tblProxy (id integer primary key, ip text, port, used text, note text)" + kind +
                            "; create index other_order on tblProxy (used);"
                            "insert into tblProxy values (1, 'taken', 1, 'Y', ''), (2, 'first', 8080, 'N', null),"
                            " (3, 'never', 2, null, ''), (4, 'second', '3128', '', ''), (5, 'third', 81.0, 'y', '')");
        for (const char* server : {"first|8080", "second|3128", "third|81", "none"}) EXPECT_EQ(Take(), server) << kind;
    }
}

TEST_F(SqliteProxyTableTest, AFileThatCannotBeUsedIsToldAndLeftAlone)
{
    EXPECT_EQ(Take(), "unusable");
    EXPECT_FALSE(std::filesystem::exists(File())) << "a missing file stays missing";
    std::filesystem::create_directory(File());
    EXPECT_EQ(Take(), "unusable");
    std::filesystem::remove(File());
    std::ofstream(File()) << std::string(200, 'x');
    EXPECT_EQ(Take(), "unusable");
    for (const char* table : {"create table other (ip, port, used)",
                              "create table tblProxy (ip, used); insert into tblProxy values (1, 'N')",
                              "create table tblProxy (ip, port)"}) {
        std::filesystem::remove(File());
        Execute(Open(), table);
        EXPECT_EQ(Take(), "unusable") << table;
    }
    std::filesystem::remove(File());
    const Database other = Open();
    Execute(other, "create table tblProxy (ip, port, used); insert into tblProxy values ('free', 80, 'N')");
    Execute(other, "begin exclusive");
    EXPECT_EQ(Take(), "unusable") << "somebody else has it locked";
    Execute(other, "commit");
    EXPECT_EQ(Take(), "free|80") << "no row was spent on the failures";
}

}  // namespace velmora
