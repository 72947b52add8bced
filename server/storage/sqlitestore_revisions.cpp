// SPDX-License-Identifier: MIT
// Revisions and the places of their pieces.
#include "server/storage/sqliteconnection.h"

namespace server
{

std::optional<Revision> SqliteStore::findRevision(const std::string& guid, const wire::Digest& root)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT manifest, layout FROM revisions WHERE guid = ? AND root = ?");
    row.bind(1, guid);
    BindDigest(row, 2, root);
    if (!row.executeStep())
        return std::nullopt;
    return Revision{root, row.getColumn(0).getString(), row.getColumn(1).getString()};
}

std::string SqliteStore::head(const std::string& guid)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT head FROM projects WHERE guid = ?");
    row.bind(1, guid);
    return row.executeStep() ? row.getColumn(0).getString() : std::string();
}

std::optional<PieceLocation> SqliteStore::findPiece(const wire::Digest& name)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT pack, offset, length FROM pieces WHERE name = ?");
    BindDigest(row, 1, name);
    if (!row.executeStep())
        return std::nullopt;
    return PieceLocation{row.getColumn(0).getUInt(), static_cast<std::uint64_t>(row.getColumn(1).getInt64()),
                         row.getColumn(2).getUInt()};
}

void SqliteStore::commitRevision(const std::string& guid, const Revision& revision,
                                 std::span<const std::pair<wire::Digest, PieceLocation>> newPieces)
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    for (const auto& [name, location] : newPieces) {
        auto& insert = connection.prepare("INSERT OR IGNORE INTO pieces(name, pack, offset, length) "
                                          "VALUES(?, ?, ?, ?)");
        BindDigest(insert, 1, name);
        insert.bind(2, location.pack);
        insert.bind(3, static_cast<std::int64_t>(location.offset));
        insert.bind(4, location.length);
        insert.exec();
    }
    auto& insert = connection.prepare(
        "INSERT OR IGNORE INTO revisions(guid, root, manifest, layout) VALUES(?, ?, ?, ?)");
    insert.bind(1, guid);
    BindDigest(insert, 2, revision.root);
    BindBlob(insert, 3, revision.manifest);
    BindBlob(insert, 4, revision.layout);
    insert.exec();
    auto& update =
        connection.prepare("UPDATE projects SET head = ?, status = 1, revised = unixepoch() WHERE guid = ?");
    update.bind(1, wire::ToHex(revision.root));
    update.bind(2, guid);
    update.exec();
    connection.countChange();
    transaction.commit();
}

} // namespace server
