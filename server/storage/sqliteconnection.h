// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/sqlitestore.h"

#include <unordered_map>

#include <SQLiteCpp/SQLiteCpp.h>

namespace server
{

/// How long an operation waits for those of other connections.
inline constexpr int busyMilliseconds = 10000;

inline void BindDigest(SQLite::Statement& statement, int index, const wire::Digest& digest)
{
    statement.bind(index, static_cast<const void*>(digest.bytes.data()),
                   static_cast<int>(digest.bytes.size()));
}

inline void BindBlob(SQLite::Statement& statement, int index, const std::string& bytes)
{
    statement.bind(index, static_cast<const void*>(bytes.data()), static_cast<int>(bytes.size()));
}

inline void BindId(SQLite::Statement& statement, int index, const std::optional<std::int64_t>& id)
{
    if (id)
        statement.bind(index, *id);
    else
        statement.bind(index);
}

inline std::optional<std::int64_t> IdAt(SQLite::Statement& statement, int index)
{
    if (statement.isColumnNull(index))
        return std::nullopt;
    return statement.getColumn(index).getInt64();
}

/// Throws DiskFull when that is what an operation of SQLite has failed for.
void TellFullDisk(const SQLite::Exception& failure, sqlite3* database);

/// Does something with a database. Throws DiskFull on a full disk, and what SQLite throws.
template<typename Work>
auto TellingFullDisk(sqlite3* database, Work work)
{
    try {
        return work();
    } catch (const SQLite::Exception& failure) {
        TellFullDisk(failure, database);
        throw;
    }
}

/// A statement that throws DiskFull on a full disk.
class Statement : public SQLite::Statement
{
public:
    Statement(const SQLite::Database& database, const char* text)
        : SQLite::Statement(database, text)
        , m_database(database.getHandle())
    {
    }

    bool executeStep()
    {
        return TellingFullDisk(m_database, [this] { return SQLite::Statement::executeStep(); });
    }
    int exec()
    {
        return TellingFullDisk(m_database, [this] { return SQLite::Statement::exec(); });
    }

private:
    sqlite3* m_database;
};

/// A transaction that throws DiskFull on a full disk.
class Transaction
{
public:
    explicit Transaction(SQLite::Database& database,
                         SQLite::TransactionBehavior behavior = SQLite::TransactionBehavior::IMMEDIATE)
        : m_database(database.getHandle())
        , m_transaction(TellingFullDisk(m_database, [&] { return SQLite::Transaction(database, behavior); }))
    {
    }

    void commit()
    {
        TellingFullDisk(m_database, [this] { m_transaction.commit(); });
    }

private:
    sqlite3* m_database;
    SQLite::Transaction m_transaction;
};

/// A connection with its prepared statements. For one thread at a time.
class SqliteStore::Connection
{
public:
    explicit Connection(const std::filesystem::path& file)
        : database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, busyMilliseconds)
    {
        TellingFullDisk(database.getHandle(), [this] {
            database.exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=ON;");
        });
    }

    /// A statement ready to be bound; made once for each text.
    Statement& prepare(const char* text)
    {
        auto& statement = m_statements[text];
        if (!statement)
            statement = std::make_unique<Statement>(database, text);
        statement->tryReset();
        statement->clearBindings();
        return *statement;
    }

    void countChange() { prepare("UPDATE counters SET value = value + 1 WHERE name = 'changes'").exec(); }

    SQLite::Database database;

private:
    std::unordered_map<std::string, std::unique_ptr<Statement>> m_statements;
};

/// A connection while one operation uses it. No statement stays in the middle of its rows when it goes back:
/// that would keep an old snapshot of the database alive.
class SqliteStore::Lease
{
public:
    Lease(SqliteStore& store, std::unique_ptr<Connection> connection)
        : m_store(store)
        , m_connection(std::move(connection))
    {
    }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;
    ~Lease()
    {
        if (m_used != nullptr)
            m_used->tryReset();
        const std::lock_guard lock(m_store.m_mutex);
        m_store.m_free.push_back(std::move(m_connection));
    }

    Statement& prepare(const char* text)
    {
        if (m_used != nullptr)
            m_used->tryReset();
        m_used = &m_connection->prepare(text);
        return *m_used;
    }
    SQLite::Database& database() { return m_connection->database; }
    void countChange() { m_connection->countChange(); }

private:
    SqliteStore& m_store;
    std::unique_ptr<Connection> m_connection;
    Statement* m_used = nullptr;
};

/// Whether a project belongs to the account or to its organisation. Who may see a demonstration project may
/// not change it; a model belongs to whoever its building project belongs to.
[[nodiscard]] bool MayChange(SqliteStore::Lease& connection, std::int64_t account, const std::string& guid);

void InsertPieces(SqliteStore::Lease& connection, std::span<const StoredPiece> pieces);

/// Makes a revision the newest of its project.
void InsertRevision(SqliteStore::Lease& connection, const std::string& guid, const Revision& revision);

void SetStatus(SqliteStore::Lease& connection, const std::string& guid, ProjectStatus status);

} // namespace server
