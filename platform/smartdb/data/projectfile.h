// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/projectdata.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace SQLite
{
class Database;
}

namespace ZRSmartDB
{

/// A change of a project, written in one transaction together with the change counter. What is null or empty
/// is left alone.
struct ProjectChange {
    const ProjectHead* head = nullptr; ///< everything but the models, the object count and the counter
    /// What `head` was before: only the differences are written then, so that what another process has
    /// written meanwhile stays.
    const ProjectHead* headBefore = nullptr;
    const std::string* propertyTemplate = nullptr;
    const std::vector<ObjectData>* objects = nullptr; ///< all objects of the project
    std::map<std::string, std::string> objectTexts{}; ///< new texts of single objects, by guid
    std::vector<ModelData> putModels{};
    std::vector<std::string> removedModels{};
};

/// The database in a project's folder, opened for a few statements and closed again: thousands of projects
/// may be open without keeping thousands of files open. Every operation throws Failure unless it says
/// otherwise. One thread at a time.
///
/// A project's database must not be opened by other means while a ProjectFile may exist in the same process:
/// closing any descriptor of a file gives up the locks that SQLite holds on it.
class ProjectFile
{
public:
    enum class Format { none, older, current, newer, damaged };

    /// What stands in a folder. Throws nothing.
    [[nodiscard]] static Format formatOf(const std::filesystem::path& folder);

    /// Makes a project's database in `folder`, which is made when it is missing; nothing is left of it when
    /// it fails.
    static void create(const std::filesystem::path& folder, const ProjectHead& head);

    /// The change counter in a copy of a project's database, of any format.
    [[nodiscard]] static std::int64_t readChangeCounterOf(const std::filesystem::path& database);

    /// Opens an existing project, of the current format or of an older one.
    explicit ProjectFile(const std::filesystem::path& folder);
    ~ProjectFile();

    // For a project of the current format.
    [[nodiscard]] ProjectHead readHead();
    [[nodiscard]] std::string readTemplate();
    [[nodiscard]] std::vector<ObjectData> readObjects();
    [[nodiscard]] std::vector<ModelData> readModels();

    // For a project of any format: one of an older format is fetched whole and compared with the server's
    // before it is upgraded.
    [[nodiscard]] std::string readGuid();
    [[nodiscard]] std::int64_t readChangeCounter();
    [[nodiscard]] TextMap readModelTypes();             ///< type text by guid of the model
    [[nodiscard]] std::vector<std::string> readLinks(); ///< what the objects link to, each once

    /// Writes a change, into the database that stands in the project's place at that moment. Returns the new
    /// change counter.
    std::int64_t write(const ProjectChange& change);

private:
    void requireCurrent();
    [[nodiscard]] std::optional<std::int64_t> tryWrite(const ProjectChange& change);
    void writeChange(const ProjectChange& change);

    std::unique_ptr<SQLite::Database> m_database;
    bool m_isCurrent = false; ///< the tables have been looked at
};

/// As long as it lives nobody writes to a project's database; others read it, or wait to write. Throws
/// Failure when somebody else writes for too long.
class ProjectHold
{
public:
    explicit ProjectHold(const std::filesystem::path& folder);
    ProjectHold(const ProjectHold&) = delete;
    ProjectHold& operator=(const ProjectHold&) = delete;
    ~ProjectHold();

private:
    std::unique_ptr<SQLite::Database> m_database;
};

/// Whether a folder holds a project, of whatever format.
[[nodiscard]] bool IsProjectHere(const std::filesystem::path& projectFolder);

/// Whether a project with this key can have a folder.
[[nodiscard]] bool IsProjectKey(const std::string& guid);

/// A project's folder in a data folder. Throws Failure when `guid` cannot be a part of a folder's name:
/// project keys may be any text, also one that climbs out of the data folder.
[[nodiscard]] std::filesystem::path ProjectFolder(const std::filesystem::path& dataFolder,
                                                  const std::string& guid);

/// The database in a project's folder.
[[nodiscard]] std::filesystem::path DatabaseIn(const std::filesystem::path& projectFolder);

} // namespace ZRSmartDB
