// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"
#include "smartdb/disk/disk.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace ZRSmartDB
{

/// Which projects have which models: by this a model is found without a folder being named, and its folder
/// goes when the last project has let go of it. Any thread.
class ModelUse
{
public:
    using Guid = ZRSmartFormat::SZRFTGuid;

    explicit ModelUse(std::shared_ptr<Disk> disk)
        : m_disk(std::move(disk))
    {
    }

    void opened(const Guid& project, const std::filesystem::path& dataFolder,
                const std::vector<Guid>& models);
    void closed(const Guid& project);
    void added(const Guid& project, const Guid& model);
    void removed(const Guid& project, const Guid& model);

    /// The data folder of an open project that has the model.
    [[nodiscard]] std::optional<std::filesystem::path> dataFolderOf(const Guid& model) const;

    /// Those of `models` that no project in the data folder has, open or not, leaving `besides` aside. Reads
    /// every project that is not open. Throws Failure when one of them may need anything.
    [[nodiscard]] std::vector<Guid> unusedOf(const std::filesystem::path& dataFolder,
                                             const std::vector<Guid>& models, const Guid& besides) const;

    /// Deletes the folder of `model` when no project in the data folder has it. Throws Failure.
    void removeIfUnused(const std::filesystem::path& dataFolder, const Guid& model) const;

private:
    struct Owner {
        std::filesystem::path dataFolder;
        std::set<Guid> models;
    };

    [[nodiscard]] bool isOpen(const Guid& project) const;

    const std::shared_ptr<Disk> m_disk;
    mutable std::mutex m_mutex; ///< protects the two maps, which say the same in both directions
    std::unordered_map<Guid, Owner> m_owners;
    std::unordered_map<Guid, std::set<Guid>> m_ownersOfModel;
};

} // namespace ZRSmartDB
