// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>

namespace workload
{

/// Fills a project's folder: 913 MB in about 2,000 files, among them a SQLite database of 121 MB, a binary of
/// 512 MB and a file of 16 MB. The same bytes in every run.
void Make(const std::filesystem::path& folder);

/// The day after: 400 rows of the database changed and 100 inserted, 8 splices in the binary, the file of
/// 16 MB renamed, one small file edited.
void Change(const std::filesystem::path& folder);

} // namespace workload
