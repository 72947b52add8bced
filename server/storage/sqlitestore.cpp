// SPDX-License-Identifier: MIT
#include "server/storage/sqlitestore.h"

#include "server/storage/sqliteconnection.h"

#include <stdexcept>

namespace server
{

namespace
{

constexpr int schemaVersion = 2;

constexpr const char* schema = R"(
CREATE TABLE organisations(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, tree TEXT NOT NULL);
CREATE TABLE accounts(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, login_name TEXT NOT NULL,
    salt BLOB NOT NULL, hash BLOB NOT NULL, organisation INTEGER REFERENCES organisations(id));
CREATE TABLE sessions(token BLOB PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts(id),
    expires INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE applications(id TEXT PRIMARY KEY, may_upload INTEGER NOT NULL, reason TEXT NOT NULL);
CREATE TABLE projects(guid TEXT PRIMARY KEY, type TEXT NOT NULL, name TEXT NOT NULL, record TEXT NOT NULL,
    owner INTEGER NOT NULL REFERENCES accounts(id), organisation INTEGER REFERENCES organisations(id),
    is_demo INTEGER NOT NULL, parent TEXT NOT NULL, status INTEGER NOT NULL DEFAULT 1, head TEXT NOT NULL DEFAULT '');
CREATE INDEX projects_by_parent ON projects(parent) WHERE parent <> '';
CREATE TABLE revisions(guid TEXT NOT NULL REFERENCES projects(guid), root BLOB NOT NULL, manifest BLOB NOT NULL,
    layout BLOB NOT NULL, made INTEGER NOT NULL DEFAULT (unixepoch()), PRIMARY KEY(guid, root));
CREATE TABLE pieces(name BLOB PRIMARY KEY, pack INTEGER NOT NULL, offset INTEGER NOT NULL, length INTEGER NOT NULL)
    WITHOUT ROWID;
CREATE TABLE counters(name TEXT PRIMARY KEY, value INTEGER NOT NULL);
INSERT INTO counters VALUES('changes', 1);
)";

/// Version 2: clients upload.
constexpr const char* uploadSchema = R"(
CREATE TABLE uploads(guid TEXT PRIMARY KEY REFERENCES projects(guid), id TEXT NOT NULL, session BLOB NOT NULL,
    until INTEGER NOT NULL) WITHOUT ROWID;
)";

/// What the account ?1 sees, without models.
constexpr const char* visible = R"(SELECT p.guid FROM projects p JOIN accounts a ON a.id = ?1
    WHERE p.parent = '' AND (p.owner = a.id OR p.organisation = a.organisation OR p.is_demo))";

Account AccountOf(SQLite::Statement& row)
{
    Account account;
    account.id = row.getColumn(0).getInt64();
    account.name = row.getColumn(1).getString();
    account.loginName = row.getColumn(2).getString();
    account.password = {row.getColumn(3).getString(), row.getColumn(4).getString()};
    account.organisation = IdAt(row, 5);
    return account;
}

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

SqliteStore::SqliteStore(std::filesystem::path file)
    : m_file(std::move(file))
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    const int version = connection.database().execAndGet("PRAGMA user_version").getInt();
    if (version > schemaVersion)
        throw std::runtime_error("the server's database was written by a newer version");
    if (version < 1)
        connection.database().exec(schema);
    if (version < 2)
        connection.database().exec(uploadSchema);
    connection.database().exec("PRAGMA user_version = " + std::to_string(schemaVersion));
    transaction.commit();
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

std::optional<std::int64_t> SqliteStore::addAccount(const Account& account)
{
    auto connection = lease();
    auto& insert =
        connection.prepare("INSERT OR IGNORE INTO accounts(name, login_name, salt, hash, organisation) "
                           "VALUES(?, ?, ?, ?, ?)");
    insert.bind(1, account.name);
    insert.bind(2, account.loginName);
    BindBlob(insert, 3, account.password.salt);
    BindBlob(insert, 4, account.password.hash);
    BindId(insert, 5, account.organisation);
    if (insert.exec() == 0)
        return std::nullopt;
    return connection.database().getLastInsertRowid();
}

std::optional<Account> SqliteStore::findAccount(const std::string& name)
{
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT id, name, login_name, salt, hash, organisation FROM accounts WHERE name = ?");
    row.bind(1, name);
    if (!row.executeStep())
        return std::nullopt;
    return AccountOf(row);
}

std::vector<Account> SqliteStore::accounts()
{
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT id, name, login_name, salt, hash, organisation FROM accounts ORDER BY name");
    std::vector<Account> accounts;
    while (row.executeStep())
        accounts.push_back(AccountOf(row));
    return accounts;
}

bool SqliteStore::setPassword(const std::string& name, const PasswordHash& password)
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    auto& update = connection.prepare("UPDATE accounts SET salt = ?, hash = ? WHERE name = ?");
    BindBlob(update, 1, password.salt);
    BindBlob(update, 2, password.hash);
    update.bind(3, name);
    const bool isKnown = update.exec() > 0;
    auto& end =
        connection.prepare("DELETE FROM sessions WHERE account = (SELECT id FROM accounts WHERE name = ?)");
    end.bind(1, name);
    end.exec();
    transaction.commit();
    return isKnown;
}

void SqliteStore::addSession(const wire::Digest& token, std::int64_t account, std::int64_t expires)
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    connection.prepare("DELETE FROM sessions WHERE expires <= unixepoch()").exec();
    auto& insert = connection.prepare("INSERT INTO sessions(token, account, expires) VALUES(?, ?, ?)");
    BindDigest(insert, 1, token);
    insert.bind(2, account);
    insert.bind(3, expires);
    insert.exec();
    transaction.commit();
}

std::optional<Session> SqliteStore::findSession(const wire::Digest& token, std::int64_t now)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT a.id, a.name, a.login_name, s.expires FROM sessions s "
                                   "JOIN accounts a ON a.id = s.account WHERE s.token = ? AND s.expires > ?");
    BindDigest(row, 1, token);
    row.bind(2, now);
    if (!row.executeStep())
        return std::nullopt;
    return Session{row.getColumn(0).getInt64(), row.getColumn(1).getString(), row.getColumn(2).getString(),
                   row.getColumn(3).getInt64()};
}

void SqliteStore::removeSession(const wire::Digest& token)
{
    auto connection = lease();
    auto& remove = connection.prepare("DELETE FROM sessions WHERE token = ?");
    BindDigest(remove, 1, token);
    remove.exec();
}

std::int64_t SqliteStore::putOrganisation(const std::string& name, const std::string& tree)
{
    auto connection = lease();
    auto& put = connection.prepare("INSERT INTO organisations(name, tree) VALUES(?, ?) "
                                   "ON CONFLICT(name) DO UPDATE SET tree = excluded.tree RETURNING id");
    put.bind(1, name);
    put.bind(2, tree);
    put.executeStep();
    return put.getColumn(0).getInt64();
}

std::string SqliteStore::organisationTree(std::int64_t account)
{
    auto connection = lease();
    auto& row =
        connection.prepare("SELECT o.tree FROM organisations o JOIN accounts a ON a.organisation = o.id "
                           "WHERE a.id = ?");
    row.bind(1, account);
    return row.executeStep() ? row.getColumn(0).getString() : std::string();
}

void SqliteStore::putApplication(const std::string& id, bool mayUpload, const std::string& reason)
{
    auto connection = lease();
    auto& put =
        connection.prepare("INSERT OR REPLACE INTO applications(id, may_upload, reason) VALUES(?, ?, ?)");
    put.bind(1, id);
    put.bind(2, mayUpload ? 1 : 0);
    put.bind(3, reason);
    put.exec();
}

std::string SqliteStore::uploadRefusal(const std::string& id)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT may_upload, reason FROM applications WHERE id = ?");
    row.bind(1, id);
    // Applications that nobody has said anything about are not held back.
    if (!row.executeStep() || row.getColumn(0).getInt() != 0)
        return {};
    return row.getColumn(1).getString();
}

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
                                    ") SELECT guid, status, head FROM projects "
                                    "WHERE guid IN seen OR (parent <> '' AND parent IN seen)";
    auto connection = lease();
    auto& row = connection.prepare(text.c_str());
    row.bind(1, account);
    std::vector<ProjectState> states;
    while (row.executeStep())
        states.push_back({row.getColumn(0).getString(), StatusOf(row.getColumn(1).getInt()),
                          row.getColumn(2).getString()});
    return states;
}

std::optional<std::pair<Project, ProjectState>> SqliteStore::findProject(std::int64_t account,
                                                                         const std::string& guid)
{
    // A model is seen by whoever sees the building project that it belongs to.
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT p.guid, p.type, p.name, p.record, p.owner, p.organisation, p.is_demo, p.parent, p.status, "
        "p.head "
        "FROM projects p LEFT JOIN projects m ON m.guid = p.parent JOIN accounts a ON a.id = ?1 WHERE p.guid "
        "= ?2 AND "
        "(coalesce(m.owner, p.owner) = a.id OR coalesce(m.organisation, p.organisation) = a.organisation "
        "OR coalesce(m.is_demo, p.is_demo))");
    row.bind(1, account);
    row.bind(2, guid);
    if (!row.executeStep())
        return std::nullopt;
    ProjectState state{guid, StatusOf(row.getColumn(8).getInt()), row.getColumn(9).getString()};
    return std::pair(ProjectOf(row), std::move(state));
}

void SqliteStore::putProject(const Project& project)
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
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

void SqliteStore::setStatus(const std::string& guid, ProjectStatus status)
{
    auto connection = lease();
    SQLite::Transaction transaction(connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    auto& update = connection.prepare("UPDATE projects SET status = ? WHERE guid = ?");
    update.bind(1, static_cast<int>(status));
    update.bind(2, guid);
    update.exec();
    connection.countChange();
    transaction.commit();
}

} // namespace server
