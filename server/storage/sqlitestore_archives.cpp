// SPDX-License-Identifier: MIT
// Archives that arrive.
#include "server/storage/sqliteconnection.h"

namespace server
{

namespace
{

constexpr const char* unusedByJobs = "NOT EXISTS (SELECT 1 FROM jobs j WHERE j.archive = archives.id)";

Archive ArchiveOf(SQLite::Statement& row)
{
    Archive archive;
    archive.id = row.getColumn(0).getString();
    archive.account = row.getColumn(1).getInt64();
    archive.guid = row.getColumn(2).getString();
    archive.path = row.getColumn(3).getString();
    archive.size = static_cast<std::uint64_t>(row.getColumn(4).getInt64());
    archive.received = static_cast<std::uint64_t>(row.getColumn(5).getInt64());
    archive.md5 = row.getColumn(6).getString();
    return archive;
}

std::optional<Archive> ArchiveAt(SqliteStore::Lease& connection, std::int64_t account,
                                 const std::string& path)
{
    auto& row = connection.prepare("SELECT id, account, guid, path, size, received, md5 FROM archives "
                                   "WHERE account = ? AND path = ?");
    row.bind(1, account);
    row.bind(2, path);
    return row.executeStep() ? std::optional(ArchiveOf(row)) : std::nullopt;
}

/// Takes the path from an archive; one that no job uses goes altogether, which is told.
bool GiveUpPath(SqliteStore::Lease& connection, const std::string& id)
{
    static const std::string removal = std::string("DELETE FROM archives WHERE id = ? AND ") + unusedByJobs;
    auto& remove = connection.prepare(removal.c_str());
    remove.bind(1, id);
    if (remove.exec() > 0)
        return true;
    auto& update = connection.prepare("UPDATE archives SET path = '' WHERE id = ?");
    update.bind(1, id);
    update.exec();
    return false;
}

} // namespace

Archive SqliteStore::beginArchive(const Archive& archive, std::int64_t now,
                                  std::vector<std::string>& replaced)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    const auto standing = ArchiveAt(connection, archive.account, archive.path);
    if (standing && standing->size == archive.size) {
        auto& touch = connection.prepare("UPDATE archives SET touched = ? WHERE id = ?");
        touch.bind(1, now);
        touch.bind(2, standing->id);
        touch.exec();
        transaction.commit();
        return *standing;
    }
    if (standing && GiveUpPath(connection, standing->id))
        replaced.push_back(standing->id);
    auto& insert = connection.prepare(
        "INSERT INTO archives(id, account, guid, path, size, touched) VALUES(?, ?, ?, ?, ?, ?)");
    insert.bind(1, archive.id);
    insert.bind(2, archive.account);
    insert.bind(3, archive.guid);
    insert.bind(4, archive.path);
    insert.bind(5, static_cast<std::int64_t>(archive.size));
    insert.bind(6, now);
    insert.exec();
    transaction.commit();
    return archive;
}

std::optional<Archive> SqliteStore::findArchive(std::int64_t account, const std::string& guid,
                                                const std::string& id)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT id, account, guid, path, size, received, md5 FROM archives "
                                   "WHERE id = ? AND account = ? AND guid = ?");
    row.bind(1, id);
    row.bind(2, account);
    row.bind(3, guid);
    return row.executeStep() ? std::optional(ArchiveOf(row)) : std::nullopt;
}

void SqliteStore::setReceived(const std::string& id, std::uint64_t received, std::int64_t now)
{
    auto connection = lease();
    auto& update = connection.prepare("UPDATE archives SET received = ?, touched = ? WHERE id = ?");
    update.bind(1, static_cast<std::int64_t>(received));
    update.bind(2, now);
    update.bind(3, id);
    update.exec();
}

void SqliteStore::setFinished(const std::string& id, const std::string& md5, std::int64_t now)
{
    auto connection = lease();
    auto& update = connection.prepare("UPDATE archives SET md5 = ?, touched = ? WHERE id = ?");
    update.bind(1, md5);
    update.bind(2, now);
    update.bind(3, id);
    update.exec();
}

void SqliteStore::removeArchive(const std::string& id)
{
    auto connection = lease();
    auto& remove = connection.prepare("DELETE FROM archives WHERE id = ?");
    remove.bind(1, id);
    remove.exec();
}

std::vector<std::string> SqliteStore::forgetArchives(std::int64_t before)
{
    static const std::string query =
        std::string("SELECT id FROM archives WHERE touched <= ? AND ") + unusedByJobs;
    auto connection = lease();
    std::vector<std::string> ids;
    {
        auto& row = connection.prepare(query.c_str());
        row.bind(1, before);
        while (row.executeStep())
            ids.push_back(row.getColumn(0).getString());
    }
    if (ids.empty())
        return ids;
    Transaction transaction(connection.database());
    static const std::string removal =
        std::string("DELETE FROM archives WHERE id = ? AND touched <= ? AND ") + unusedByJobs;
    std::erase_if(ids, [&](const std::string& id) {
        auto& remove = connection.prepare(removal.c_str());
        remove.bind(1, id);
        remove.bind(2, before);
        return remove.exec() == 0;
    });
    transaction.commit();
    return ids;
}

bool SqliteStore::hasArchive(const std::string& id)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT 1 FROM archives WHERE id = ?");
    row.bind(1, id);
    return row.executeStep();
}

} // namespace server
