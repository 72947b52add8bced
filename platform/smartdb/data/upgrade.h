// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace ZRSmartDB
{

/// Brings the project in a folder from an older format to the current one.
///
/// All of it is one transaction, so that a kill leaves the old format or the new one; a copy taken before is
/// put back when the result does not pass its check. A project of the current format is left alone. Throws
/// Failure, and the project is as it was.
void UpgradeProject(const std::filesystem::path& folder);

} // namespace ZRSmartDB
