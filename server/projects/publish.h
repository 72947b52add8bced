// SPDX-License-Identifier: MIT
#pragma once

#include "server/projects/revisioncache.h"
#include "server/storage/store.h"
#include "wire/digest.h"

#include <filesystem>
#include <vector>

namespace server
{

/// A revision whose pieces are on the disk, and which no project has yet.
struct PreparedRevision {
    Revision revision;
    std::vector<StoredPiece> newPieces;
};

/// Takes the files of a project's folder, over those of `base` when there is one. Databases are taken as
/// consistent snapshots, so the folder may be in use. Throws std::runtime_error with words that name the file
/// at fault.
[[nodiscard]] PreparedRevision PrepareRevision(Store& store, const std::filesystem::path& packs,
                                               const std::filesystem::path& folder,
                                               const LoadedRevision* base = nullptr);

/// Makes what stands in a project's folder the newest revision of a project that the store knows. Returns the
/// revision's name. Throws std::runtime_error with words that name the file at fault; the project is then as
/// it was.
wire::Digest PublishFolder(Store& store, const std::filesystem::path& packs, const std::string& guid,
                           const std::filesystem::path& folder);

} // namespace server
