// SPDX-License-Identifier: MIT
#include "smartdb/data/upgrade.h"

#include "smartdb/data/databaseaccess.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/data/schema.h"
#include "smartdb/log.h"

#include <SQLiteCpp/Backup.h>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

/// Without the database's locks being in the way of other processes, as they would be for a copied file.
void Copy(SQLite::Database& from, SQLite::Database& to)
{
    SQLite::Backup(to, from).executeStep();
}

bool IsOlder(SQLite::Database& database)
{
    return SchemaVersionOf(database) < currentSchema;
}

/// A project's database as it was before its upgrade; there as long as this object, or longer when it could
/// not be put back.
class SafetyCopy
{
public:
    SafetyCopy(SQLite::Database& project, const fs::path& folder)
        : m_file(fileIn(folder))
    {
        removeFrom(folder);
        try {
            SQLite::Database copy(m_file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
            Copy(project, copy);
        } catch (const SQLite::Exception&) {
            removeFrom(folder);
            throw;
        }
    }
    SafetyCopy(const SafetyCopy&) = delete;
    SafetyCopy& operator=(const SafetyCopy&) = delete;
    ~SafetyCopy()
    {
        if (m_isNeeded)
            qCWarning(smartdbLog) << "the project as it was before its upgrade is kept as" << m_file.c_str();
        else
            removeFrom(m_file.parent_path());
    }

    /// A transaction that was rolled back has left the old format, which is then not touched again.
    void putBackInto(SQLite::Database& project)
    {
        m_isNeeded = true;
        if (!isUntouched(project)) {
            SQLite::Database copy(m_file.string(), SQLite::OPEN_READWRITE);
            Copy(copy, project);
        }
        m_isNeeded = false;
    }

    static void removeFrom(const fs::path& folder)
    {
        std::error_code ignored;
        for (const char* ending : {"", "-journal", "-wal", "-shm"})
            fs::remove(fileIn(folder) += ending, ignored);
    }

private:
    static fs::path fileIn(const fs::path& folder) { return folder / "before-upgrade.db.tmp"; }

    static bool isUntouched(SQLite::Database& project)
    {
        try {
            return IsOlder(project);
        } catch (const std::exception&) {
            return false;
        }
    }

    fs::path m_file;
    bool m_isNeeded = false;
};

void RequireSound(SQLite::Database& database)
{
    RequireCurrentSchema(database);
    if (database.execAndGet("PRAGMA integrity_check(1)").getString() != "ok")
        throw Failure(localcode::damaged, "the upgraded project is damaged");
}

void Migrate(SQLite::Database& database)
{
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    MigrateFromVersion1(database);
    if (database.execAndGet("SELECT count(*) FROM project").getInt() != 1)
        throw Failure(localcode::damaged, "the project's database has lost its project");
    transaction.commit();
}

} // namespace

void UpgradeProject(const fs::path& folder)
{
    ReportingFailures([&] {
        auto project = OpenDatabase(DatabaseIn(folder));
        if (!IsOlder(project)) {
            SafetyCopy::removeFrom(folder); // of an upgrade that was killed behind its last step
            return;
        }
        SafetyCopy copy(project, folder);
        try {
            Migrate(project);
            RequireSound(project);
            project.exec("PRAGMA journal_mode=WAL");
        } catch (const std::exception&) {
            copy.putBackInto(project);
            throw;
        }
    });
}

} // namespace ZRSmartDB
