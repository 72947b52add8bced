// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a model archive. Nothing of it is unpacked under a name that stands in it.
[[nodiscard]] Read ReadArchive(const std::filesystem::path& file, const OnPercent& onPercent);

/// Writes a model as an archive. Gives the reason, or the empty text; no file is left when something goes
/// wrong.
[[nodiscard]] std::string WriteArchive(const SourceModel& source, const std::string& name,
                                       const std::filesystem::path& file);

} // namespace kyvconvert
