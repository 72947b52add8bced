// SPDX-License-Identifier: MIT
#pragma once

#include "server/projects/revisioncache.h"
#include "server/storage/packs.h"

#include <string>

namespace server
{

/// The file of that path in a revision; null when it has none.
[[nodiscard]] const wire::FileEntry* FindFile(const LoadedRevision& revision, const std::string& path);

/// The bytes of a file of a revision, all in memory. Throws std::runtime_error when the packs do not have
/// them.
[[nodiscard]] std::string FileBytes(PackReader& packs, const LoadedRevision& revision,
                                    const wire::FileEntry& entry);

} // namespace server
