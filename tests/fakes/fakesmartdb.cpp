// SPDX-License-Identifier: MIT
#include "fakes/fakesmartdb.h"

#include "fakes/calls.h"

#include <stdexcept>

namespace Fakes
{

namespace
{

Guid KeyOf(const QString& guid)
{
    return ZRSmartFormat::GuidFromText(guid.toStdWString());
}

QString Text(const Guid& guid)
{
    return QString::fromStdWString(ZRSmartFormat::GuidToText(guid));
}

void Called(const char* operation, const Guid& guid)
{
    Fakes::Called(QStringLiteral("%1(%2)").arg(QLatin1String(operation), Text(guid)));
}

} // namespace

SmartDB& SmartDB::instance()
{
    static SmartDB database;
    return database;
}

void SmartDB::reset()
{
    const std::lock_guard lock(m_mutex);
    m_projects.clear();
    acceptsServer = true;
    hasDatabase = true;
    hasUpgrader = true;
    canCreate = true;
    canSave = true;
    lastError.clear();
    net.forgetReplies();
}

StoredProject& SmartDB::add(const QString& guid, const QString& name, const QString& type)
{
    const std::lock_guard lock(m_mutex);
    auto& stored = m_projects[KeyOf(guid)];
    stored.project = std::make_unique<Project>(KeyOf(guid), name.toStdWString(), type.toStdWString());
    return stored;
}

StoredProject& SmartDB::addOnServer(const QString& guid, const QString& name, const QString& type)
{
    auto& stored = add(guid, name, type);
    stored.isLocal = false;
    return stored;
}

StoredProject* SmartDB::find(const QString& guid)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_projects.find(KeyOf(guid));
    return found != m_projects.end() ? &found->second : nullptr;
}

StoredProject* SmartDB::findLocal(const Guid& guid)
{
    const auto found = m_projects.find(guid);
    return found != m_projects.end() && found->second.isLocal ? &found->second : nullptr;
}

bool SmartDB::SetServer(const std::wstring& address)
{
    Fakes::Called(QStringLiteral("SetServer(%1)").arg(QString::fromStdWString(address)));
    return acceptsServer;
}

void SmartDB::SetUp(int flags)
{
    Fakes::Called(QStringLiteral("SetUp(%1)").arg(flags));
}

ZRSmartDB::IZRProject* SmartDB::OpenProject(const Guid& guid, const std::wstring& dataFolder)
{
    const std::lock_guard lock(m_mutex);
    Fakes::Called(QStringLiteral("OpenProject(%1,%2)")
                      .arg(Text(guid), dataFolder.empty() ? QString() : QStringLiteral("data")));
    auto* stored = findLocal(guid);
    if (stored == nullptr || stored->needsUpgrade)
        return nullptr;
    if (!dataFolder.empty())
        stored->isOpen = true;
    return stored->isOpen ? stored->project.get() : nullptr;
}

ZRSmartDB::IZRProject* SmartDB::CreateProj(const Guid& guid, const std::wstring& name,
                                           const std::wstring& type,
                                           const ZRIMGeometryModel::CZRIMPosition& position,
                                           const std::wstring& /*dataFolder*/)
{
    const std::lock_guard lock(m_mutex);
    Fakes::Called(QStringLiteral("CreateProj(%1,%2,%3)")
                      .arg(Text(guid), QString::fromStdWString(name), QString::fromStdWString(type)));
    if (!canCreate || m_projects.contains(guid))
        return nullptr;
    auto& stored = m_projects[guid];
    stored.project = std::make_unique<Project>(guid, name, type, position);
    stored.isOpen = true;
    return stored.project.get();
}

void SmartDB::DeleteProj(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    Called("DeleteProj", guid);
    if (auto* stored = findLocal(guid); stored != nullptr && stored->isOpen)
        m_projects.erase(guid);
}

std::shared_ptr<void> SmartDB::RemoveSubProj(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    Called("RemoveSubProj", guid);
    if (auto* stored = findLocal(guid); stored != nullptr && stored->isOpen)
        m_projects.erase(guid);
    return std::make_shared<int>(0);
}

bool SmartDB::GetAllAssignProj(const Guid& guid, const std::wstring& /*dataFolder*/,
                               std::map<Guid, std::wstring>& projects)
{
    const std::lock_guard lock(m_mutex);
    Called("GetAllAssignProj", guid);
    const auto found = m_projects.find(guid);
    if (found == m_projects.end() || !found->second.knowsAssigned)
        return false;
    found->second.isLocal = true;
    projects = found->second.assigned;
    return true;
}

void SmartDB::GetSubProj(const Guid& guid, const std::wstring& /*dataFolder*/, std::set<Guid>& projects)
{
    const std::lock_guard lock(m_mutex);
    Called("GetSubProj", guid);
    if (const auto* stored = findLocal(guid))
        projects.insert(stored->subProjects.begin(), stored->subProjects.end());
}

void SmartDB::GetBimProj(const Guid& guid, const std::wstring& /*dataFolder*/, std::set<Guid>& projects)
{
    const std::lock_guard lock(m_mutex);
    Called("GetBimProj", guid);
    if (const auto* stored = findLocal(guid))
        projects.insert(stored->bimProjects.begin(), stored->bimProjects.end());
}

void SmartDB::LoadProjObjects(ZRSmartDB::IZRProject* project)
{
    Called("LoadProjObjects", project->GetGuid());
}

void SmartDB::GetProjObjects(ZRSmartDB::IZRProject* project, std::vector<ZRSmartDB::IZRSceneObject*>& objects,
                             const std::wstring& filter)
{
    const std::lock_guard lock(m_mutex);
    Fakes::Called(QStringLiteral("GetProjObjects(%1,%2)")
                      .arg(Text(project->GetGuid()), QString::fromStdWString(filter)));
    for (const auto& object : static_cast<Project*>(project)->objects) {
        if (object->GetObjectText().find(filter) != std::wstring::npos)
            objects.push_back(object.get());
    }
}

bool SmartDB::SaveAll()
{
    Fakes::Called(QStringLiteral("SaveAll()"));
    return canSave;
}

bool SmartDB::GetProjStatus(const Guid& guid, const std::wstring& /*dataFolder*/, int& state)
{
    const std::lock_guard lock(m_mutex);
    Called("GetProjStatus", guid);
    const auto* stored = findLocal(guid);
    if (stored == nullptr || stored->state < 0)
        return false;
    state = stored->state;
    return true;
}

bool SmartDB::DownLoadProj(const Guid& guid, const std::wstring& /*dataFolder*/)
{
    const std::lock_guard lock(m_mutex);
    Called("DownLoadProj", guid);
    const auto found = m_projects.find(guid);
    if (found == m_projects.end() || !found->second.isDownloadable)
        return false;
    found->second.isLocal = true;
    return true;
}

bool SmartDB::UpdateProj(const Guid& guid, const std::wstring& /*dataFolder*/)
{
    const std::lock_guard lock(m_mutex);
    Called("UpdateProj", guid);
    const auto* stored = findLocal(guid);
    return stored != nullptr && stored->isDownloadable;
}

bool SmartDB::UploadProj(const Guid& guid, const std::wstring& /*dataFolder*/, bool force, bool /*unused*/)
{
    const std::lock_guard lock(m_mutex);
    Fakes::Called(QStringLiteral("UploadProj(%1,%2)")
                      .arg(Text(guid), force ? QStringLiteral("force") : QStringLiteral("plain")));
    const auto* stored = findLocal(guid);
    if (stored != nullptr && stored->throwsOnUpload)
        throw std::runtime_error("upload");
    return stored != nullptr && stored->isUploadable;
}

void SmartDB::CloseProject(const Guid& guid)
{
    const std::lock_guard lock(m_mutex);
    Called("CloseProject", guid);
    if (auto* stored = findLocal(guid))
        stored->isOpen = false;
}

bool SmartDB::NeedUpgrade(const Guid& guid, const std::wstring& /*dataFolder*/)
{
    const std::lock_guard lock(m_mutex);
    Called("NeedUpgrade", guid);
    const auto* stored = findLocal(guid);
    return stored != nullptr && stored->needsUpgrade;
}

bool SmartDB::Upgrade(const Guid& guid, const std::wstring& /*dataFolder*/)
{
    const std::lock_guard lock(m_mutex);
    Called("Upgrade", guid);
    auto* stored = findLocal(guid);
    if (stored == nullptr || !stored->isUpgradable)
        return false;
    stored->needsUpgrade = false;
    return true;
}

} // namespace Fakes

namespace ZRSmartDB
{

IZRDBDirector* GetIDBDirector()
{
    return &Fakes::SmartDB::instance();
}

void FreeIDBDirector()
{
    Fakes::Called(QStringLiteral("FreeIDBDirector()"));
}

} // namespace ZRSmartDB
