// SPDX-License-Identifier: MIT
#include "server/storage/sqliteschema.h"

#include <array>
#include <stdexcept>
#include <string>

#include <SQLiteCpp/SQLiteCpp.h>

namespace server
{

namespace
{

constexpr const char* accountsAndProjects = R"(
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

/// Tickets and browsers end with the session that they came from, whatever ends that.
constexpr const char* browsers = R"(
CREATE TABLE tickets(name BLOB PRIMARY KEY, session BLOB NOT NULL REFERENCES sessions(token) ON DELETE CASCADE,
    expires INTEGER NOT NULL, is_used INTEGER NOT NULL DEFAULT 0) WITHOUT ROWID;
CREATE INDEX tickets_by_session ON tickets(session);
CREATE TABLE browsers(cookie BLOB PRIMARY KEY, session BLOB NOT NULL REFERENCES sessions(token) ON DELETE CASCADE,
    expires INTEGER NOT NULL) WITHOUT ROWID;
CREATE INDEX browsers_by_session ON browsers(session);
ALTER TABLE projects ADD COLUMN revised INTEGER NOT NULL DEFAULT 0;
UPDATE projects SET revised = coalesce((SELECT max(made) FROM revisions r WHERE r.guid = projects.guid), 0);
)";

/// One client at a time has a project, as long as it keeps sending.
constexpr const char* uploads = R"(
CREATE TABLE uploads(guid TEXT PRIMARY KEY REFERENCES projects(guid), id TEXT NOT NULL, session BLOB NOT NULL,
    until INTEGER NOT NULL) WITHOUT ROWID;
)";

/// Archives that arrive, what is to be made of them, and what went wrong. A path is given up by an archive that another one
/// takes the place of while a job still uses it.
constexpr const char* conversions = R"(
CREATE TABLE archives(id TEXT PRIMARY KEY, account INTEGER NOT NULL REFERENCES accounts(id),
    guid TEXT NOT NULL REFERENCES projects(guid), path TEXT NOT NULL, size INTEGER NOT NULL,
    received INTEGER NOT NULL DEFAULT 0, md5 TEXT NOT NULL DEFAULT '', touched INTEGER NOT NULL) WITHOUT ROWID;
CREATE UNIQUE INDEX archives_by_path ON archives(account, path) WHERE path <> '';
CREATE TABLE jobs(number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL UNIQUE,
    guid TEXT NOT NULL REFERENCES projects(guid), account INTEGER NOT NULL REFERENCES accounts(id),
    archive TEXT NOT NULL, path TEXT NOT NULL, name TEXT NOT NULL, old_model TEXT NOT NULL, mode INTEGER NOT NULL,
    status INTEGER NOT NULL DEFAULT 6, percent REAL NOT NULL DEFAULT 0, attempts INTEGER NOT NULL DEFAULT 0,
    worker TEXT NOT NULL DEFAULT '', until INTEGER NOT NULL DEFAULT 0, status_before INTEGER NOT NULL DEFAULT 1,
    ended INTEGER NOT NULL DEFAULT 0);
CREATE INDEX jobs_by_project ON jobs(guid);
CREATE INDEX jobs_by_status ON jobs(status, number);
CREATE TABLE conversion_failures(number INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT NOT NULL, guid TEXT NOT NULL,
    name TEXT NOT NULL, reason TEXT NOT NULL, happened INTEGER NOT NULL);
CREATE INDEX failures_by_project ON conversion_failures(guid, number);
)";

/// What each version added to the one before it; a step that has been released stays as it is.
constexpr std::array steps{accountsAndProjects, browsers, uploads, conversions};

} // namespace

void BringSchemaUpToDate(SQLite::Database& database)
{
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    const int version = database.execAndGet("PRAGMA user_version").getInt();
    if (version < 0 || static_cast<std::size_t>(version) > steps.size())
        throw std::runtime_error("the server's database was written by a newer version");
    for (auto step = static_cast<std::size_t>(version); step < steps.size(); ++step)
        database.exec(steps[step]);
    database.exec("PRAGMA user_version = " + std::to_string(steps.size()));
    transaction.commit();
}

} // namespace server
