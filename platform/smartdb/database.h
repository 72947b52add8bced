// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdatabase.h"
#include "http/client.h"
#include "smartdb/lasterror.h"
#include "smartdb/net/netaccess.h"
#include "smartdb/net/statetable.h"
#include "smartdb/net/taskqueue.h"
#include "smartdb/project.h"
#include "smartdb/upgrader.h"

#include <memory>
#include <mutex>
#include <unordered_map>

namespace ZRSmartDB
{

/// The project database of the contract.
class Database final : public IZRDatabase
{
public:
    Database();
    ~Database();

    [[nodiscard]] bool setServer(const std::string& address) { return m_client.setServer(address); }
    [[nodiscard]] bool isOpen(const ZRSmartFormat::SZRFTGuid& guid) const;

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

    [[nodiscard]] Project* find(const Guid& guid) const;
    [[nodiscard]] Project* open(const Guid& guid, const std::filesystem::path& dataFolder);
    [[nodiscard]] bool download(const Guid& guid, const std::wstring& dataFolder, bool withModels);
    [[nodiscard]] bool isOnDisk(const Guid& guid, const std::wstring& dataFolder);
    [[nodiscard]] std::filesystem::path takeOut(const Guid& guid);

    http::Client m_client;
    LastError m_lastError;
    StateTable m_states;
    TaskQueue m_queue;
    NetAccess m_netAccess;
    Upgrader m_upgrader;
    bool m_isSetUp = false;

    mutable std::recursive_mutex m_mutex; ///< protects everything below; held while a project is read, never
                                          ///< while the server is asked
    std::unordered_map<Guid, std::unique_ptr<Project>> m_projects;
    std::unordered_map<Guid, std::filesystem::path>
        m_dataFolderOfModels;           ///< models of open building projects
    std::filesystem::path m_dataFolder; ///< named last
};

} // namespace ZRSmartDB
