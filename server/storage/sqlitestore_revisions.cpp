// SPDX-License-Identifier: MIT
#include "server/storage/sqliteconnection.h"

#include <algorithm>
#include <numeric>

// Revisions, pieces and uploads.

namespace server
{

namespace
{

/// In which order to touch pieces: their index in the database is walked along then, and not jumped about in.
template<class Item, class NameOf>
std::vector<std::size_t> OrderOfNames(std::span<const Item> items, NameOf nameOf)
{
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return nameOf(items[left]) < nameOf(items[right]);
    });
    return order;
}

} // namespace

void InsertPieces(SqliteStore::Lease& connection, std::span<const StoredPiece> pieces)
{
    auto& insert = connection.prepare("INSERT OR IGNORE INTO pieces(name, pack, offset, length) "
                                      "VALUES(?, ?, ?, ?)");
    for (const auto index : OrderOfNames(pieces, [](const StoredPiece& piece) { return piece.first; })) {
        const auto& [name, location] = pieces[index];
        insert.reset();
        BindDigest(insert, 1, name);
        insert.bind(2, location.pack);
        insert.bind(3, static_cast<std::int64_t>(location.offset));
        insert.bind(4, location.length);
        insert.exec();
    }
}

void InsertRevision(SqliteStore::Lease& connection, const std::string& guid, const Revision& revision)
{
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
}

void SetStatus(SqliteStore::Lease& connection, const std::string& guid, ProjectStatus status)
{
    auto& update = connection.prepare("UPDATE projects SET status = ? WHERE guid = ?");
    update.bind(1, static_cast<int>(status));
    update.bind(2, guid);
    update.exec();
    connection.countChange();
}

namespace
{

/// The head of a project and what holds its upload back.
struct Standing {
    std::string head;
    int status = 1;
    std::string uploadId;
    bool isOthersUpload = false;
};

constexpr int convertingStatus = static_cast<int>(ProjectStatus::converting);

std::optional<Standing> StandingOf(SqliteStore::Lease& connection, const UploadLease& lease)
{
    auto& row = connection.prepare("SELECT p.head, p.status, coalesce(u.id, ''), u.session IS NOT NULL AND "
                                   "u.session <> ?2 FROM projects p LEFT JOIN uploads u ON u.guid = p.guid "
                                   "WHERE p.guid = ?1");
    row.bind(1, lease.guid);
    BindDigest(row, 2, lease.session);
    if (!row.executeStep())
        return std::nullopt;
    return Standing{row.getColumn(0).getString(), row.getColumn(1).getInt(), row.getColumn(2).getString(),
                    row.getColumn(3).getInt() != 0};
}

void InsertNewProject(SqliteStore::Lease& connection, const Project& project)
{
    auto& insert = connection.prepare(
        "INSERT INTO projects(guid, type, name, record, owner, organisation, is_demo, parent) "
        "SELECT ?, ?, ?, ?, id, organisation, 0, ? FROM accounts WHERE id = ?");
    insert.bind(1, project.guid);
    insert.bind(2, project.type);
    insert.bind(3, project.name);
    insert.bind(4, project.record);
    insert.bind(5, project.parent);
    insert.bind(6, project.owner);
    insert.exec();
}

void RemoveLease(SqliteStore::Lease& connection, const UploadLease& lease)
{
    auto& remove = connection.prepare("DELETE FROM uploads WHERE guid = ? AND id = ?");
    remove.bind(1, lease.guid);
    remove.bind(2, lease.id);
    remove.exec();
}

PieceLocation LocationOf(SQLite::Statement& row)
{
    return {row.getColumn(0).getUInt(), static_cast<std::uint64_t>(row.getColumn(1).getInt64()),
            row.getColumn(2).getUInt()};
}

constexpr const char* pieceQuery = "SELECT pack, offset, length FROM pieces WHERE name = ?";

} // namespace

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
    auto& row = connection.prepare(pieceQuery);
    BindDigest(row, 1, name);
    if (!row.executeStep())
        return std::nullopt;
    return LocationOf(row);
}

std::vector<std::optional<PieceLocation>> SqliteStore::findPieces(std::span<const wire::Piece> pieces)
{
    auto connection = lease();
    Transaction transaction(connection.database(), SQLite::TransactionBehavior::DEFERRED);
    auto& row = connection.prepare(pieceQuery);
    std::vector<std::optional<PieceLocation>> locations(pieces.size());
    for (const auto index : OrderOfNames(pieces, [](const wire::Piece& piece) { return piece.name; })) {
        BindDigest(row, 1, pieces[index].name);
        if (row.executeStep())
            locations[index] = LocationOf(row);
        row.reset();
    }
    return locations;
}

void SqliteStore::addPieces(std::span<const StoredPiece> pieces)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    InsertPieces(connection, pieces);
    transaction.commit();
}

void SqliteStore::commitRevision(const std::string& guid, const Revision& revision,
                                 std::span<const StoredPiece> newPieces)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    InsertPieces(connection, newPieces);
    InsertRevision(connection, guid, revision);
    transaction.commit();
}

UploadAnswer SqliteStore::beginUpload(const UploadLease& lease, const Project& project,
                                      const std::optional<std::string>& base)
{
    auto connection = this->lease();
    Transaction transaction(connection.database());
    const auto standing = StandingOf(connection, lease);
    if (standing && !MayChange(connection, project.owner, lease.guid))
        return UploadAnswer::notAllowed;
    if (!project.parent.empty() && StandingOf(connection, {project.parent, {}, {}, 0}) &&
        !MayChange(connection, project.owner, project.parent))
        return UploadAnswer::notAllowed;
    if (standing && standing->status == convertingStatus)
        return UploadAnswer::converting;
    if (standing && standing->isOthersUpload)
        return UploadAnswer::busy;
    if (base && *base != (standing ? standing->head : std::string()))
        return UploadAnswer::conflict;
    if (!standing)
        InsertNewProject(connection, project);
    auto& put =
        connection.prepare("INSERT OR REPLACE INTO uploads(guid, id, session, until) VALUES(?, ?, ?, ?)");
    put.bind(1, lease.guid);
    put.bind(2, lease.id);
    BindDigest(put, 3, lease.session);
    put.bind(4, lease.until);
    put.exec();
    SetStatus(connection, lease.guid, ProjectStatus::uploading);
    transaction.commit();
    return UploadAnswer::granted;
}

bool SqliteStore::extendUpload(const UploadLease& lease)
{
    auto connection = this->lease();
    // A client that sends a model still has the building project too.
    auto& update = connection.prepare("UPDATE uploads SET until = ? WHERE session = (SELECT session FROM "
                                      "uploads WHERE guid = ? AND id = ?)");
    update.bind(1, lease.until);
    update.bind(2, lease.guid);
    update.bind(3, lease.id);
    return update.exec() > 0;
}

UploadAnswer SqliteStore::commitUpload(const UploadLease& lease, const Project& project,
                                       const std::optional<std::string>& base, const Revision& revision,
                                       std::span<const StoredPiece> newPieces)
{
    auto connection = this->lease();
    Transaction transaction(connection.database());
    const auto standing = StandingOf(connection, lease);
    if (!standing || standing->uploadId != lease.id)
        return UploadAnswer::gone;
    if (base && *base != standing->head)
        return UploadAnswer::conflict;
    auto& update = connection.prepare("UPDATE projects SET type = ?, name = ?, record = ?, parent = ? "
                                      "WHERE guid = ?");
    update.bind(1, project.type);
    update.bind(2, project.name);
    update.bind(3, project.record);
    update.bind(4, project.parent);
    update.bind(5, project.guid);
    update.exec();
    RemoveLease(connection, lease);
    InsertPieces(connection, newPieces);
    InsertRevision(connection, lease.guid, revision);
    transaction.commit();
    return UploadAnswer::granted;
}

void SqliteStore::endUpload(const UploadLease& lease, ProjectStatus status)
{
    auto connection = this->lease();
    Transaction transaction(connection.database());
    const auto standing = StandingOf(connection, lease);
    if (!standing || standing->uploadId != lease.id)
        return;
    RemoveLease(connection, lease);
    SetStatus(connection, lease.guid, status);
    transaction.commit();
}

std::vector<std::string> SqliteStore::endStaleUploads(std::int64_t now)
{
    auto connection = lease();
    std::vector<UploadLease> stale;
    {
        auto& row = connection.prepare("SELECT guid, id FROM uploads WHERE until <= ?");
        row.bind(1, now);
        while (row.executeStep())
            stale.push_back({row.getColumn(0).getString(), row.getColumn(1).getString(), {}, 0});
    }
    std::vector<std::string> ended;
    if (stale.empty())
        return ended;
    Transaction transaction(connection.database());
    for (const auto& lease : stale) {
        auto& remove = connection.prepare("DELETE FROM uploads WHERE guid = ? AND id = ? AND until <= ?");
        remove.bind(1, lease.guid);
        remove.bind(2, lease.id);
        remove.bind(3, now);
        if (remove.exec() == 0)
            continue;
        SetStatus(connection, lease.guid, ProjectStatus::uploadFailed);
        ended.push_back(lease.id);
    }
    transaction.commit();
    return ended;
}

} // namespace server
