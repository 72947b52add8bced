// SPDX-License-Identifier: MIT
#pragma once

namespace SQLite
{
class Database;
}

namespace server
{

/// Brings a database to the newest version of its tables, in one transaction. Throws std::exception when it
/// cannot be done, and for a database that a newer version has written.
void BringSchemaUpToDate(SQLite::Database& database);

} // namespace server
