// SPDX-License-Identifier: MIT
#include "smartdb/localprojects.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/data/upgrade.h"
#include "smartdb/disk/sidefolder.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <vector>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using Guid = LocalProjects::Guid;

constexpr const char* buildingType = "BIM";
constexpr const char* tilesType = "3DTILES";

std::vector<Guid> GuidsOf(const std::vector<std::string>& texts)
{
    std::vector<Guid> guids;
    for (const auto& text : texts)
        guids.push_back(GuidOf(text));
    return guids;
}

/// The models of a project that goes; one that cannot be read goes alone.
std::vector<Guid> ModelsOnDisk(const fs::path& folder)
{
    std::vector<Guid> models;
    AtBorder([&] {
        for (const auto& [guid, type] : ProjectFile(folder).readModelTypes())
            models.push_back(GuidOf(guid));
    });
    return models;
}

} // namespace

LocalProjects::LocalProjects(std::shared_ptr<Disk> disk)
    : m_disk(std::move(disk))
    , m_use(m_disk)
{
}

std::shared_ptr<Project> LocalProjects::findOpen(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_open.find(guid);
    return known != m_open.end() ? known->second : nullptr;
}

std::shared_ptr<Project> LocalProjects::find(const Guid& guid)
{
    if (auto project = findOpen(guid))
        return project;
    const auto dataFolder = m_use.dataFolderOf(guid);
    return dataFolder && isHere(guid, *dataFolder) ? open(guid, *dataFolder) : nullptr;
}

std::shared_ptr<Project> LocalProjects::open(const Guid& guid, const fs::path& dataFolder)
{
    noteDataFolder(dataFolder);
    if (auto project = findOpen(guid))
        return project;
    return keep(std::make_shared<Project>(guid, dataFolder, m_use));
}

std::shared_ptr<Project> LocalProjects::keep(const std::shared_ptr<Project>& project)
{
    const std::lock_guard lock(m_mutex);
    // The other thread may have opened the same project meanwhile; then its object is the one.
    const auto [entry, isNew] = m_open.try_emplace(project->GetGuid(), project);
    if (isNew)
        m_use.opened(project->GetGuid(), project->dataFolder(), GuidsOf(project->modelGuids()));
    return entry->second;
}

std::shared_ptr<Project> LocalProjects::create(const ProjectHead& head, const fs::path& dataFolder)
{
    const auto guid = GuidOf(head.guid);
    const auto lock = m_locks.lock(guid);
    if (fs::exists(ProjectFolder(dataFolder, head.guid)))
        throw Failure(localcode::exists, "the project exists already: " + head.guid);
    {
        SideFolder side(m_disk, dataFolder);
        ProjectFile::create(side.folderOf(head.guid), head);
        side.moveIn({head.guid});
    }
    return open(guid, dataFolder);
}

void LocalProjects::close(const Guid& guid)
{
    std::shared_ptr<Project> closed; // freed after the lock has been given back
    const std::lock_guard lock(m_mutex);
    const auto known = m_open.find(guid);
    if (known == m_open.end())
        return;
    closed = std::move(known->second);
    m_open.erase(known);
    m_use.closed(guid);
}

void LocalProjects::closeAll()
{
    decltype(m_open) closed; // freed after the lock has been given back
    const std::lock_guard lock(m_mutex);
    closed.swap(m_open);
    m_retired.clear();
    for (const auto& [guid, project] : closed)
        m_use.closed(guid);
}

void LocalProjects::retire(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_open.find(guid);
    if (known == m_open.end())
        return;
    m_retired.push_back(std::move(known->second));
    m_open.erase(known);
    m_use.closed(guid);
}

bool LocalProjects::hasUnsavedChanges(const Guid& guid)
{
    const auto project = findOpen(guid);
    return project && project->isDirty();
}

bool LocalProjects::saveAll()
{
    std::vector<std::shared_ptr<Project>> projects;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [guid, project] : m_open)
            projects.push_back(project);
    }
    bool isSaved = true;
    for (const auto& project : projects) {
        isSaved &= AtBorder(false, [&] {
            project->save();
            return true;
        });
    }
    return isSaved;
}

std::shared_ptr<void> LocalProjects::removeLater(const Guid& guid)
{
    const auto project = findOpen(guid);
    const auto dataFolder = project ? project->dataFolder() : lastDataFolder();
    close(guid);
    if (dataFolder.empty() || !IsProjectKey(GuidTextOf(guid)))
        return nullptr;
    // The handle may outlive the database, but not what it needs.
    return {this, [self = shared_from_this(), guid, dataFolder](void*) {
                AtBorder([&] { self->removeFolder(guid, dataFolder); });
            }};
}

void LocalProjects::removeFolder(const Guid& guid, const fs::path& dataFolder)
{
    const auto lock = m_locks.lock(guid);
    const auto folder = ProjectFolder(dataFolder, GuidTextOf(guid));
    if (!fs::exists(folder))
        return;
    std::vector<std::string> departing = {GuidTextOf(guid)};
    for (const auto& model : m_use.unusedOf(dataFolder, ModelsOnDisk(folder), guid)) {
        if (fs::exists(ProjectFolder(dataFolder, GuidTextOf(model))))
            departing.push_back(GuidTextOf(model));
    }
    SideFolder(m_disk, dataFolder).takeOut(departing);
}

std::set<Guid> LocalProjects::linkedProjects(const Guid& guid, const fs::path& dataFolder)
{
    std::set<Guid> linked;
    if (const auto project = findOpen(guid)) {
        for (const auto* object : project->objects())
            linked.insert(object->GetLinkedProj());
        linked.erase(GuidOf({}));
    } else if (isHere(guid, dataFolder)) {
        for (const auto& link : ProjectFile(ProjectFolder(dataFolder, GuidTextOf(guid))).readLinks())
            linked.insert(GuidOf(link));
    }
    return linked;
}

std::set<Guid> LocalProjects::linkedBuildings(const Guid& guid, const fs::path& dataFolder)
{
    auto linked = linkedProjects(guid, dataFolder);
    std::erase_if(linked, [&](const Guid& other) {
        return AtBorder(true, [&] {
            return !isHere(other, dataFolder) || open(other, dataFolder)->type() != buildingType;
        });
    });
    return linked;
}

std::map<Guid, std::wstring> LocalProjects::assignedModels(const Guid& guid, const fs::path& dataFolder)
{
    // From the database in any case: it may be of an older format, which is never open.
    std::map<Guid, std::wstring> models;
    for (const auto& [model, type] :
         ProjectFile(ProjectFolder(dataFolder, GuidTextOf(guid))).readModelTypes())
        models[GuidOf(model)] = type == tilesType ? L"3DTILES" : L"MODEL";
    return models;
}

bool LocalProjects::isHere(const Guid& guid, const fs::path& dataFolder)
{
    std::error_code missing;
    return fs::exists(DatabaseIn(ProjectFolder(dataFolder, GuidTextOf(guid))), missing);
}

void LocalProjects::requireHere(const Guid& guid, const fs::path& dataFolder)
{
    if (!isHere(guid, dataFolder))
        throw Failure(localcode::notHere, "the project " + GuidTextOf(guid) + " is not on this machine");
}

LocalState LocalProjects::stateOf(const Guid& guid, const fs::path& dataFolder, const std::string& head)
{
    requireHere(guid, dataFolder);
    return LocalStateOf(*m_disk, ProjectFolder(dataFolder, GuidTextOf(guid)), head);
}

bool LocalProjects::needsUpgrade(const Guid& guid, const fs::path& dataFolder)
{
    noteDataFolder(dataFolder);
    const auto text = GuidTextOf(guid);
    // What is open is of the current format; asking costs nothing then.
    return IsProjectKey(text) && !findOpen(guid) &&
           ProjectFile::formatOf(ProjectFolder(dataFolder, text)) == ProjectFile::Format::older;
}

void LocalProjects::upgrade(const Guid& guid, const fs::path& dataFolder)
{
    const auto lock = m_locks.lock(guid);
    const auto folder = ProjectFolder(dataFolder, GuidTextOf(guid));
    // The models first: as long as the project itself is of the older format, the upgrade is asked for again.
    for (const auto& [model, type] : ProjectFile(folder).readModelTypes()) {
        if (isHere(GuidOf(model), dataFolder))
            UpgradeProject(ProjectFolder(dataFolder, model));
    }
    UpgradeProject(folder);
}

void LocalProjects::noteDataFolder(const fs::path& dataFolder)
{
    const std::lock_guard lock(m_mutex);
    if (m_lastDataFolder != dataFolder)
        m_lastDataFolder = dataFolder;
}

fs::path LocalProjects::lastDataFolder() const
{
    const std::lock_guard lock(m_mutex);
    return m_lastDataFolder;
}

} // namespace ZRSmartDB
