// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrprojupgrader.h"
#include "fakes/fakenetaccess.h"
#include "fakes/fakeproject.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include <QString>

namespace Fakes
{

using Guid = ZRSmartFormat::SZRFTGuid;

/// What the fake knows of one project.
struct StoredProject {
    std::unique_ptr<Project> project;
    bool isLocal = true;                   ///< on this machine; DownLoadProj makes it so
    bool isOpen = false;                   ///< found by an empty path
    bool needsUpgrade = false;             ///< of an older format; it cannot be opened
    bool isDownloadable = true;            ///< DownLoadProj and UpdateProj succeed
    bool isUploadable = true;              ///< UploadProj succeeds
    bool throwsOnUpload = false;           ///< UploadProj throws a std::runtime_error
    bool isUpgradable = true;              ///< Upgrade succeeds
    int state = -1;                        ///< what GetProjStatus gives; below 0 it fails
    std::map<Guid, std::wstring> assigned; ///< what GetAllAssignProj gives
    bool knowsAssigned = true;             ///< GetAllAssignProj succeeds
    std::set<Guid> subProjects;            ///< what GetSubProj gives
    std::set<Guid> bimProjects;            ///< what GetBimProj gives
};

/// The project database with its projects in a map. A test fills it through `add` and the members; the code
/// under test reaches it through ZRSmartDB::GetIDBDirector. Usable on two threads, as long as a test scripts
/// it from one while the other is not inside.
class SmartDB final : public ZRSmartDB::IZRDBDirector,
                      public ZRSmartDB::IZRDatabase,
                      public ZRSmartDB::IZRProjUpgrader
{
public:
    static SmartDB& instance();

    /// Forgets every project, reply and answer.
    void reset();

    /// A project on this machine, not open.
    StoredProject& add(const QString& guid, const QString& name, const QString& type);
    /// A project that only the server has.
    StoredProject& addOnServer(const QString& guid, const QString& name, const QString& type);
    /// What the fake knows of a project, or null.
    [[nodiscard]] StoredProject* find(const QString& guid);

    bool acceptsServer = true; ///< the answer of SetServer
    bool hasDatabase = true;   ///< GetDatabase gives null without
    bool hasUpgrader = true;   ///< GetUpgrader gives null without
    bool canCreate = true;     ///< CreateProj gives null without
    bool canSave = true;       ///< the answer of SaveAll
    QString lastError;         ///< what GetLastError gives
    NetAccess net;

    [[nodiscard]] bool SetServer(const std::wstring& address) override;
    [[nodiscard]] IZRDatabase* GetDatabase() override { return hasDatabase ? this : nullptr; }

    void SetUp(int flags) override;
    [[nodiscard]] ZRSmartDB::IZRProject* OpenProject(const Guid& guid,
                                                     const std::wstring& dataFolder) override;
    [[nodiscard]] ZRSmartDB::IZRProject* CreateProj(const Guid& guid, const std::wstring& name,
                                                    const std::wstring& type,
                                                    const ZRIMGeometryModel::CZRIMPosition& position,
                                                    const std::wstring& dataFolder) override;
    void DeleteProj(const Guid& guid) override;
    std::shared_ptr<void> RemoveSubProj(const Guid& guid) override;
    [[nodiscard]] bool GetAllAssignProj(const Guid& guid, const std::wstring& dataFolder,
                                        std::map<Guid, std::wstring>& projects) override;
    void GetSubProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects) override;
    void GetBimProj(const Guid& guid, const std::wstring& dataFolder, std::set<Guid>& projects) override;
    void LoadProjObjects(ZRSmartDB::IZRProject* project) override;
    void GetProjObjects(ZRSmartDB::IZRProject* project, std::vector<ZRSmartDB::IZRSceneObject*>& objects,
                        const std::wstring& filter) override;
    bool SaveAll() override;
    [[nodiscard]] bool GetProjStatus(const Guid& guid, const std::wstring& dataFolder, int& state) override;
    [[nodiscard]] bool DownLoadProj(const Guid& guid, const std::wstring& dataFolder) override;
    [[nodiscard]] bool UpdateProj(const Guid& guid, const std::wstring& dataFolder) override;
    [[nodiscard]] bool UploadProj(const Guid& guid, const std::wstring& dataFolder, bool force,
                                  bool unused) override;
    void CloseProject(const Guid& guid) override;
    [[nodiscard]] ZRSmartDB::CZRDBNetAccess* GetNetAccess() override { return &net; }
    [[nodiscard]] IZRProjUpgrader* GetUpgrader() override { return hasUpgrader ? this : nullptr; }
    void GetLastError(std::wstring& reason) override { reason = lastError.toStdWString(); }

    [[nodiscard]] bool NeedUpgrade(const Guid& guid, const std::wstring& dataFolder) override;
    [[nodiscard]] bool Upgrade(const Guid& guid, const std::wstring& dataFolder) override;

private:
    SmartDB() = default;

    StoredProject* findLocal(const Guid& guid);

    std::recursive_mutex m_mutex; ///< guards the projects
    std::map<Guid, StoredProject> m_projects;
};

} // namespace Fakes
