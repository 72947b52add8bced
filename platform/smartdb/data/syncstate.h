// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"
#include "smartdb/disk/filestamp.h"
#include "wire/manifest.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// A file of a project, other than its database, as it was when the project was equal to the server's.
struct SyncedFile {
    std::string path;
    FileStamp stamp;
    std::string content; ///< digest, hexadecimal

    friend bool operator==(const SyncedFile&, const SyncedFile&) = default;
};

/// What this machine remembers of the moment at which a project was last equal to the server's. Kept beside
/// the project in "sync.json", which never travels: the same project has another memory on another machine.
///
/// Nobody has to say that a project changes. Its change counter and the looks of its other files are compared
/// with this memory, so that an edit shows whichever process makes it, and after a kill too.
struct SyncState {
    std::string revision; ///< name of the server's revision
    std::int64_t changeCounter =
        0;              ///< the project's counter at that moment; another value now means: changed here
    FileStamp database; ///< what the database looked like when it had this counter
    std::vector<SyncedFile> files; ///< ascending by path

    friend bool operator==(const SyncState&, const SyncState&) = default;
};

/// Nothing when the project was never equal to the server's, or when the file is damaged: the project then
/// counts as changed here, and no work is lost.
[[nodiscard]] std::optional<SyncState> ReadSyncState(const std::filesystem::path& folder);

/// The memory of a folder that holds exactly the files of `manifest`. Throws Failure.
[[nodiscard]] SyncState SyncStateOf(const std::filesystem::path& folder, const wire::Manifest& manifest);

/// Remembers that the folder is equal to the server's revision `manifest`. Each file is replaced whole.
/// Throws Failure.
void WriteSynced(Disk& disk, const std::filesystem::path& folder, const SyncState& state,
                 const wire::Manifest& manifest);

/// Replaces the memory only: what looks different turned out to be the same. Throws Failure.
void WriteSyncState(Disk& disk, const std::filesystem::path& folder, const SyncState& state);

/// The files of the revision that the folder was last equal to; nothing when they are not known here, or not
/// those of `revision`.
[[nodiscard]] std::optional<wire::Manifest> ReadSyncedManifest(const std::filesystem::path& folder,
                                                               const std::string& revision);

/// Remembers what the folder will be equal to when the server takes the revision. Its answer may never
/// arrive. Throws Failure.
void WriteAttempt(Disk& disk, const std::filesystem::path& folder, const SyncState& state,
                  const wire::Manifest& manifest);

/// Makes an attempt the memory when it has become the server's revision `head`. True when it has. Throws
/// Failure.
bool AdoptAttempt(Disk& disk, const std::filesystem::path& folder, const std::string& head);

/// The looks of a project's database, all zero while SQLite has changes beside it.
[[nodiscard]] FileStamp DatabaseStamp(const std::filesystem::path& folder);

/// Whether anything in the folder differs from the memory. Files that look different are read and compared;
/// the looks of those that proved to be equal are brought up to date in `state`, so that they need not be
/// read again. Throws Failure when the folder cannot be read.
[[nodiscard]] bool HasChanged(const std::filesystem::path& folder, SyncState& state);

} // namespace ZRSmartDB
