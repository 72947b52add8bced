// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace server
{

/// The secret by which workers on other machines are known. The server's folder holds its digest only.
class WorkerKey
{
public:
    explicit WorkerKey(std::filesystem::path file)
        : m_file(std::move(file))
    {
    }

    /// Makes a new key and gives it; the one before is worth nothing from then on. Throws std::exception when
    /// the file cannot be written.
    [[nodiscard]] std::string renew() const;

    /// Whether this is the key. Without a file there is none.
    [[nodiscard]] bool isKey(std::string_view key) const;

private:
    std::filesystem::path m_file;
};

} // namespace server
