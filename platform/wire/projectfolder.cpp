// SPDX-License-Identifier: MIT
#include "wire/projectfolder.h"

#include <algorithm>
#include <array>

namespace wire
{

bool IsProjectFile(std::string_view path)
{
    constexpr std::array<std::string_view, 5> leftOut = {"-wal", "-shm", "-journal", ".tmp", ".damaged"};
    constexpr std::array memory = {syncStateName, syncManifestName, attemptStateName, attemptManifestName};
    return std::find(memory.begin(), memory.end(), path) == memory.end() &&
           std::none_of(leftOut.begin(), leftOut.end(), [&](auto ending) { return path.ends_with(ending); });
}

std::vector<std::string> ProjectFiles(const std::filesystem::path& folder)
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.is_symlink())
            continue;
        const auto relative = entry.path().lexically_relative(folder).generic_u8string();
        std::string path(relative.begin(), relative.end());
        if (IsProjectFile(path))
            paths.push_back(std::move(path));
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace wire
