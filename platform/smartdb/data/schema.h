// SPDX-License-Identifier: MIT
#pragma once

namespace SQLite
{
class Database;
}

namespace ZRSmartDB
{

/// The format that this version writes. Version 1 kept the position as one text and the attributes as one
/// JSON text, and knew no IoT code, no notes and no placing of objects.
inline constexpr int currentSchema = 2;

/// Marks a SQLite file as a project ("TVPR").
inline constexpr int projectApplicationId = 0x54565052;

/// Makes the tables of the current format in an empty database. Throws SQLite::Exception.
void CreateSchema(SQLite::Database& database);

/// The format version of a database. Throws Failure when it is no project or of a later version.
[[nodiscard]] int SchemaVersionOf(SQLite::Database& database);

/// Throws Failure unless the database is of the current format and has exactly the tables of a fresh one: a
/// file from elsewhere may hold views or triggers, which would run with our statements.
void RequireCurrentSchema(SQLite::Database& database);

/// Brings a database of version 1 to the current format, in the transaction that the caller has open.
/// Throws std::exception when a row cannot be understood.
void MigrateFromVersion1(SQLite::Database& database);

} // namespace ZRSmartDB
