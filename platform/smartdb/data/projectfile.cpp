// SPDX-License-Identifier: MIT
#include "smartdb/data/projectfile.h"

#include "smartdb/data/databaseaccess.h"
#include "smartdb/data/schema.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"
#include "wire/manifest.h"
#include "wire/projectfolder.h"

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr std::string_view draftEnding = ".tmp";
constexpr int writeAttempts = 5;
const std::string projectPrefix = "proj_";

json JsonObjectOf(const std::string& text)
{
    auto value = json::parse(text, nullptr, false);
    return value.is_object() ? value : json::object();
}

TextMap TextMapOf(const std::string& text)
{
    const auto object = JsonObjectOf(text);
    TextMap map;
    for (const auto& [key, value] : object.items()) {
        if (value.is_string())
            map[key] = value.get<std::string>();
    }
    return map;
}

std::string JsonTextOf(const TextMap& map)
{
    return json(map).dump(-1, ' ', false, json::error_handler_t::replace);
}

template<class Value>
void WriteColumn(SQLite::Database& database, const char* column, Value ProjectHead::*member,
                 const ProjectHead& head, const ProjectHead* before)
{
    if (before != nullptr && before->*member == head.*member)
        return;
    SQLite::Statement update(database, std::string("UPDATE project SET ") + column + " = ?");
    update.bind(1, head.*member);
    update.exec();
}

void WriteAttributes(SQLite::Database& database, const TextMap& attributes, const TextMap* before)
{
    if (before == nullptr)
        database.exec("DELETE FROM attributes");
    SQLite::Statement put(database, "INSERT OR REPLACE INTO attributes(key, value) VALUES(?, ?)");
    for (const auto& [key, value] : attributes) {
        if (before != nullptr && before->contains(key) && before->at(key) == value)
            continue;
        put.bind(1, key);
        put.bind(2, value);
        put.exec();
        put.reset();
    }
}

void WriteHead(SQLite::Database& database, const ProjectHead& head, const ProjectHead* before)
{
    WriteColumn(database, "name", &ProjectHead::name, head, before);
    WriteColumn(database, "type", &ProjectHead::type, head, before);
    WriteColumn(database, "longitude", &ProjectHead::longitude, head, before);
    WriteColumn(database, "latitude", &ProjectHead::latitude, head, before);
    WriteColumn(database, "height", &ProjectHead::height, head, before);
    WriteColumn(database, "iot_code", &ProjectHead::iotCode, head, before);
    WriteColumn(database, "proj4", &ProjectHead::proj4, head, before);
    WriteColumn(database, "note", &ProjectHead::note, head, before);
    WriteAttributes(database, head.attributes, before != nullptr ? &before->attributes : nullptr);
}

void WriteObjects(SQLite::Database& database, const std::vector<ObjectData>& objects)
{
    database.exec("DELETE FROM objects");
    SQLite::Statement insert(database, "INSERT INTO objects(guid, name, link, text, x, y, z, rotation) "
                                       "VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    for (const auto& object : objects) {
        insert.bind(1, object.guid);
        insert.bind(2, object.name);
        insert.bind(3, object.link);
        insert.bind(4, object.text);
        insert.bind(5, object.position[0]);
        insert.bind(6, object.position[1]);
        insert.bind(7, object.position[2]);
        insert.bind(8, object.rotation);
        insert.exec();
        insert.reset();
    }
}

void WriteObjectTexts(SQLite::Database& database, const std::map<std::string, std::string>& texts)
{
    SQLite::Statement update(database, "UPDATE objects SET text = ? WHERE guid = ?");
    for (const auto& [guid, text] : texts) {
        update.bind(1, text);
        update.bind(2, guid);
        update.exec();
        update.reset();
    }
}

void WriteModels(SQLite::Database& database, const ProjectChange& change)
{
    for (const auto& guid : change.removedModels) {
        SQLite::Statement remove(database, "DELETE FROM models WHERE guid = ?");
        remove.bind(1, guid);
        remove.exec();
    }
    for (const auto& model : change.putModels) {
        SQLite::Statement put(database, "INSERT OR REPLACE INTO models(guid, name, type, attributes) "
                                        "VALUES(?, ?, ?, ?)");
        put.bind(1, model.guid);
        put.bind(2, model.name);
        put.bind(3, model.type);
        put.bind(4, JsonTextOf(model.attributes));
        put.exec();
    }
}

std::int64_t ChangeCounterIn(SQLite::Database& database)
{
    static_cast<void>(SchemaVersionOf(database));
    return database.execAndGet("SELECT change_counter FROM project").getInt64();
}

void CreateDatabase(const std::filesystem::path& file, const ProjectHead& head)
{
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL");
    SQLite::Transaction transaction(database);
    CreateSchema(database);
    SQLite::Statement insert(database, "INSERT INTO project(guid, name, type) VALUES(?, '', '')");
    insert.bind(1, head.guid);
    insert.exec();
    WriteHead(database, head, nullptr);
    transaction.commit();
}

} // namespace

bool IsProjectHere(const std::filesystem::path& projectFolder)
{
    const auto format = ProjectFile::formatOf(projectFolder);
    return format != ProjectFile::Format::none && format != ProjectFile::Format::damaged;
}

bool IsProjectKey(const std::string& guid)
{
    return !guid.empty() && guid.find('/') == std::string::npos &&
           wire::PathRefusal(projectPrefix + guid).empty();
}

std::filesystem::path ProjectFolder(const std::filesystem::path& dataFolder, const std::string& guid)
{
    if (!IsProjectKey(guid))
        throw Failure(localcode::badInput, "no project can have the key \"" + guid + '"');
    return dataFolder / PathOfUtf8(projectPrefix + guid);
}

std::filesystem::path DatabaseIn(const std::filesystem::path& projectFolder)
{
    return projectFolder / std::string(wire::projectDatabaseName);
}

ProjectFile::Format ProjectFile::formatOf(const std::filesystem::path& folder)
{
    std::error_code missing;
    if (!std::filesystem::exists(DatabaseIn(folder), missing))
        return Format::none;
    try {
        auto database = OpenDatabase(DatabaseIn(folder));
        return SchemaVersionOf(database) == currentSchema ? Format::current : Format::older;
    } catch (const Failure& failure) {
        return failure.code() == localcode::newer ? Format::newer : Format::damaged;
    } catch (const std::exception&) {
        return Format::damaged;
    }
}

void ProjectFile::create(const std::filesystem::path& folder, const ProjectHead& head)
{
    const auto file = DatabaseIn(folder);
    if (std::filesystem::exists(file))
        throw Failure(localcode::exists, "the project exists already: " + folder.string());
    std::error_code error;
    const bool isNew = std::filesystem::create_directories(folder, error);
    // Under its own name the database is complete from the start, whenever this process may be killed.
    const std::filesystem::path draft = file.string() + std::string(draftEnding);
    try {
        std::filesystem::remove(draft, error);
        ReportingFailures([&] { CreateDatabase(draft, head); });
        std::filesystem::rename(draft, file);
    } catch (const std::exception&) {
        std::filesystem::remove_all(isNew ? folder : draft, error);
        throw;
    }
}

ProjectFile::ProjectFile(const std::filesystem::path& folder)
    : m_database(std::make_unique<SQLite::Database>(OpenDatabase(DatabaseIn(folder))))
{
}

ProjectFile::~ProjectFile() = default;

void ProjectFile::requireCurrent()
{
    if (!m_isCurrent)
        RequireCurrentSchema(*m_database);
    m_isCurrent = true;
}

ProjectHead ProjectFile::readHead()
{
    return ReportingFailures([&] {
        SQLite::Transaction transaction(*m_database, SQLite::TransactionBehavior::DEFERRED);
        requireCurrent();
        // One statement, since thousands of projects are opened one after the other when the program starts.
        SQLite::Statement row(*m_database,
                              "SELECT guid, name, type, longitude, latitude, height, iot_code, proj4, note, "
                              "change_counter, (SELECT json_group_object(key, value) FROM attributes), "
                              "(SELECT json_group_array(guid) FROM models WHERE type <> '3DTILES'), "
                              "(SELECT count(*) FROM objects) FROM project");
        if (!row.executeStep())
            throw Failure(localcode::damaged, "the project's database has lost its project");
        ProjectHead head;
        head.guid = row.getColumn(0).getString();
        head.name = row.getColumn(1).getString();
        head.type = row.getColumn(2).getString();
        head.longitude = row.getColumn(3).getDouble();
        head.latitude = row.getColumn(4).getDouble();
        head.height = row.getColumn(5).getDouble();
        head.iotCode = row.getColumn(6).getString();
        head.proj4 = row.getColumn(7).getString();
        head.note = row.getColumn(8).getString();
        head.changeCounter = row.getColumn(9).getInt64();
        head.attributes = TextMapOf(row.getColumn(10).getString());
        for (const auto& guid : json::parse(row.getColumn(11).getString()))
            head.modelGuids.push_back(guid.get<std::string>());
        head.objectCount = row.getColumn(12).getInt64();
        return head;
    });
}

std::string ProjectFile::readTemplate()
{
    return ReportingFailures([&] {
        requireCurrent();
        return m_database->execAndGet("SELECT template FROM project").getString();
    });
}

std::string ProjectFile::readGuid()
{
    return ReportingFailures([&] {
        static_cast<void>(SchemaVersionOf(*m_database));
        return m_database->execAndGet("SELECT guid FROM project").getString();
    });
}

std::int64_t ProjectFile::readChangeCounter()
{
    return ReportingFailures([&] { return ChangeCounterIn(*m_database); });
}

std::int64_t ProjectFile::readChangeCounterOf(const std::filesystem::path& database)
{
    return ReportingFailures([&] {
        auto copy = OpenDatabase(database);
        return ChangeCounterIn(copy);
    });
}

std::vector<ObjectData> ProjectFile::readObjects()
{
    return ReportingFailures([&] {
        requireCurrent();
        SQLite::Statement row(*m_database,
                              "SELECT guid, name, link, text, x, y, z, rotation FROM objects ORDER BY rowid");
        std::vector<ObjectData> objects;
        while (row.executeStep()) {
            objects.push_back(
                {row.getColumn(0).getString(),
                 row.getColumn(1).getString(),
                 row.getColumn(2).getString(),
                 row.getColumn(3).getString(),
                 {row.getColumn(4).getDouble(), row.getColumn(5).getDouble(), row.getColumn(6).getDouble()},
                 row.getColumn(7).getDouble()});
        }
        return objects;
    });
}

std::vector<ModelData> ProjectFile::readModels()
{
    return ReportingFailures([&] {
        requireCurrent();
        SQLite::Statement row(*m_database, "SELECT guid, name, type, attributes FROM models ORDER BY rowid");
        std::vector<ModelData> models;
        // Models that came by one way have the same attributes; taking these apart costs more than all the
        // rest.
        std::string known;
        TextMap attributes;
        while (row.executeStep()) {
            if (auto text = row.getColumn(3).getString(); models.empty() || text != known) {
                attributes = TextMapOf(text);
                known = std::move(text);
            }
            models.push_back({row.getColumn(0).getString(), row.getColumn(1).getString(),
                              row.getColumn(2).getString(), attributes});
        }
        return models;
    });
}

TextMap ProjectFile::readModelTypes()
{
    return ReportingFailures([&] {
        static_cast<void>(SchemaVersionOf(*m_database));
        SQLite::Statement row(*m_database, "SELECT guid, type FROM models");
        TextMap types;
        while (row.executeStep())
            types[row.getColumn(0).getString()] = row.getColumn(1).getString();
        return types;
    });
}

std::vector<std::string> ProjectFile::readLinks()
{
    return ReportingFailures([&] {
        static_cast<void>(SchemaVersionOf(*m_database));
        SQLite::Statement row(*m_database, "SELECT DISTINCT link FROM objects WHERE link <> ''");
        std::vector<std::string> links;
        while (row.executeStep())
            links.push_back(row.getColumn(0).getString());
        return links;
    });
}

std::int64_t ProjectFile::write(const ProjectChange& change)
{
    return ReportingFailures([&] {
        for (int attempt = 0; attempt < writeAttempts; ++attempt) {
            if (const auto counter = tryWrite(change))
                return *counter;
            // An update has put another database into this one's place.
            m_database = std::make_unique<SQLite::Database>(OpenDatabase(m_database->getFilename()));
            m_isCurrent = false;
        }
        throw Failure(localcode::cannotWrite, "the project is being replaced again and again");
    });
}

/// Nothing when the database does not stand in its place any more.
std::optional<std::int64_t> ProjectFile::tryWrite(const ProjectChange& change)
{
    try {
        m_database->exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL");
        SQLite::Transaction transaction(*m_database, SQLite::TransactionBehavior::IMMEDIATE);
        // Nobody moves a database while it is locked.
        if (HasMoved(*m_database))
            return std::nullopt;
        requireCurrent();
        writeChange(change);
        m_database->exec("UPDATE project SET change_counter = change_counter + 1");
        const auto counter = m_database->execAndGet("SELECT change_counter FROM project").getInt64();
        transaction.commit();
        return counter;
    } catch (const SQLite::Exception&) {
        if (HasMoved(*m_database))
            return std::nullopt;
        throw;
    }
}

void ProjectFile::writeChange(const ProjectChange& change)
{
    if (change.head != nullptr)
        WriteHead(*m_database, *change.head, change.headBefore);
    if (change.propertyTemplate != nullptr) {
        SQLite::Statement update(*m_database, "UPDATE project SET template = ?");
        update.bind(1, *change.propertyTemplate);
        update.exec();
    }
    if (change.objects != nullptr)
        WriteObjects(*m_database, *change.objects);
    WriteObjectTexts(*m_database, change.objectTexts);
    WriteModels(*m_database, change);
}

ProjectHold::ProjectHold(const std::filesystem::path& folder)
    : m_database(std::make_unique<SQLite::Database>(OpenDatabase(DatabaseIn(folder))))
{
    ReportingFailures([&] { m_database->exec("BEGIN IMMEDIATE"); });
}

ProjectHold::~ProjectHold() = default;

} // namespace ZRSmartDB
