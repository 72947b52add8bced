// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/projectdata.h"

#include <filesystem>

namespace samples
{

/// Writes a project as the first version of the format had it, so that there is one to upgrade.
/// Throws std::exception when it cannot be written.
void WriteOldProject(const std::filesystem::path& folder, const ZRSmartDB::ProjectHead& head,
                     const std::vector<ZRSmartDB::ModelData>& models);

} // namespace samples
