// SPDX-License-Identifier: MIT
#include "samples/oldproject.h"

#include "smartdb/data/schema.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <nlohmann/json.hpp>

namespace samples
{

namespace
{

constexpr const char* firstSchema = R"(
CREATE TABLE project(guid TEXT NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL, position TEXT NOT NULL,
    proj4 TEXT NOT NULL, template TEXT NOT NULL, attributes TEXT NOT NULL, change_counter INTEGER NOT NULL);
CREATE TABLE objects(guid TEXT PRIMARY KEY, link TEXT NOT NULL, text TEXT NOT NULL);
CREATE TABLE models(guid TEXT PRIMARY KEY, name TEXT NOT NULL, type TEXT NOT NULL, attributes TEXT NOT NULL);
PRAGMA user_version = 1;
)";

} // namespace

void WriteOldProject(const std::filesystem::path& folder, const ZRSmartDB::ProjectHead& head,
                     const std::vector<ZRSmartDB::ModelData>& models)
{
    std::filesystem::create_directories(folder);
    SQLite::Database database((folder / "project.db").string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(firstSchema);
    database.exec("PRAGMA application_id = " + std::to_string(ZRSmartDB::projectApplicationId));
    const nlohmann::json attributes(head.attributes);
    SQLite::Statement insert(database, "INSERT INTO project VALUES(?, ?, ?, ?, ?, '', ?, 1)");
    insert.bind(1, head.guid);
    insert.bind(2, head.name);
    insert.bind(3, head.type);
    insert.bind(4, std::to_string(head.longitude) + ',' + std::to_string(head.latitude) + ',' +
                       std::to_string(head.height));
    insert.bind(5, head.proj4);
    insert.bind(6, attributes.dump());
    insert.exec();
    for (const auto& model : models) {
        SQLite::Statement row(database, "INSERT INTO models VALUES(?, ?, ?, '{}')");
        row.bind(1, model.guid);
        row.bind(2, model.name);
        row.bind(3, model.type);
        row.exec();
    }
}

} // namespace samples
