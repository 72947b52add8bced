// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"

#include <cstdint>
#include <filesystem>

namespace ZRSmartDB
{

/// Throws Failure with both numbers when fewer than `bytes` bytes may be written below a folder.
void RequireRoom(Disk& disk, const std::filesystem::path& folder, std::uint64_t bytes);

} // namespace ZRSmartDB
