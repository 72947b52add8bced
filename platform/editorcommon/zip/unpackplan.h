// SPDX-License-Identifier: MIT
#pragma once

#include "zip/zipdirectory.h"

#include <cstdint>
#include <vector>

#include <QString>
#include <QStringList>

namespace EditorCommon::Zip
{

/// How much an archive may unfold to.
struct Limits {
    std::uint64_t entries = 50000;
    std::uint64_t bytes = 64ULL << 30U;
    /// Above `harmless` bytes an archive or an entry may unfold to so many times its packed size. Geometry
    /// comes to 2 to 20 times; zeros come to 1,000.
    std::uint64_t ratio = 200;
    std::uint64_t harmless = 256ULL << 20U;
};

/// One file to be unpacked.
struct PlannedFile {
    std::uint64_t index = 0; ///< of its entry
    std::uint64_t size = 0;
    QString path; ///< below the target folder
};

/// What an archive is going to be on disk.
struct UnpackPlan {
    std::vector<PlannedFile> files;
    QStringList folders; ///< that have an entry of their own
    std::uint64_t bytes = 0;
};

/// Decides before anything is written. Throws BadArchive when an entry is locked, is no file and no folder,
/// has a path that leaves the target or that file systems do not hold, when two entries could come to one
/// file, and when the whole goes beyond the limits.
[[nodiscard]] UnpackPlan PlanUnpacking(const std::vector<Entry>& entries, const Limits& limits);

/// The path of an entry, with slashes, one at the end of a folder's. Names without a mark of their encoding
/// are GB18030, as the packers of Chinese systems write them, but for those from a Unix, which are UTF-8
/// where they can be. Throws BadArchive for bytes that are neither.
[[nodiscard]] QString EntryPath(const Entry& entry);

} // namespace EditorCommon::Zip
