// SPDX-License-Identifier: MIT
#include "server/storage/sqlitestore.h"

#include "server/storage/sqliteconnection.h"
#include "server/storage/sqliteschema.h"

namespace server
{

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
