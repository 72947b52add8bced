// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/store.h"

#include <filesystem>
#include <ostream>

namespace server
{

/// Fills a server with the content of a samples folder: accounts, organisations, applications and projects,
/// as its "seed.json" lists them (docs/server.md tells its form). What is there already stays as it is, so
/// that running it again changes nothing. Tells each step on `log`. Throws std::runtime_error with words that
/// name what is wrong.
void Seed(Store& store, const std::filesystem::path& packs, const std::filesystem::path& samples,
          std::ostream& log);

/// The project of one entry of "seed.json", or of a record that is published by hand.
/// Throws std::runtime_error when something is missing or names what the store does not know.
[[nodiscard]] Project ProjectOfEntry(Store& store, const std::string& entryJson);

} // namespace server
