// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace chosen
{

/// Fills a folder with what an archive of 1 GiB holds that a person chooses, a third of it ballast: geometry
/// of walls, which packs well, and of curved parts, which hardly does, parts that are packed already, an
/// index, and beside them drawings, pictures and the file that all of it was exported from. The same bytes in
/// every run.
void Make(const std::filesystem::path& folder);

} // namespace chosen
