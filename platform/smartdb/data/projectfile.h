// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/projectdata.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace SQLite
{
class Database;
}

namespace ZRSmartDB
{

/// Why a project's file cannot be used. The words are for a person.
class ProjectFileError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A change of a project, written in one transaction together with the change counter. What is null is left
/// alone.
struct ProjectChange {
    const ProjectHead* head = nullptr; ///< everything but the models, the object count and the counter
    const std::string* propertyTemplate = nullptr;
    const std::vector<ObjectData>* objects = nullptr; ///< all objects of the project
    std::vector<ModelData> putModels;
    std::vector<std::string> removedModels;
};

/// The database in a project's folder, opened for a few statements and closed again: thousands of projects
/// may be open without keeping thousands of files open. Every operation throws ProjectFileError. One thread
/// at a time.
class ProjectFile
{
public:
    enum class Format { none, older, current, newer, damaged };

    /// What stands in a folder.
    [[nodiscard]] static Format formatOf(const std::filesystem::path& folder);

    /// Makes a project's folder with its database. Nothing is left of it when it fails.
    static void create(const std::filesystem::path& folder, const ProjectHead& head);

    /// Opens an existing project of the current format.
    explicit ProjectFile(const std::filesystem::path& folder);
    ~ProjectFile();

    [[nodiscard]] ProjectHead readHead();
    [[nodiscard]] std::string readTemplate();
    [[nodiscard]] std::vector<ObjectData> readObjects();
    [[nodiscard]] std::vector<ModelData> readModels();
    [[nodiscard]] std::int64_t readChangeCounter();

    /// Writes a change. Returns the new change counter.
    std::int64_t write(const ProjectChange& change);

    /// Brings a project of an older format to the current one, in one transaction and after a copy of the
    /// database, which is put back when anything goes wrong.
    static void upgrade(const std::filesystem::path& folder);

private:
    std::unique_ptr<SQLite::Database> m_database;
};

/// A project's folder in a data folder.
[[nodiscard]] std::filesystem::path ProjectFolder(const std::filesystem::path& dataFolder,
                                                  const std::string& guid);

} // namespace ZRSmartDB
