// SPDX-License-Identifier: MIT
// Projects and their states.
#include "server/storage/sqliteconnection.h"

namespace server
{

namespace
{

/// What the account ?1 sees, without models.
constexpr const char* visible = R"(SELECT p.guid FROM projects p JOIN accounts a ON a.id = ?1
    WHERE p.parent = '' AND (p.owner = a.id OR p.organisation = a.organisation OR p.is_demo))";

Project ProjectOf(SQLite::Statement& row)
{
    Project project;
    project.guid = row.getColumn(0).getString();
    project.type = row.getColumn(1).getString();
    project.name = row.getColumn(2).getString();
    project.record = row.getColumn(3).getString();
    project.owner = row.getColumn(4).getInt64();
    project.organisation = IdAt(row, 5);
    project.isDemo = row.getColumn(6).getInt() != 0;
    project.parent = row.getColumn(7).getString();
    return project;
}

ProjectStatus StatusOf(int number)
{
    switch (number) {
    case -1:
        return ProjectStatus::uploadFailed;
    case 0:
        return ProjectStatus::uploading;
    case 3:
        return ProjectStatus::converting;
    default:
        return ProjectStatus::normal;
    }
}

} // namespace

std::int64_t SqliteStore::changeCounter()
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT value FROM counters WHERE name = 'changes'");
    return row.executeStep() ? row.getColumn(0).getInt64() : 0;
}

std::vector<Project> SqliteStore::visibleProjects(std::int64_t account)
{
    static const std::string text =
        std::string("SELECT guid, type, name, record, owner, organisation, is_demo, parent "
                    "FROM projects WHERE guid IN (") +
        visible + ") ORDER BY rowid";
    auto connection = lease();
    auto& row = connection.prepare(text.c_str());
    row.bind(1, account);
    std::vector<Project> projects;
    while (row.executeStep())
        projects.push_back(ProjectOf(row));
    return projects;
}

std::vector<ProjectState> SqliteStore::visibleStates(std::int64_t account)
{
    static const std::string text = std::string("WITH seen AS (") + visible +
                                    ") SELECT guid, status, head, revised FROM projects "
                                    "WHERE guid IN seen OR (parent <> '' AND parent IN seen)";
    auto connection = lease();
    auto& row = connection.prepare(text.c_str());
    row.bind(1, account);
    std::vector<ProjectState> states;
    while (row.executeStep())
        states.push_back({row.getColumn(0).getString(), StatusOf(row.getColumn(1).getInt()),
                          row.getColumn(2).getString(), row.getColumn(3).getInt64()});
    return states;
}

std::optional<std::pair<Project, ProjectState>> SqliteStore::findProject(std::int64_t account,
                                                                         const std::string& guid)
{
    // A model is seen by whoever sees the building project that it belongs to.
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT p.guid, p.type, p.name, p.record, p.owner, p.organisation, p.is_demo, p.parent, p.status, "
        "p.head, p.revised "
        "FROM projects p LEFT JOIN projects m ON m.guid = p.parent JOIN accounts a ON a.id = ?1 "
        "WHERE p.guid = ?2 AND CASE WHEN m.guid IS NULL "
        "THEN p.owner = a.id OR p.organisation = a.organisation OR p.is_demo "
        "ELSE m.owner = a.id OR m.organisation = a.organisation OR m.is_demo END");
    row.bind(1, account);
    row.bind(2, guid);
    if (!row.executeStep())
        return std::nullopt;
    ProjectState state{guid, StatusOf(row.getColumn(8).getInt()), row.getColumn(9).getString(),
                       row.getColumn(10).getInt64()};
    return std::pair(ProjectOf(row), std::move(state));
}

bool MayChange(SqliteStore::Lease& connection, std::int64_t account, const std::string& guid)
{
    auto& row = connection.prepare(
        "SELECT 1 FROM projects p LEFT JOIN projects b ON b.guid = p.parent JOIN accounts a ON a.id = ?1 "
        "WHERE p.guid = ?2 AND CASE WHEN b.guid IS NULL THEN p.owner = a.id OR p.organisation = "
        "a.organisation "
        "ELSE b.owner = a.id OR b.organisation = a.organisation END");
    row.bind(1, account);
    row.bind(2, guid);
    return row.executeStep();
}

bool SqliteStore::mayChange(std::int64_t account, const std::string& guid)
{
    auto connection = lease();
    return MayChange(connection, account, guid);
}

void SqliteStore::putProject(const Project& project)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& put = connection.prepare(
        "INSERT INTO projects(guid, type, name, record, owner, organisation, is_demo, parent) "
        "VALUES(?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT(guid) DO UPDATE SET type = excluded.type, name = "
        "excluded.name, "
        "record = excluded.record, owner = excluded.owner, organisation = excluded.organisation, "
        "is_demo = excluded.is_demo, parent = excluded.parent");
    put.bind(1, project.guid);
    put.bind(2, project.type);
    put.bind(3, project.name);
    put.bind(4, project.record);
    put.bind(5, project.owner);
    BindId(put, 6, project.organisation);
    put.bind(7, project.isDemo ? 1 : 0);
    put.bind(8, project.parent);
    put.exec();
    connection.countChange();
    transaction.commit();
}

void SqliteStore::setName(const std::string& guid, const std::string& name)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& update = connection.prepare("UPDATE projects SET name = ? WHERE guid = ?");
    update.bind(1, name);
    update.bind(2, guid);
    update.exec();
    connection.countChange();
    transaction.commit();
}

void SqliteStore::setStatus(const std::string& guid, ProjectStatus status)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& update = connection.prepare("UPDATE projects SET status = ? WHERE guid = ?");
    update.bind(1, static_cast<int>(status));
    update.bind(2, guid);
    update.exec();
    connection.countChange();
    transaction.commit();
}

} // namespace server
