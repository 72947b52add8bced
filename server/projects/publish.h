// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/packs.h"
#include "server/storage/store.h"
#include "wire/digest.h"

#include <filesystem>

namespace server
{

/// Makes what stands in a project's folder the newest revision of a project that the store knows. Databases
/// are taken as consistent snapshots, so the folder may be in use. Returns the revision's name. Throws
/// std::runtime_error with words that name the file at fault; the project is then as it was.
wire::Digest PublishFolder(Store& store, const std::filesystem::path& packs, const std::string& guid,
                           const std::filesystem::path& folder);

} // namespace server
