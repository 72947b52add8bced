// SPDX-License-Identifier: MIT
#include "smartdb/disk/disk.h"

#include "smartdb/failure.h"

namespace ZRSmartDB
{

void WriteWhole(Disk& disk, const std::filesystem::path& file, std::string_view bytes)
{
    auto half = file;
    half += ".tmp";
    try {
        const auto output = disk.create(half, 0644);
        output->write(std::as_bytes(std::span(bytes)));
        output->close();
        disk.move(half, file);
    } catch (const Failure&) {
        std::error_code ignored;
        std::filesystem::remove(half, ignored);
        throw;
    }
}

} // namespace ZRSmartDB
