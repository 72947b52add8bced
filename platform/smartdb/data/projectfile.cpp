// SPDX-License-Identifier: MIT
#include "smartdb/data/projectfile.h"

#include "smartdb/data/schema.h"
#include "wire/projectfolder.h"

#include <stdexcept>

#include <SQLiteCpp/SQLiteCpp.h>
#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr int busyMilliseconds = 5000;

std::filesystem::path DatabaseIn(const std::filesystem::path& folder)
{
    return folder / std::string(wire::projectDatabaseName);
}

template<class Work>
auto Guarded(Work&& work) -> decltype(work())
{
    try {
        return work();
    } catch (const ProjectFileError&) {
        throw;
    } catch (const std::exception& exception) {
        throw ProjectFileError(std::string("the project's database cannot be used: ") + exception.what());
    }
}

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
    json object = json::object();
    for (const auto& [key, value] : map)
        object[key] = value;
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

ProjectFile::Format FormatOfDatabase(SQLite::Database& database)
{
    const int version = database.execAndGet("PRAGMA user_version").getInt();
    const int application = database.execAndGet("PRAGMA application_id").getInt();
    if (application != projectApplicationId || version < 1)
        return ProjectFile::Format::damaged;
    if (version > currentSchema)
        return ProjectFile::Format::newer;
    return version == currentSchema ? ProjectFile::Format::current : ProjectFile::Format::older;
}

void WriteHead(SQLite::Database& database, const ProjectHead& head)
{
    SQLite::Statement row(database,
                          "UPDATE project SET name = ?, type = ?, longitude = ?, latitude = ?, height = ?, "
                          "iot_code = ?, proj4 = ?, note = ?");
    row.bind(1, head.name);
    row.bind(2, head.type);
    row.bind(3, head.longitude);
    row.bind(4, head.latitude);
    row.bind(5, head.height);
    row.bind(6, head.iotCode);
    row.bind(7, head.proj4);
    row.bind(8, head.note);
    row.exec();
    database.exec("DELETE FROM attributes");
    SQLite::Statement insert(database, "INSERT INTO attributes(key, value) VALUES(?, ?)");
    for (const auto& [key, value] : head.attributes) {
        insert.bind(1, key);
        insert.bind(2, value);
        insert.exec();
        insert.reset();
    }
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

/// Removes a folder that was begun and not finished.
class HalfFolder
{
public:
    explicit HalfFolder(std::filesystem::path folder)
        : m_folder(std::move(folder))
    {
    }
    HalfFolder(const HalfFolder&) = delete;
    HalfFolder& operator=(const HalfFolder&) = delete;
    ~HalfFolder()
    {
        std::error_code ignored;
        if (!m_isFinished)
            std::filesystem::remove_all(m_folder, ignored);
    }
    void finish() { m_isFinished = true; }

private:
    std::filesystem::path m_folder;
    bool m_isFinished = false;
};

} // namespace

std::filesystem::path ProjectFolder(const std::filesystem::path& dataFolder, const std::string& guid)
{
    return dataFolder / std::filesystem::u8path("proj_" + guid);
}

ProjectFile::Format ProjectFile::formatOf(const std::filesystem::path& folder)
{
    const auto file = DatabaseIn(folder);
    std::error_code missing;
    if (!std::filesystem::exists(file, missing))
        return Format::none;
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE, busyMilliseconds);
        return FormatOfDatabase(database);
    } catch (const std::exception&) {
        return Format::damaged;
    }
}

void ProjectFile::create(const std::filesystem::path& folder, const ProjectHead& head)
{
    Guarded([&] {
        if (std::filesystem::exists(folder))
            throw ProjectFileError("the project exists already");
        std::filesystem::create_directories(folder);
        HalfFolder half(folder);
        SQLite::Database database(DatabaseIn(folder).string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec("PRAGMA journal_mode=WAL");
        SQLite::Transaction transaction(database);
        CreateSchema(database);
        SQLite::Statement insert(database, "INSERT INTO project(guid, name, type) VALUES(?, '', '')");
        insert.bind(1, head.guid);
        insert.exec();
        WriteHead(database, head);
        transaction.commit();
        half.finish();
    });
}

ProjectFile::ProjectFile(const std::filesystem::path& folder)
{
    Guarded([&] {
        m_database = std::make_unique<SQLite::Database>(DatabaseIn(folder).string(), SQLite::OPEN_READWRITE,
                                                        busyMilliseconds);
    });
}

ProjectFile::~ProjectFile() = default;

ProjectHead ProjectFile::readHead()
{
    return Guarded([&] {
        // One statement, since thousands of projects are opened one after the other when the program starts.
        SQLite::Statement row(*m_database,
                              "SELECT guid, name, type, longitude, latitude, height, iot_code, proj4, note, "
                              "change_counter, (SELECT json_group_object(key, value) FROM attributes), "
                              "(SELECT json_group_array(guid) FROM models WHERE type = 'MODEL'), "
                              "(SELECT count(*) FROM objects), "
                              "(SELECT user_version FROM pragma_user_version) FROM project");
        if (!row.executeStep())
            throw ProjectFileError("the project's database has lost its project");
        if (row.getColumn(13).getInt() != currentSchema)
            throw ProjectFileError("the project is of another format");
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
    return Guarded([&] { return m_database->execAndGet("SELECT template FROM project").getString(); });
}

std::int64_t ProjectFile::readChangeCounter()
{
    return Guarded([&] { return m_database->execAndGet("SELECT change_counter FROM project").getInt64(); });
}

std::vector<ObjectData> ProjectFile::readObjects()
{
    return Guarded([&] {
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
    return Guarded([&] {
        SQLite::Statement row(*m_database, "SELECT guid, name, type, attributes FROM models ORDER BY rowid");
        std::vector<ModelData> models;
        while (row.executeStep()) {
            models.push_back({row.getColumn(0).getString(), row.getColumn(1).getString(),
                              row.getColumn(2).getString(), TextMapOf(row.getColumn(3).getString())});
        }
        return models;
    });
}

std::int64_t ProjectFile::write(const ProjectChange& change)
{
    return Guarded([&] {
        m_database->exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL");
        SQLite::Transaction transaction(*m_database, SQLite::TransactionBehavior::IMMEDIATE);
        if (change.head != nullptr)
            WriteHead(*m_database, *change.head);
        if (change.propertyTemplate != nullptr) {
            SQLite::Statement update(*m_database, "UPDATE project SET template = ?");
            update.bind(1, *change.propertyTemplate);
            update.exec();
        }
        if (change.objects != nullptr)
            WriteObjects(*m_database, *change.objects);
        WriteModels(*m_database, change);
        m_database->exec("UPDATE project SET change_counter = change_counter + 1");
        const auto counter = m_database->execAndGet("SELECT change_counter FROM project").getInt64();
        transaction.commit();
        return counter;
    });
}

void ProjectFile::upgrade(const std::filesystem::path& folder)
{
    Guarded([&] {
        const auto file = DatabaseIn(folder);
        const auto copy = file.string() + ".before-upgrade.tmp";
        {
            // Everything that is still in the log belongs into the file before the file is copied.
            SQLite::Database database(file.string(), SQLite::OPEN_READWRITE, busyMilliseconds);
            database.exec("PRAGMA wal_checkpoint(TRUNCATE)");
        }
        std::filesystem::copy_file(file, copy, std::filesystem::copy_options::overwrite_existing);
        try {
            SQLite::Database database(file.string(), SQLite::OPEN_READWRITE, busyMilliseconds);
            SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
            if (FormatOfDatabase(database) != Format::older)
                throw ProjectFileError("the project is not of an older format");
            MigrateFromVersion1(database);
            transaction.commit();
        } catch (...) {
            std::filesystem::rename(copy, file);
            throw;
        }
        std::filesystem::remove(copy);
    });
}

} // namespace ZRSmartDB
