// SPDX-License-Identifier: MIT
#pragma once

#include "realserver.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"

#include <filesystem>
#include <memory>
#include <string>

#include <QTemporaryDir>

/// A person with a data folder and a login of their own at a server: two of them are two machines.
class Person
{
public:
    explicit Person(const RealServer& server,
                    const std::shared_ptr<ZRSmartDB::Disk>& disk = ZRSmartDB::LocalDisk());

    // The database's operations.
    bool upload(const std::string& guid, bool isForced = false);
    bool download(const std::string& guid);
    bool update(const std::string& guid);
    /// The state of a project, asked for anew at the server; -1 when it cannot be told.
    int state(const std::string& guid);
    /// The code of the last failure.
    [[nodiscard]] int lastCode();
    [[nodiscard]] QString lastWords();

    /// Makes a project of the type, with a picture.
    void create(const std::string& guid, const std::string& type);
    /// Changes the note, as the editor of another process does.
    void edit(const std::string& guid, const std::string& note);
    [[nodiscard]] std::string note(const std::string& guid) const;
    /// Assigns a model of random bytes to a building project.
    void addModel(const std::string& guid, const std::string& model, unsigned seed);
    void write(const std::string& guid, const std::string& file, const std::string& bytes) const;
    [[nodiscard]] std::string read(const std::string& guid, const std::string& file) const;
    [[nodiscard]] std::filesystem::path folder(const std::string& guid) const;
    [[nodiscard]] std::filesystem::path dataFolder() const { return m_folder.path().toStdString(); }
    [[nodiscard]] std::wstring dataFolderText() const { return m_folder.path().toStdWString(); }

    /// What SQLite says of a project's database: "ok" when it is sound.
    [[nodiscard]] std::string integrity(const std::string& guid) const;

    [[nodiscard]] ZRSmartDB::Database& database() { return *m_database; }
    /// The program ends and starts anew.
    void restart();

private:
    const RealServer& m_server;
    std::shared_ptr<ZRSmartDB::Disk> m_disk;
    QTemporaryDir m_folder;
    std::unique_ptr<ZRSmartDB::Database> m_database;
};

/// The key of a project in the database's form.
[[nodiscard]] ZRSmartFormat::SZRFTGuid Key(const std::string& guid);

/// Bytes that cannot be compressed, the same for the same seed.
[[nodiscard]] std::string RandomBytes(std::size_t count, unsigned seed);
