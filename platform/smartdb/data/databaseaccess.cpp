// SPDX-License-Identifier: MIT
#include "smartdb/data/databaseaccess.h"

#include <string>

#include <sqlite3.h>

namespace ZRSmartDB
{

namespace
{

// Another process may hold the write lock for as long as one of its transactions takes.
constexpr int busyMilliseconds = 5000;

// A longer value is none of ours but a damaged or a hostile file.
constexpr int longestValue = 64 * 1024 * 1024;

int CodeOf(int result)
{
    switch (result & 0xFF) {
    case SQLITE_FULL:
        return localcode::diskFull;
    case SQLITE_CANTOPEN:
    case SQLITE_BUSY:
    case SQLITE_IOERR:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return localcode::cannotWrite;
    default:
        return localcode::damaged;
    }
}

} // namespace

SQLite::Database OpenDatabase(const std::filesystem::path& file)
{
    return ReportingFailures([&] {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE, busyMilliseconds);
        sqlite3_limit(database.getHandle(), SQLITE_LIMIT_LENGTH, longestValue);
        return database;
    });
}

bool HasMoved(const SQLite::Database& database)
{
    int hasMoved = 0;
    return sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved) ==
               SQLITE_OK &&
           hasMoved != 0;
}

Failure FailureOf(const SQLite::Exception& exception)
{
    return {CodeOf(exception.getErrorCode()),
            std::string("the project's database cannot be used: ") + exception.what()};
}

} // namespace ZRSmartDB
