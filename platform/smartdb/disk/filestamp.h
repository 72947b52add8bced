// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>

namespace ZRSmartDB
{

/// What a file looks like from outside. While it looks the same, its content is taken to be the same.
struct FileStamp {
    std::uint64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds; 0 for a file so fresh that another edit might not show
    std::uint64_t identity = 0; ///< changes when another file takes the name

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of a file; all zero when there is none.
[[nodiscard]] FileStamp StampOf(const std::filesystem::path& file);

/// True when both stamps are of one unchanged file. A fresh file is never sure to be unchanged.
[[nodiscard]] bool LooksUnchanged(const FileStamp& noted, const FileStamp& now);

} // namespace ZRSmartDB
