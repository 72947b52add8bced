// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace kyvconvert
{

/// A folder of one's own for a while; empty path when it could not be made.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace kyvconvert
