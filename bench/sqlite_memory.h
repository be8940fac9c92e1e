// A database of SQLite in memory, the peer of the benchmarks of tables.
#pragma once

#include "pairs.h"

#include <sqlite3.h>

class SqliteMemory {
public:
    SqliteMemory() { Require(sqlite3_open(":memory:", &db_) == SQLITE_OK, "opening SQLite"); }
    ~SqliteMemory() { sqlite3_close(db_); }
    SqliteMemory(const SqliteMemory&) = delete;
    SqliteMemory& operator=(const SqliteMemory&) = delete;

    void Do(const char* sql) { Require(sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql); }
    // The caller finalizes the statement.
    sqlite3_stmt* Prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        Require(sqlite3_prepare_v2(db_, sql, -1, &statement, nullptr) == SQLITE_OK, sql);
        return statement;
    }
    int LastRow() const { return static_cast<int>(sqlite3_last_insert_rowid(db_)); }

private:
    sqlite3* db_ = nullptr;
};
