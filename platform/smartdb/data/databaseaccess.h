// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/failure.h"

#include <filesystem>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

namespace ZRSmartDB
{

/// Opens an existing database for reading and writing: SQLite makes connections that only read leave their
/// side files behind, so that whoever reads opens it for writing as well. Throws Failure.
[[nodiscard]] SQLite::Database OpenDatabase(const std::filesystem::path& file);

/// Whether another file stands where the database was opened, or none: what is written now would be lost.
[[nodiscard]] bool HasMoved(const SQLite::Database& database);

/// What went wrong inside SQLite, as the library's border gives it on.
[[nodiscard]] Failure FailureOf(const SQLite::Exception& exception);

/// Runs `work` with SQLite's exceptions turned into Failure.
template<class Work>
auto ReportingFailures(Work&& work) -> decltype(work())
{
    try {
        return std::forward<Work>(work)();
    } catch (const SQLite::Exception& exception) {
        throw FailureOf(exception);
    }
}

} // namespace ZRSmartDB
