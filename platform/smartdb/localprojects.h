// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/localstate.h"
#include "smartdb/disk/disk.h"
#include "smartdb/modeluse.h"
#include "smartdb/project.h"
#include "smartdb/projectlocks.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZRSmartDB
{

/// The projects on this machine: which are open, and everything that needs no server. Operations throw
/// Failure unless they say otherwise. Any thread.
class LocalProjects : public std::enable_shared_from_this<LocalProjects>
{
public:
    using Guid = ZRSmartFormat::SZRFTGuid;

    explicit LocalProjects(std::shared_ptr<Disk> disk);

    /// An open project, or a model of an open building project, which is then opened; otherwise null.
    [[nodiscard]] std::shared_ptr<Project> find(const Guid& guid);

    [[nodiscard]] std::shared_ptr<Project> open(const Guid& guid, const std::filesystem::path& dataFolder);

    /// Makes a project on disk and opens it. The guid in `head` names it.
    [[nodiscard]] std::shared_ptr<Project> create(const ProjectHead& head,
                                                  const std::filesystem::path& dataFolder);

    /// Lets go of a project. Throws nothing.
    void close(const Guid& guid);
    void closeAll();

    /// Saves all open projects, each for itself. False when one could not be saved; the reason is remembered.
    [[nodiscard]] bool saveAll();

    /// Closes a project at once, and deletes it when the result is dropped, with those of its models that no
    /// other project has. One that is not open is looked for in the data folder that was named last.
    [[nodiscard]] std::shared_ptr<void> removeLater(const Guid& guid);

    /// The projects that the objects of a scene link to; none when it is not here.
    [[nodiscard]] std::set<Guid> linkedProjects(const Guid& guid, const std::filesystem::path& dataFolder);

    /// The building projects among those.
    [[nodiscard]] std::set<Guid> linkedBuildings(const Guid& guid, const std::filesystem::path& dataFolder);

    /// The models assigned to a project: "MODEL" or "3DTILES" by guid.
    [[nodiscard]] std::map<Guid, std::wstring> assignedModels(const Guid& guid,
                                                              const std::filesystem::path& dataFolder);

    [[nodiscard]] bool isHere(const Guid& guid, const std::filesystem::path& dataFolder);
    /// Throws Failure with words when the project is not here.
    void requireHere(const Guid& guid, const std::filesystem::path& dataFolder);

    /// `head` as in LocalStateOf.
    [[nodiscard]] LocalState stateOf(const Guid& guid, const std::filesystem::path& dataFolder,
                                     const std::string& head);

    /// Another revision stands in the folder now: who opens the project gets that. What was given out before
    /// stays valid, and old.
    void retire(const Guid& guid);

    /// Whether an open project has changes that are not saved.
    [[nodiscard]] bool hasUnsavedChanges(const Guid& guid);

    /// Throws nothing: what cannot be looked at needs no upgrade.
    [[nodiscard]] bool needsUpgrade(const Guid& guid, const std::filesystem::path& dataFolder);

    /// Brings a project and its models to the current format.
    void upgrade(const Guid& guid, const std::filesystem::path& dataFolder);

    [[nodiscard]] ProjectLocks& locks() { return m_locks; }
    [[nodiscard]] const std::shared_ptr<Disk>& disk() const { return m_disk; }

private:
    [[nodiscard]] std::shared_ptr<Project> findOpen(const Guid& guid);
    [[nodiscard]] std::shared_ptr<Project> keep(const std::shared_ptr<Project>& project);
    void noteDataFolder(const std::filesystem::path& dataFolder);
    [[nodiscard]] std::filesystem::path lastDataFolder() const;
    void removeFolder(const Guid& guid, const std::filesystem::path& dataFolder);

    const std::shared_ptr<Disk> m_disk;
    ModelUse m_use; // before the projects, which tell it of their models
    ProjectLocks m_locks;

    mutable std::mutex m_mutex; ///< protects what follows; never held while a file is read
    std::unordered_map<Guid, std::shared_ptr<Project>> m_open;
    std::vector<std::shared_ptr<Project>> m_retired;
    std::filesystem::path m_lastDataFolder;
};

} // namespace ZRSmartDB
