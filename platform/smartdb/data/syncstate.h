// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace ZRSmartDB
{

/// What this machine remembers of the moment at which a project was last equal to the server's. Kept beside
/// the project in "sync.json", which never travels: the same project has another memory on another machine.
struct SyncState {
    std::string revision; ///< name of the server's revision
    std::int64_t changeCounter =
        0; ///< the project's counter at that moment; another value now means: changed here

    friend bool operator==(const SyncState&, const SyncState&) = default;
};

/// Nothing when the project was never equal to the server's, or when the file is damaged: the project then
/// counts as changed here, and no work is lost.
[[nodiscard]] std::optional<SyncState> ReadSyncState(const std::filesystem::path& folder);

/// Replaces the file whole. False when it cannot be written.
[[nodiscard]] bool WriteSyncState(const std::filesystem::path& folder, const SyncState& state);

} // namespace ZRSmartDB
