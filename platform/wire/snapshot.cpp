// SPDX-License-Identifier: MIT
#include "wire/snapshot.h"

#include <array>
#include <fstream>
#include <memory>
#include <utility>

#include <sqlite3.h>

namespace wire
{

namespace
{

constexpr int busyMilliseconds = 10000;

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

Database Open(const std::filesystem::path& file, int flags, std::string& refusal)
{
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2(file.string().c_str(), &database, flags, nullptr);
    Database owner(database);
    if (result != SQLITE_OK)
        refusal = file.string() + " cannot be opened: " + sqlite3_errstr(result);
    else
        sqlite3_busy_timeout(database, busyMilliseconds);
    return owner;
}

std::string Copy(sqlite3* source, sqlite3* copy)
{
    auto* backup = sqlite3_backup_init(copy, "main", source, "main");
    if (backup == nullptr)
        return sqlite3_errmsg(copy);
    const int step = sqlite3_backup_step(backup, -1);
    const int end = sqlite3_backup_finish(backup);
    if (step != SQLITE_DONE || end != SQLITE_OK)
        return sqlite3_errstr(step != SQLITE_DONE ? step : end);
    // What travels is one file: no log beside it, and none asked for by its header.
    if (sqlite3_exec(copy, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr) != SQLITE_OK)
        return sqlite3_errmsg(copy);
    return {};
}

} // namespace

Snapshot::Snapshot(const std::filesystem::path& database, std::filesystem::path copy)
    : m_file(std::move(copy))
{
    const auto source = Open(database, SQLITE_OPEN_READONLY, m_refusal);
    if (!m_refusal.empty())
        return;
    const auto target = Open(m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, m_refusal);
    if (!m_refusal.empty())
        return;
    // Nobody needs the copy after a crash.
    sqlite3_exec(target.get(), "PRAGMA synchronous=OFF; PRAGMA journal_mode=OFF", nullptr, nullptr, nullptr);
    if (const auto reason = Copy(source.get(), target.get()); !reason.empty())
        m_refusal = database.string() + " cannot be copied: " + reason;
}

Snapshot::~Snapshot()
{
    std::error_code ignored;
    std::filesystem::remove(m_file, ignored);
}

bool IsDatabaseFile(const std::filesystem::path& file)
{
    std::array<std::byte, 512> head{};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(head.data()), head.size());
    return SqlitePageSize(head, 512ULL * 65536ULL) > 0;
}

} // namespace wire
