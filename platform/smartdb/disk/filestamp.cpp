// SPDX-License-Identifier: MIT
#include "smartdb/disk/filestamp.h"

#include <chrono>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace ZRSmartDB
{

namespace
{

// File systems count time in steps of up to two seconds.
constexpr auto freshness = std::chrono::seconds(2);

std::uint64_t IdentityOf([[maybe_unused]] const std::filesystem::path& file)
{
#ifndef _WIN32
    struct stat status = {};
    if (::stat(file.c_str(), &status) == 0)
        return status.st_ino;
#endif
    return 0;
}

} // namespace

FileStamp StampOf(const std::filesystem::path& file)
{
    std::error_code error;
    const auto modified = std::filesystem::last_write_time(file, error);
    if (error)
        return {};
    FileStamp stamp;
    stamp.size = std::filesystem::file_size(file, error);
    if (std::filesystem::file_time_type::clock::now() - modified > freshness)
        stamp.modified = std::chrono::nanoseconds(modified.time_since_epoch()).count();
    stamp.identity = IdentityOf(file);
    return stamp;
}

bool LooksUnchanged(const FileStamp& noted, const FileStamp& now)
{
    return noted.modified != 0 && noted == now;
}

} // namespace ZRSmartDB
