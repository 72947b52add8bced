// SPDX-License-Identifier: MIT
#include "smartdb/database.h"

#include "ZRIMGeometryModel/zrimposition.h"
#include "smartdb/data/localstate.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/net/download.h"
#include "smartdb/net/update.h"
#include "smartdb/net/upload.h"
#include "smartdb/text.h"

#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr unsigned networkThreads = 2;

} // namespace

Database::Database(const std::shared_ptr<Disk>& disk)
    : m_local(std::make_shared<LocalProjects>(disk))
    , m_states(m_client)
    , m_queue(networkThreads)
    , m_netAccess(m_client, m_states, m_queue, disk)
    , m_upgrader(*m_local)
{
}

Database::~Database()
{
    end();
}

class Database::Visit
{
public:
    explicit Visit(Database& database)
        : m_database(database)
    {
        const std::lock_guard lock(m_database.m_visitMutex);
        if (m_database.m_isEnded)
            throw Failure(http::faultcode::cancelled, "the project database has been closed");
        ++m_database.m_visits;
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit()
    {
        const std::lock_guard lock(m_database.m_visitMutex);
        if (--m_database.m_visits == 0)
            m_database.m_visitEnded.notify_all();
    }

private:
    Database& m_database;
};

void Database::end()
{
    m_client.cancel();
    {
        std::unique_lock lock(m_visitMutex);
        m_isEnded = true;
        m_visitEnded.wait(lock, [this] { return m_visits == 0; });
    }
    m_queue.stop();
    m_local->closeAll();
}

void Database::SetUp(int /*flags*/)
{
    m_isSetUp = true;
}

IZRProject* Database::OpenProject(const Guid& guid, const std::wstring& dataFolder)
{
    return AtBorder<IZRProject*>(nullptr, [&] {
        return dataFolder.empty() ? m_local->find(guid).get() : m_local->open(guid, PathOf(dataFolder)).get();
    });
}

IZRProject* Database::CreateProj(const Guid& guid, const std::wstring& name, const std::wstring& type,
                                 const ZRIMGeometryModel::CZRIMPosition& position,
                                 const std::wstring& dataFolder)
{
    ProjectHead head;
    head.guid = GuidTextOf(guid);
    head.name = Utf8Of(name);
    head.type = Utf8Of(type);
    head.longitude = position.GetX();
    head.latitude = position.GetY();
    head.height = position.GetZ();
    return AtBorder<IZRProject*>(nullptr, [&] { return m_local->create(head, PathOf(dataFolder)).get(); });
}

void Database::DeleteProj(const Guid& guid)
{
    AtBorder([&] { m_local->removeLater(guid).reset(); });
}

std::shared_ptr<void> Database::RemoveSubProj(const Guid& guid)
{
    return AtBorder<std::shared_ptr<void>>(nullptr, [&] { return m_local->removeLater(guid); });
}

void Database::download(const Guid& guid, const std::filesystem::path& dataFolder, bool withModels)
{
    const auto lock = m_local->locks().lock(guid);
    // Here already, for example as a part of another scene: what stands here may hold work of its own.
    if (!m_local->isHere(guid, dataFolder)) {
        Download(m_client, m_local->disk(), dataFolder).run(GuidTextOf(guid), withModels);
        m_states.expire();
    } else if (withModels) {
        Download(m_client, m_local->disk(), dataFolder)
            .runModelsOf(ProjectFolder(dataFolder, GuidTextOf(guid)));
    }
}

bool Database::GetAllAssignProj(const Guid& guid, const std::wstring& dataFolder,
                                std::map<Guid, std::wstring>& projects)
{
    return AtBorder(false, [&] {
        const Visit visit(*this);
        const auto folder = PathOf(dataFolder);
        if (!m_local->isHere(guid, folder))
            download(guid, folder, false);
        projects = m_local->assignedModels(guid, folder);
        return true;
    });
}

void Database::GetSubProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects)
{
    AtBorder([&] { projects.merge(m_local->linkedProjects(guid, PathOf(dataFolder))); });
}

void Database::GetBimProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects)
{
    AtBorder([&] { projects.merge(m_local->linkedBuildings(guid, PathOf(dataFolder))); });
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
    AtBorder([&] { objects = static_cast<Project*>(project)->objects(); });
    std::erase_if(objects, [&](const IZRSceneObject* object) {
        return object->GetObjectText().find(filter) == std::wstring::npos;
    });
}

bool Database::SaveAll()
{
    return m_local->saveAll();
}

bool Database::GetProjStatus(const Guid& guid, const std::wstring& dataFolder, int& state)
{
    return AtBorder(false, [&] {
        const auto folder = PathOf(dataFolder);
        m_local->requireHere(guid, folder);
        const auto answer = m_states.find(GuidTextOf(guid));
        if (answer.fault)
            throw Failure(answer.fault);
        const auto local = m_local->stateOf(guid, folder, answer.state.head);
        state = static_cast<int>(StateOf(local, answer.state.head));
        return true;
    });
}

bool Database::DownLoadProj(const Guid& guid, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const Visit visit(*this);
        download(guid, PathOf(dataFolder), true);
        return true;
    });
}

void Database::update(const Guid& guid, const std::filesystem::path& dataFolder)
{
    const auto lock = m_local->locks().lock(guid);
    if (m_local->hasUnsavedChanges(guid))
        throw Failure(localcode::cannotWrite, "the project has changes that are not saved yet");
    Update(m_client, m_local->disk(), dataFolder).run(GuidTextOf(guid), [&](const std::string& replaced) {
        m_local->retire(GuidOf(replaced));
    });
    m_states.expire();
}

bool Database::UpdateProj(const Guid& guid, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const Visit visit(*this);
        const auto folder = PathOf(dataFolder);
        m_local->requireHere(guid, folder);
        update(guid, folder);
        // A scene may link to more than before.
        for (const auto& linked : m_local->linkedProjects(guid, folder)) {
            if (!m_local->isHere(linked, folder))
                download(linked, folder, true);
        }
        return true;
    });
}

bool Database::UploadProj(const Guid& guid, const std::wstring& dataFolder, bool force, bool /*unused*/)
{
    return AtBorder(false, [&] {
        const Visit visit(*this);
        const auto folder = PathOf(dataFolder);
        m_local->requireHere(guid, folder);
        const auto lock = m_local->locks().lock(guid);
        const StateTable::Expiry expiry(m_states);
        Upload(m_client, m_local->disk(), folder).run(GuidTextOf(guid), force);
        return true;
    });
}

void Database::CloseProject(const Guid& guid)
{
    m_local->close(guid);
}

void Database::GetLastError(std::wstring& reason)
{
    reason = WideOf(RememberedFailure());
}

} // namespace ZRSmartDB
