// SPDX-License-Identifier: MIT
#include "server/storage/sqlitestore.h"

#include "server/storage/sqliteconnection.h"
#include "server/storage/sqliteschema.h"

#include <cerrno>

#include <sqlite3.h>

namespace server
{

namespace
{

bool IsWantOfRoom(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

/// Whether the last operation on the database or on its log that failed wanted room. The connection itself
/// forgets why a commit has failed.
bool WantsRoom(sqlite3* database)
{
    int error = 0;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_LAST_ERRNO, &error);
    if (IsWantOfRoom(error))
        return true;
    sqlite3_file* log = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
    if (log == nullptr || log->pMethods == nullptr)
        return false;
    error = 0;
    log->pMethods->xFileControl(log, SQLITE_FCNTL_LAST_ERRNO, &error);
    return IsWantOfRoom(error);
}

} // namespace

void TellFullDisk(const SQLite::Exception& failure, sqlite3* database)
{
    // SQLite has a word of its own for ENOSPC, and a failed write for the limits of an account or of a file.
    const bool isFull = failure.getErrorCode() == SQLITE_FULL ||
                        failure.getExtendedErrorCode() == SQLITE_IOERR_SHMSIZE ||
                        (failure.getExtendedErrorCode() == SQLITE_IOERR_WRITE && WantsRoom(database));
    if (isFull)
        throw DiskFull("the disk of the server's database is full");
}

SqliteStore::SqliteStore(std::filesystem::path file)
    : m_file(std::move(file))
{
    auto connection = lease();
    BringSchemaUpToDate(connection.database());
}

SqliteStore::~SqliteStore() = default;

SqliteStore::Lease SqliteStore::lease()
{
    std::unique_ptr<Connection> connection;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_free.empty()) {
            connection = std::move(m_free.back());
            m_free.pop_back();
        }
    }
    if (!connection)
        connection = std::make_unique<Connection>(m_file);
    return {*this, std::move(connection)};
}

} // namespace server
