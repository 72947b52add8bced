// SPDX-License-Identifier: MIT
// Conversion jobs as those see them who do the work.
#include "server/storage/sqlitejobs.h"

namespace server
{

namespace
{

/// The next job whose project is at rest.
std::optional<std::string> NextJob(SqliteStore::Lease& connection)
{
    auto& row = connection.prepare("SELECT j.id FROM jobs j JOIN projects p ON p.guid = j.guid "
                                   "WHERE j.status = 6 AND p.status NOT IN (0, 3) ORDER BY j.number LIMIT 1");
    return row.executeStep() ? std::optional(row.getColumn(0).getString()) : std::nullopt;
}

bool IsWorkers(SqliteStore::Lease& connection, const std::string& id, const std::string& worker)
{
    auto& row = connection.prepare("SELECT 1 FROM jobs WHERE id = ? AND worker = ? AND status = 3");
    row.bind(1, id);
    row.bind(2, worker);
    return row.executeStep();
}

std::string HeadOf(SqliteStore::Lease& connection, const std::string& guid)
{
    auto& row = connection.prepare("SELECT head FROM projects WHERE guid = ?");
    row.bind(1, guid);
    return row.executeStep() ? row.getColumn(0).getString() : std::string();
}

/// A model belongs to whoever its building project belongs to.
void InsertModel(SqliteStore::Lease& connection, const Project& model)
{
    auto& insert = connection.prepare(
        "INSERT INTO projects(guid, type, name, record, owner, organisation, is_demo, parent) "
        "SELECT ?, 'MODEL', ?, '', owner, organisation, 0, guid FROM projects WHERE guid = ?");
    insert.bind(1, model.guid);
    insert.bind(2, model.name);
    insert.bind(3, model.parent);
    insert.exec();
}

void RemoveModel(SqliteStore::Lease& connection, const std::string& model, const std::string& guid)
{
    for (const char* text :
         {"DELETE FROM uploads WHERE guid = (SELECT guid FROM projects WHERE guid = ? AND parent = ?)",
          "DELETE FROM revisions WHERE guid = (SELECT guid FROM projects WHERE guid = ? AND parent = ?)",
          "DELETE FROM projects WHERE guid = ? AND parent = ?"}) {
        auto& remove = connection.prepare(text);
        remove.bind(1, model);
        remove.bind(2, guid);
        remove.exec();
    }
}

void EndDone(SqliteStore::Lease& connection, const Job& job, std::int64_t now)
{
    auto& update =
        connection.prepare("UPDATE jobs SET status = 2, percent = 0, worker = '', archive = '', ended = ? "
                           "WHERE id = ?");
    update.bind(1, now);
    update.bind(2, job.id);
    update.exec();
    auto& remove = connection.prepare("DELETE FROM archives WHERE id = ?");
    remove.bind(1, job.archive);
    remove.exec();
}

void EndFailed(SqliteStore::Lease& connection, const std::string& id, const std::string& reason,
               std::int64_t now)
{
    LeaveConverting(connection, id);
    auto& insert = connection.prepare("INSERT INTO conversion_failures(id, guid, name, reason, happened) "
                                      "SELECT id, guid, name, ?, ? FROM jobs WHERE id = ?");
    insert.bind(1, reason);
    insert.bind(2, now);
    insert.bind(3, id);
    insert.exec();
    auto& update =
        connection.prepare("UPDATE jobs SET status = 4, percent = 0, worker = '', ended = ? WHERE id = ?");
    update.bind(1, now);
    update.bind(2, id);
    update.exec();
    auto& prune = connection.prepare(
        "DELETE FROM conversion_failures WHERE guid = (SELECT guid FROM jobs WHERE id = ?1) AND number NOT "
        "IN "
        "(SELECT number FROM conversion_failures WHERE guid = (SELECT guid FROM jobs WHERE id = ?1) "
        "ORDER BY number DESC LIMIT 100)");
    prune.bind(1, id);
    prune.exec();
}

} // namespace

std::optional<Job> SqliteStore::takeJob(const std::string& worker, std::int64_t until)
{
    auto connection = lease();
    // Most of the time there is none: that is asked without keeping anybody from writing.
    if (!NextJob(connection))
        return std::nullopt;
    connection.prepare("SELECT 1");
    Transaction transaction(connection.database());
    const auto id = NextJob(connection);
    if (!id)
        return std::nullopt;
    auto& take = connection.prepare("UPDATE jobs SET status = 3, percent = 1, attempts = attempts + 1, "
                                    "worker = ?, until = ?, status_before = "
                                    "(SELECT status FROM projects p WHERE p.guid = jobs.guid) WHERE id = ?");
    take.bind(1, worker);
    take.bind(2, until);
    take.bind(3, *id);
    take.exec();
    auto job = FindJob(connection, *id);
    SetStatus(connection, job->guid, ProjectStatus::converting);
    transaction.commit();
    return job;
}

bool SqliteStore::keepJob(const std::string& id, const std::string& worker, double percent,
                          std::int64_t until)
{
    auto connection = lease();
    auto& update = connection.prepare(
        "UPDATE jobs SET percent = ?, until = ? WHERE id = ? AND worker = ? AND status = 3");
    update.bind(1, percent);
    update.bind(2, until);
    update.bind(3, id);
    update.bind(4, worker);
    return update.exec() > 0;
}

PublishAnswer SqliteStore::publishModel(const Job& job, const std::string& worker,
                                        const Publication& publication, std::int64_t now)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    if (!IsWorkers(connection, job.id, worker))
        return PublishAnswer::gone;
    if (HeadOf(connection, job.guid) != publication.buildingBase)
        return PublishAnswer::conflict;
    InsertModel(connection, publication.model);
    InsertPieces(connection, publication.newPieces);
    InsertRevision(connection, publication.model.guid, publication.modelRevision);
    InsertRevision(connection, job.guid, publication.buildingRevision);
    if (!job.oldModel.empty())
        RemoveModel(connection, job.oldModel, job.guid);
    EndDone(connection, job, now);
    transaction.commit();
    return PublishAnswer::published;
}

void SqliteStore::failJob(const std::string& id, const std::string& worker, const std::string& reason,
                          std::int64_t now)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    if (!IsWorkers(connection, id, worker))
        return;
    EndFailed(connection, id, reason, now);
    transaction.commit();
}

void SqliteStore::reviveJobs(std::int64_t now, int mostAttempts, std::int64_t before)
{
    auto connection = lease();
    std::vector<std::pair<std::string, int>> lost;
    {
        auto& row = connection.prepare("SELECT id, attempts FROM jobs WHERE status = 3 AND until <= ?");
        row.bind(1, now);
        while (row.executeStep())
            lost.emplace_back(row.getColumn(0).getString(), row.getColumn(1).getInt());
    }
    for (const auto& [id, attempts] : lost) {
        Transaction transaction(connection.database());
        auto& check = connection.prepare("SELECT 1 FROM jobs WHERE id = ? AND status = 3 AND until <= ?");
        check.bind(1, id);
        check.bind(2, now);
        if (!check.executeStep())
            continue;
        if (attempts >= mostAttempts) {
            EndFailed(connection, id, "the conversion was broken off again and again", now);
        } else {
            LeaveConverting(connection, id);
            auto& update =
                connection.prepare("UPDATE jobs SET status = 6, percent = 0, worker = '' WHERE id = ?");
            update.bind(1, id);
            update.exec();
        }
        transaction.commit();
    }
    auto& forget = connection.prepare("DELETE FROM jobs WHERE status = 2 AND ended <= ?");
    forget.bind(1, before);
    forget.exec();
}

} // namespace server
