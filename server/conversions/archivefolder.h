// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace server
{

/// The bytes of archives, a file each, under the server's names for them. Any thread, one at a time for each
/// archive.
class ArchiveFolder
{
public:
    /// Makes the folder when it is missing.
    explicit ArchiveFolder(std::filesystem::path folder);

    [[nodiscard]] std::filesystem::path file(const std::string& id) const;

    /// Returns when the bytes are on the disk. Throws DiskFull, and std::runtime_error.
    void write(const std::string& id, std::uint64_t offset, std::string_view bytes) const;

    /// The MD5 of the first `size` bytes as hexadecimal digits. Throws std::runtime_error when there are
    /// less.
    [[nodiscard]] std::string md5(const std::string& id, std::uint64_t size) const;

    void remove(const std::string& id) const;

private:
    std::filesystem::path m_folder;
};

} // namespace server
