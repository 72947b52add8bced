// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/sqliteconnection.h"

namespace server
{

[[nodiscard]] std::optional<Job> FindJob(SqliteStore::Lease& connection, const std::string& id);

/// The project of a job that runs is what it was before.
void LeaveConverting(SqliteStore::Lease& connection, const std::string& id);

} // namespace server
