// SPDX-License-Identifier: MIT
#pragma once

#include "wire/cutting.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace wire
{

/// A copy of a SQLite database as it stood at one moment, whoever writes it meanwhile. The copy is one file
/// without a log and goes with the object.
class Snapshot
{
public:
    /// Makes the copy under the name `copy`, in a folder that exists. What went wrong is told by refusal().
    Snapshot(const std::filesystem::path& database, std::filesystem::path copy);
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    ~Snapshot();

    /// Why there is no copy; empty when there is one.
    [[nodiscard]] const std::string& refusal() const { return m_refusal; }
    [[nodiscard]] const std::filesystem::path& file() const { return m_file; }

private:
    std::filesystem::path m_file;
    std::string m_refusal;
};

/// Whether a file is a SQLite database, by its first bytes.
[[nodiscard]] bool IsDatabaseFile(const std::filesystem::path& file);

} // namespace wire
