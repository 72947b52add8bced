// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace server
{

/// An exclusive lock on a file, held by this process until the object goes or the process ends, however it
/// ends.
class FolderLock
{
public:
    /// Makes the file when it is missing. `wait` tells whether to wait for another process that holds it.
    FolderLock(const std::filesystem::path& file, bool wait);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    int m_descriptor = -1;
    bool m_isHeld = false;
};

} // namespace server
