// SPDX-License-Identifier: MIT
// Conversion jobs as those see them who order conversions.
#include "server/storage/sqlitejobs.h"

namespace server
{

namespace
{

// Nothing takes the place of a failed job's old model, unless the job is done again.
constexpr const char* columns =
    "SELECT id, guid, account, archive, path, name, CASE status WHEN 4 THEN '' ELSE old_model END, mode, "
    "status, percent, "
    "CASE status WHEN 6 THEN (SELECT count(*) FROM jobs w WHERE w.status = 6 AND w.number <= jobs.number) "
    "ELSE 0 END";

/// The finished archive at a path.
std::optional<Archive> FinishedAt(SqliteStore::Lease& connection, const Job& job)
{
    auto& row = connection.prepare(
        "SELECT id, md5 FROM archives WHERE account = ? AND path = ? AND guid = ? AND md5 <> ''");
    row.bind(1, job.account);
    row.bind(2, job.path);
    row.bind(3, job.guid);
    if (!row.executeStep())
        return std::nullopt;
    Archive archive;
    archive.id = row.getColumn(0).getString();
    archive.md5 = row.getColumn(1).getString();
    return archive;
}

/// The job of an archive; without an archive the last one of the path, whose archive has gone.
std::optional<std::string> JobFor(SqliteStore::Lease& connection, const std::optional<Archive>& archive,
                                  const Job& wish)
{
    auto& row = archive
                    ? connection.prepare("SELECT id FROM jobs WHERE archive = ?")
                    : connection.prepare("SELECT id FROM jobs WHERE path = ? AND account = ? AND guid = ? "
                                         "ORDER BY number DESC LIMIT 1");
    row.bind(1, archive ? archive->id : wish.path);
    if (!archive) {
        row.bind(2, wish.account);
        row.bind(3, wish.guid);
    }
    return row.executeStep() ? std::optional(row.getColumn(0).getString()) : std::nullopt;
}

bool IsModelOf(SqliteStore::Lease& connection, const std::string& model, const std::string& guid)
{
    auto& row = connection.prepare("SELECT 1 FROM projects WHERE guid = ? AND parent = ? AND head <> ''");
    row.bind(1, model);
    row.bind(2, guid);
    return row.executeStep();
}

} // namespace

static Job JobOf(SQLite::Statement& row)
{
    Job job;
    job.id = row.getColumn(0).getString();
    job.guid = row.getColumn(1).getString();
    job.account = row.getColumn(2).getInt64();
    job.archive = row.getColumn(3).getString();
    job.path = row.getColumn(4).getString();
    job.name = row.getColumn(5).getString();
    job.oldModel = row.getColumn(6).getString();
    job.mode = row.getColumn(7).getInt();
    job.status = static_cast<JobStatus>(row.getColumn(8).getInt());
    job.percent = row.getColumn(9).getDouble();
    job.sort = row.getColumn(10).getInt();
    return job;
}

std::optional<Job> FindJob(SqliteStore::Lease& connection, const std::string& id)
{
    static const std::string query = std::string(columns) + " FROM jobs WHERE id = ?";
    auto& row = connection.prepare(query.c_str());
    row.bind(1, id);
    return row.executeStep() ? std::optional(JobOf(row)) : std::nullopt;
}

void LeaveConverting(SqliteStore::Lease& connection, const std::string& id)
{
    auto& update =
        connection.prepare("UPDATE projects SET status = (SELECT status_before FROM jobs WHERE id = ?1) "
                           "WHERE guid = (SELECT guid FROM jobs WHERE id = ?1) AND status = 3");
    update.bind(1, id);
    update.exec();
    connection.countChange();
}

SqliteStore::AddAnswer SqliteStore::addJob(Job& job, const std::string& md5)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    const auto archive = FinishedAt(connection, job);
    if (const auto standing = JobFor(connection, archive, job)) {
        job.id = *standing;
        return AddAnswer::added;
    }
    if (!archive)
        return AddAnswer::noArchive;
    if (archive->md5 != md5)
        return AddAnswer::otherDigest;
    if (!job.oldModel.empty() && !IsModelOf(connection, job.oldModel, job.guid))
        return AddAnswer::noOldModel;
    auto& insert =
        connection.prepare("INSERT INTO jobs(id, guid, account, archive, path, name, old_model, mode) "
                           "VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    insert.bind(1, job.id);
    insert.bind(2, job.guid);
    insert.bind(3, job.account);
    insert.bind(4, archive->id);
    insert.bind(5, job.path);
    insert.bind(6, job.name);
    insert.bind(7, job.oldModel);
    insert.bind(8, job.mode);
    insert.exec();
    transaction.commit();
    return AddAnswer::added;
}

std::vector<Job> SqliteStore::jobsOf(const std::string& guid)
{
    static const std::string query =
        std::string(columns) + " FROM jobs WHERE guid = ? AND status <> 2 ORDER BY number";
    auto connection = lease();
    auto& row = connection.prepare(query.c_str());
    row.bind(1, guid);
    std::vector<Job> jobs;
    while (row.executeStep())
        jobs.push_back(JobOf(row));
    return jobs;
}

std::optional<Job> SqliteStore::findJob(const std::string& id)
{
    auto connection = lease();
    return FindJob(connection, id);
}

std::optional<std::string> SqliteStore::removeJob(const std::string& id)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    const auto job = FindJob(connection, id);
    if (!job || job->status == JobStatus::done)
        return std::nullopt;
    if (job->status == JobStatus::running)
        LeaveConverting(connection, id);
    for (const auto& [text, key] : {std::pair("DELETE FROM jobs WHERE id = ?", id),
                                    std::pair("DELETE FROM archives WHERE id = ?", job->archive)}) {
        auto& remove = connection.prepare(text);
        remove.bind(1, key);
        remove.exec();
    }
    transaction.commit();
    return job->archive;
}

std::vector<ListedJob> SqliteStore::visibleJobs(std::int64_t account)
{
    static const std::string query =
        std::string(columns) +
        ", coalesce((SELECT name FROM projects p WHERE p.guid = jobs.guid), ''), "
        "CASE status WHEN 4 THEN coalesce((SELECT reason FROM conversion_failures f WHERE f.guid = jobs.guid "
        "AND f.id = jobs.id ORDER BY f.number DESC LIMIT 1), '') ELSE '' END, "
        "CASE WHEN status IN (2, 4) THEN ended ELSE 0 END, "
        "EXISTS (SELECT 1 FROM projects p JOIN accounts a ON a.id = ?1 WHERE p.guid = jobs.guid "
        "AND (p.owner = a.id OR p.organisation = a.organisation)) FROM jobs "
        "WHERE guid IN (SELECT p.guid FROM projects p JOIN accounts a ON a.id = ?1 "
        "WHERE p.owner = a.id OR p.organisation = a.organisation OR p.is_demo) "
        "ORDER BY CASE status WHEN 3 THEN 0 WHEN 6 THEN 1 ELSE 2 END, "
        "CASE WHEN status IN (3, 6) THEN number ELSE -ended END, number LIMIT 200";
    auto connection = lease();
    auto& row = connection.prepare(query.c_str());
    row.bind(1, account);
    std::vector<ListedJob> jobs;
    while (row.executeStep())
        jobs.push_back({JobOf(row), row.getColumn(11).getString(), row.getColumn(12).getString(),
                        row.getColumn(13).getInt64(), row.getColumn(14).getInt() != 0});
    return jobs;
}

bool SqliteStore::retryJob(const std::string& id)
{
    auto connection = lease();
    auto& update = connection.prepare(
        "UPDATE jobs SET status = 6, percent = 0, attempts = 0, ended = 0, "
        "number = (SELECT max(number) FROM jobs) + 1, "
        "old_model = coalesce((SELECT p.guid FROM projects p WHERE p.guid = jobs.old_model "
        "AND p.parent = jobs.guid AND p.head <> ''), '') "
        "WHERE id = ? AND status = 4 AND EXISTS (SELECT 1 FROM archives r WHERE r.id = jobs.archive)");
    update.bind(1, id);
    return update.exec() > 0;
}

std::vector<ConversionFailure> SqliteStore::failuresOf(const std::string& guid)
{
    auto connection = lease();
    auto& row =
        connection.prepare("SELECT id, name, reason, happened FROM conversion_failures WHERE guid = ? "
                           "ORDER BY number DESC LIMIT 100");
    row.bind(1, guid);
    std::vector<ConversionFailure> failures;
    while (row.executeStep())
        failures.push_back({row.getColumn(0).getString(), row.getColumn(1).getString(),
                            row.getColumn(2).getString(), row.getColumn(3).getInt64()});
    return failures;
}

std::vector<UsableModel> SqliteStore::modelsOf(const std::string& guid)
{
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT guid, name FROM projects WHERE parent = ? AND type = 'MODEL' AND head <> '' ORDER BY rowid");
    row.bind(1, guid);
    std::vector<UsableModel> models;
    while (row.executeStep())
        models.push_back({row.getColumn(0).getString(), row.getColumn(1).getString()});
    return models;
}

} // namespace server
