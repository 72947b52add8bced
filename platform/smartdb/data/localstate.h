// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"

#include <filesystem>
#include <string>

namespace ZRSmartDB
{

/// What a project's folder tells of its standing to the server.
struct LocalState {
    std::string revision;  ///< that the folder was last equal to; empty when it never was
    bool isChanged = true; ///< since then

    friend bool operator==(const LocalState&, const LocalState&) = default;
};

/// Reads it from the folder, whatever the format of the project. `head` is the server's newest revision,
/// empty when it has none: an upload whose answer never came may have made it. Throws Failure when the folder
/// cannot be read.
[[nodiscard]] LocalState LocalStateOf(Disk& disk, const std::filesystem::path& folder,
                                      const std::string& head);

/// How a project stands to the server, as IZRDatabase::GetProjStatus gives it.
enum class ProjectState {
    onlyHere = 0,
    same = 1,
    changedHere = 2,
    changedThere = 3,
    changedOnBoth = 4,
};

/// `head` is the name of the server's newest revision, empty when it has none.
[[nodiscard]] ProjectState StateOf(const LocalState& local, const std::string& head);

} // namespace ZRSmartDB
