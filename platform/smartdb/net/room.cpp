// SPDX-License-Identifier: MIT
#include "smartdb/net/room.h"

#include "smartdb/failure.h"

#include <string>

namespace ZRSmartDB
{

void RequireRoom(Disk& disk, const std::filesystem::path& folder, std::uint64_t bytes)
{
    constexpr std::uint64_t mebibyte = 1U << 20U;
    const auto room = disk.room(folder);
    if (room < bytes)
        throw Failure(localcode::diskFull, "the disk is full: the project needs " +
                                               std::to_string(bytes / mebibyte + 1) + " MiB, and " +
                                               std::to_string(room / mebibyte) + " MiB are free");
}

} // namespace ZRSmartDB
