// SPDX-License-Identifier: MIT
#include "smartdb/database.h"

#include "ZRIMGeometryModel/zrimposition.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/modelstore.h"
#include "smartdb/net/download.h"
#include "smartdb/text.h"
#include "wire/manifest.h"

#include <random>

namespace ZRSmartDB
{

namespace
{

constexpr unsigned networkThreads = 2;

enum State { onlyHere = 0, same = 1, changedHere = 2, changedThere = 3, changedOnBoth = 4 };

/// A guid becomes a part of a path; one from outside must not reach beyond the data folder.
bool IsFolderName(const std::string& guid)
{
    return !guid.empty() && guid.find('/') == std::string::npos && wire::PathRefusal("proj_" + guid).empty();
}

int StateOf(const Project::DiskState& local, const ServerState& server)
{
    if (server.head.empty())
        return onlyHere;
    // Without a memory of having been equal, both sides count as changed: nobody's work is overwritten
    // unasked.
    if (!local.sync)
        return changedOnBoth;
    const bool isChangedHere = local.changeCounter != local.sync->changeCounter;
    const bool isChangedThere = local.sync->revision != server.head;
    if (isChangedHere)
        return isChangedThere ? changedOnBoth : changedHere;
    return isChangedThere ? changedThere : same;
}

/// Takes a folder out of sight at once and deletes it afterwards, so that a kill never leaves half a project
/// visible.
void RemoveFolder(const std::filesystem::path& folder)
{
    if (folder.empty())
        return;
    const auto gone = folder.parent_path() / (".removed-" + std::to_string(std::random_device()()));
    std::error_code error;
    std::filesystem::rename(folder, gone, error);
    std::filesystem::remove_all(error ? folder : gone, error);
}

} // namespace

Database::Database()
    : m_states(m_client)
    , m_queue(networkThreads)
    , m_netAccess(m_client, m_states, m_queue, m_lastError)
    , m_upgrader(*this, m_lastError)
{
}

Database::~Database()
{
    m_client.cancel();
    m_queue.stop();
}

void Database::SetUp(int /*flags*/)
{
    m_isSetUp = true;
}

Project* Database::find(const Guid& guid) const
{
    const auto found = m_projects.find(guid);
    return found != m_projects.end() ? found->second.get() : nullptr;
}

bool Database::isOpen(const Guid& guid) const
{
    const std::lock_guard lock(m_mutex);
    return find(guid) != nullptr;
}

IZRProject* Database::OpenProject(const Guid& guid, const std::wstring& dataFolder)
{
    const std::lock_guard lock(m_mutex);
    if (!dataFolder.empty())
        m_dataFolder = PathOf(dataFolder);
    if (auto* project = find(guid))
        return project;
    if (!dataFolder.empty())
        return open(guid, m_dataFolder);
    const auto model = m_dataFolderOfModels.find(guid);
    return model != m_dataFolderOfModels.end() ? open(guid, model->second) : nullptr;
}

Project* Database::open(const Guid& guid, const std::filesystem::path& dataFolder)
{
    const std::string text = GuidTextOf(guid);
    const auto folder = ProjectFolder(dataFolder, text);
    std::error_code missing;
    if (!IsFolderName(text) || !std::filesystem::exists(folder, missing)) {
        m_lastError.set({localcode::notHere, "the project " + text + " is not on this machine"});
        return nullptr;
    }
    try {
        auto project = std::make_unique<Project>(folder);
        if (project->GetGuid() != guid)
            throw ProjectFileError("the folder holds another project than its name says");
        for (const auto& model : project->modelGuids())
            m_dataFolderOfModels[GuidOf(model)] = dataFolder;
        return (m_projects[guid] = std::move(project)).get();
    } catch (const ProjectFileError& problem) {
        m_lastError.set({localcode::damaged, problem.what()});
        return nullptr;
    }
}

IZRProject* Database::CreateProj(const Guid& guid, const std::wstring& name, const std::wstring& type,
                                 const ZRIMGeometryModel::CZRIMPosition& position,
                                 const std::wstring& dataFolder)
{
    const std::lock_guard lock(m_mutex);
    m_dataFolder = PathOf(dataFolder);
    ProjectHead head;
    head.guid = GuidTextOf(guid);
    head.name = Utf8Of(name);
    head.type = Utf8Of(type);
    head.longitude = position.GetX();
    head.latitude = position.GetY();
    head.height = position.GetZ();
    if (!IsFolderName(head.guid))
        return nullptr;
    try {
        ProjectFile::create(ProjectFolder(m_dataFolder, head.guid), head);
    } catch (const ProjectFileError& problem) {
        m_lastError.set({localcode::cannotWrite, problem.what()});
        return nullptr;
    }
    return open(guid, m_dataFolder);
}

/// Forgets a project and gives the folder that it stood in; empty when it is not here.
std::filesystem::path Database::takeOut(const Guid& guid)
{
    const std::string text = GuidTextOf(guid);
    std::filesystem::path folder;
    if (auto* project = find(guid))
        folder = project->folder();
    else if (!m_dataFolder.empty() && IsFolderName(text))
        folder = ProjectFolder(m_dataFolder, text);
    m_projects.erase(guid);
    return folder;
}

void Database::DeleteProj(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> models;
    if (const auto* project = find(guid))
        models = project->modelGuids();
    RemoveFolder(takeOut(guid));
    for (const auto& model : models) {
        const auto key = GuidOf(model);
        bool isUsed = false;
        for (const auto& [other, project] : m_projects) {
            const auto guids = project->modelGuids();
            isUsed = isUsed || std::find(guids.begin(), guids.end(), model) != guids.end();
        }
        if (isUsed)
            continue;
        m_dataFolderOfModels.erase(key);
        RemoveFolder(takeOut(key));
    }
}

std::shared_ptr<void> Database::RemoveSubProj(const Guid& guid)
{
    // The handle's end is the removal: whoever still works on the project may hold it.
    return {nullptr, [this, guid](void*) { DeleteProj(guid); }};
}

bool Database::isOnDisk(const Guid& guid, const std::wstring& dataFolder)
{
    std::error_code missing;
    return std::filesystem::exists(ProjectFolder(PathOf(dataFolder), GuidTextOf(guid)), missing);
}

bool Database::download(const Guid& guid, const std::wstring& dataFolder, bool withModels)
{
    const std::string text = GuidTextOf(guid);
    http::Fault fault;
    if (!IsFolderName(text))
        fault = {localcode::notHere, "no project has the name " + text};
    else
        fault = Download(m_client, PathOf(dataFolder)).run(text, withModels);
    if (fault)
        m_lastError.set(fault);
    m_states.forget();
    return !fault;
}

bool Database::GetAllAssignProj(const Guid& guid, const std::wstring& dataFolder,
                                std::map<Guid, std::wstring>& projects)
{
    if (!isOnDisk(guid, dataFolder) && !download(guid, dataFolder, false))
        return false;
    const std::lock_guard lock(m_mutex);
    auto* project = static_cast<Project*>(OpenProject(guid, dataFolder));
    if (project == nullptr)
        return m_upgrader.NeedUpgrade(guid, dataFolder);
    if (auto* store = static_cast<ModelStore*>(project->GetModelStore())) {
        for (const auto& [model, type] : store->types())
            projects[GuidOf(model)] = WideOf(type);
    }
    return true;
}

void Database::GetSubProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects)
{
    const std::lock_guard lock(m_mutex);
    auto* project = OpenProject(guid, dataFolder);
    if (project == nullptr)
        return;
    std::vector<IZRSceneObject*> objects;
    GetProjObjects(project, objects, {});
    for (const auto* object : objects) {
        const auto linked = object->GetLinkedProj();
        if (!ZRSmartFormat::GuidToText(linked).empty())
            projects.insert(linked);
    }
}

void Database::GetBimProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects)
{
    const std::lock_guard lock(m_mutex);
    std::set<Guid> linked;
    GetSubProj(guid, dataFolder, linked);
    for (const auto& project : linked) {
        auto* opened = static_cast<Project*>(OpenProject(project, dataFolder));
        if (opened != nullptr && opened->type() == "BIM")
            projects.insert(project);
    }
}

void Database::LoadProjObjects(IZRProject* project)
{
    std::vector<IZRSceneObject*> objects;
    GetProjObjects(project, objects, {});
}

void Database::GetProjObjects(IZRProject* project, std::vector<IZRSceneObject*>& objects,
                              const std::wstring& filter)
{
    objects.clear();
    if (project == nullptr)
        return;
    try {
        objects = static_cast<Project*>(project)->objects();
    } catch (const ProjectFileError& problem) {
        m_lastError.set({localcode::damaged, problem.what()});
    }
    std::erase_if(objects, [&](const IZRSceneObject* object) {
        return object->GetObjectText().find(filter) == std::wstring::npos;
    });
}

bool Database::SaveAll()
{
    const std::lock_guard lock(m_mutex);
    bool isSaved = true;
    for (const auto& [guid, project] : m_projects) {
        try {
            project->save();
        } catch (const ProjectFileError& problem) {
            m_lastError.set({localcode::cannotWrite, problem.what()});
            isSaved = false;
        }
    }
    return isSaved;
}

bool Database::GetProjStatus(const Guid& guid, const std::wstring& dataFolder, int& state)
{
    Project::DiskState local;
    {
        const std::lock_guard lock(m_mutex);
        auto* project = static_cast<Project*>(OpenProject(guid, dataFolder));
        if (project == nullptr)
            return false;
        try {
            local = project->diskState();
        } catch (const ProjectFileError& problem) {
            m_lastError.set({localcode::damaged, problem.what()});
            return false;
        }
    }
    http::Fault fault;
    const auto server = m_states.find(GuidTextOf(guid), fault);
    if (fault) {
        m_lastError.set(fault);
        return false;
    }
    state = StateOf(local, server);
    return true;
}

bool Database::DownLoadProj(const Guid& guid, const std::wstring& dataFolder)
{
    // Here already, for example as a part of another scene: what stands here may hold work of its own.
    if (isOnDisk(guid, dataFolder))
        return true;
    return download(guid, dataFolder, true);
}

bool Database::UpdateProj(const Guid& /*guid*/, const std::wstring& /*dataFolder*/)
{
    m_lastError.set({localcode::notOffered, "this version cannot update projects yet"});
    return false;
}

bool Database::UploadProj(const Guid& /*guid*/, const std::wstring& /*dataFolder*/, bool /*force*/,
                          bool /*unused*/)
{
    m_lastError.set({localcode::notOffered, "this version cannot upload projects yet"});
    return false;
}

void Database::CloseProject(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    m_projects.erase(guid);
}

void Database::GetLastError(std::wstring& reason)
{
    reason = WideOf(m_lastError.json());
}

} // namespace ZRSmartDB
