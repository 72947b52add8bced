// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <filesystem>

namespace wire
{

/// The project's own database in its folder.
inline constexpr std::string_view projectDatabaseName = "project.db";

// What a client remembers about a project's last equality with the server, and about the upload that may have
// made it equal; never part of a revision.
inline constexpr std::string_view syncStateName = "sync.json";
inline constexpr std::string_view syncManifestName = "sync.manifest";
inline constexpr std::string_view attemptStateName = "attempt.json";
inline constexpr std::string_view attemptManifestName = "attempt.manifest";

/// Whether a file of a project's folder belongs to its revisions: not the client's memory of the server, not
/// what SQLite keeps beside a database, not half-written files, not damaged ones that were kept aside.
[[nodiscard]] bool IsProjectFile(std::string_view path);

/// The paths of the files of a project's folder that belong to its revisions, ascending by their bytes, with
/// "/" between names. Links are left out. Throws std::filesystem::filesystem_error when the folder cannot be
/// read.
[[nodiscard]] std::vector<std::string> ProjectFiles(const std::filesystem::path& folder);

} // namespace wire
