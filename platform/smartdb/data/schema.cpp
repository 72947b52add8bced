// SPDX-License-Identifier: MIT
#include "smartdb/data/schema.h"

#include "smartdb/failure.h"

#include <string>

#include <SQLiteCpp/SQLiteCpp.h>

namespace ZRSmartDB
{

namespace
{

// docs/project-folder.md tells what each of them means.
constexpr const char* tables = R"(
CREATE TABLE project(
    guid TEXT NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL,
    longitude REAL NOT NULL DEFAULT 0, latitude REAL NOT NULL DEFAULT 0, height REAL NOT NULL DEFAULT 0,
    iot_code TEXT NOT NULL DEFAULT '', proj4 TEXT NOT NULL DEFAULT '', template TEXT NOT NULL DEFAULT '',
    note TEXT NOT NULL DEFAULT '', change_counter INTEGER NOT NULL DEFAULT 1);
CREATE TABLE attributes(key TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE objects(
    guid TEXT PRIMARY KEY, name TEXT NOT NULL, link TEXT NOT NULL, text TEXT NOT NULL,
    x REAL NOT NULL DEFAULT 0, y REAL NOT NULL DEFAULT 0, z REAL NOT NULL DEFAULT 0,
    rotation REAL NOT NULL DEFAULT 0);
CREATE TABLE models(guid TEXT PRIMARY KEY, name TEXT NOT NULL, type TEXT NOT NULL, attributes TEXT NOT NULL);
)";

void SetVersion(SQLite::Database& database)
{
    database.exec("PRAGMA application_id = " + std::to_string(projectApplicationId));
    database.exec("PRAGMA user_version = " + std::to_string(currentSchema));
}

/// What the database says of its tables; indexes of its own making have no text.
std::string TablesOf(SQLite::Database& database)
{
    SQLite::Statement row(database, "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY name");
    std::string text;
    while (row.executeStep())
        text += row.getColumn(0).getString() + ';';
    return text;
}

const std::string& TablesOfFreshDatabase()
{
    static const std::string text = [] {
        SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        CreateSchema(database);
        return TablesOf(database);
    }();
    return text;
}

} // namespace

void CreateSchema(SQLite::Database& database)
{
    database.exec(tables);
    SetVersion(database);
}

int SchemaVersionOf(SQLite::Database& database)
{
    if (database.execAndGet("PRAGMA application_id").getInt() != projectApplicationId)
        throw Failure(localcode::damaged, "the database is no project");
    const int version = database.execAndGet("PRAGMA user_version").getInt();
    if (version > currentSchema)
        throw Failure(localcode::newer, "the project was written by a later version of this program");
    if (version < 1)
        throw Failure(localcode::damaged, "the project is of an impossible format");
    return version;
}

void RequireCurrentSchema(SQLite::Database& database)
{
    if (SchemaVersionOf(database) < currentSchema)
        throw Failure(localcode::older, "the project is of an older format and must be upgraded first");
    if (TablesOf(database) != TablesOfFreshDatabase())
        throw Failure(localcode::damaged, "the project's database has other tables than it should have");
}

void MigrateFromVersion1(SQLite::Database& database)
{
    if (database.execAndGet("SELECT count(*) FROM sqlite_schema WHERE type NOT IN ('table', 'index')")
            .getInt() != 0)
        throw Failure(localcode::damaged, "the project's database has other tables than it should have");
    database.exec("ALTER TABLE project RENAME TO project1; ALTER TABLE objects RENAME TO objects1; "
                  "ALTER TABLE models RENAME TO models1;");
    database.exec(tables);
    // The position stood as "longitude,latitude,height"; as a JSON array its parts can be taken by number.
    database.exec(R"(
INSERT INTO project(guid, name, type, longitude, latitude, height, proj4, template, change_counter)
    SELECT guid, name, type, CAST(json_extract('[' || position || ']', '$[0]') AS REAL),
        CAST(json_extract('[' || position || ']', '$[1]') AS REAL),
        CAST(json_extract('[' || position || ']', '$[2]') AS REAL), proj4, template, change_counter + 1
    FROM project1;
INSERT INTO attributes(key, value) SELECT entry.key, entry.value FROM project1, json_each(project1.attributes) AS entry;
INSERT INTO objects(guid, name, link, text) SELECT guid, '', link, text FROM objects1;
INSERT INTO models(guid, name, type, attributes) SELECT guid, name, type, attributes FROM models1;
DROP TABLE project1; DROP TABLE objects1; DROP TABLE models1;
)");
    SetVersion(database);
}

} // namespace ZRSmartDB
