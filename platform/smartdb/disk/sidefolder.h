// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// A folder beside the projects in which new ones are put together and old ones fall apart, so that a project
/// is seen whole or not at all.
///
/// It goes with this object. What a killed process left is removed when the next one is made: side folders
/// are locked as long as their process lives. Operations throw Failure.
class SideFolder
{
public:
    SideFolder(std::shared_ptr<Disk> disk, std::filesystem::path dataFolder);
    SideFolder(const SideFolder&) = delete;
    SideFolder& operator=(const SideFolder&) = delete;
    ~SideFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

    /// The place of a project inside the side folder; not made yet.
    [[nodiscard]] std::filesystem::path folderOf(const std::string& guid) const;

    /// Moves projects from the side folder into the data folder. The last one is the one that the others
    /// belong to: until it is in place the rest can be taken back, here when a step fails, or by the next
    /// side folder when the process is killed.
    void moveIn(const std::vector<std::string>& guids);

    /// Puts a project from the side folder into the place of the one in the data folder, which then lies in
    /// the side folder. Calling it again takes that back.
    void exchange(const std::string& guid);

    /// Moves projects from the data folder into the side folder, where they go with it. Once begun it will be
    /// finished, by the next side folder when the process is killed.
    void takeOut(const std::vector<std::string>& guids);

private:
    std::shared_ptr<Disk> m_disk;
    std::filesystem::path m_dataFolder;
    std::filesystem::path m_path;
    std::unique_ptr<FolderLock> m_lock;
};

/// The guids of all project folders in a data folder, in no order.
[[nodiscard]] std::vector<std::string> ProjectGuids(const std::filesystem::path& dataFolder);

} // namespace ZRSmartDB
