// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdatabase.h"
#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/localprojects.h"
#include "smartdb/net/netaccess.h"
#include "smartdb/net/statetable.h"
#include "smartdb/net/taskqueue.h"
#include "smartdb/upgrader.h"

#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>

namespace ZRSmartDB
{

/// The project database of the contract: the border at which failures become answers. What is on this machine
/// is LocalProjects' business, how a project comes from the server Download's, how it stands there
/// StateTable's.
class Database final : public IZRDatabase
{
public:
    explicit Database(const std::shared_ptr<Disk>& disk = LocalDisk());
    ~Database();

    /// Gives up what is under way, waits for it, and closes all projects. Every operation fails from now on.
    void end();

    [[nodiscard]] bool setServer(const std::string& address) { return m_client.setServer(address); }

    /// The next question for a state asks the server.
    void expireStates() { m_states.expire(); }
    void setLimits(const http::Limits& limits) { m_client.setLimits(limits); }

    void SetUp(int flags) override;
    [[nodiscard]] IZRProject* OpenProject(const ZRSmartFormat::SZRFTGuid& guid,
                                          const std::wstring& dataFolder) override;
    [[nodiscard]] IZRProject* CreateProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& name,
                                         const std::wstring& type,
                                         const ZRIMGeometryModel::CZRIMPosition& position,
                                         const std::wstring& dataFolder) override;
    void DeleteProj(const ZRSmartFormat::SZRFTGuid& guid) override;
    std::shared_ptr<void> RemoveSubProj(const ZRSmartFormat::SZRFTGuid& guid) override;
    [[nodiscard]] bool GetAllAssignProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                                        std::map<ZRSmartFormat::SZRFTGuid, std::wstring>& projects) override;
    void GetSubProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                    std::set<ZRSmartFormat::SZRFTGuid>& projects) override;
    void GetBimProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                    std::set<ZRSmartFormat::SZRFTGuid>& projects) override;
    void LoadProjObjects(IZRProject* project) override;
    void GetProjObjects(IZRProject* project, std::vector<IZRSceneObject*>& objects,
                        const std::wstring& filter) override;
    bool SaveAll() override;
    [[nodiscard]] bool GetProjStatus(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                                     int& state) override;
    [[nodiscard]] bool DownLoadProj(const ZRSmartFormat::SZRFTGuid& guid,
                                    const std::wstring& dataFolder) override;
    [[nodiscard]] bool UpdateProj(const ZRSmartFormat::SZRFTGuid& guid,
                                  const std::wstring& dataFolder) override;
    [[nodiscard]] bool UploadProj(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder,
                                  bool force, bool unused) override;
    void CloseProject(const ZRSmartFormat::SZRFTGuid& guid) override;
    [[nodiscard]] CZRDBNetAccess* GetNetAccess() override { return &m_netAccess; }
    [[nodiscard]] IZRProjUpgrader* GetUpgrader() override { return m_isSetUp ? &m_upgrader : nullptr; }
    void GetLastError(std::wstring& reason) override;

private:
    using Guid = ZRSmartFormat::SZRFTGuid;

    /// A thread that is inside of a long operation.
    class Visit;

    void update(const Guid& guid, const std::filesystem::path& dataFolder);
    void download(const Guid& guid, const std::filesystem::path& dataFolder, bool withModels);

    http::Client m_client;
    const std::shared_ptr<LocalProjects> m_local;
    StateTable m_states;
    TaskQueue m_queue;
    NetAccess m_netAccess;
    Upgrader m_upgrader;
    bool m_isSetUp = false;

    std::mutex m_visitMutex; ///< protects the two below
    std::condition_variable m_visitEnded;
    int m_visits = 0;
    bool m_isEnded = false;
};

} // namespace ZRSmartDB
