// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ZRSmartDB/zrproject.h"
#include "ZRSmartDB/zrprojupgrader.h"

#include <string>
#include <unordered_map>

/// A project that has a name and a type and nothing else.
class PreparedProject final : public ZRSmartDB::IZRProject
{
public:
    using Text = std::wstring;

    PreparedProject(const ZRSmartFormat::SZRFTGuid& guid, Text name, Text type)
        : m_guid(guid)
        , m_name(std::move(name))
        , m_type(std::move(type))
    {
    }

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return m_guid; }
    [[nodiscard]] ZRIMGeometryModel::CZRIMPosition GetPosition() const override { return {}; }
    void SetPosition(const ZRIMGeometryModel::CZRIMPosition& /*position*/) override {}
    [[nodiscard]] Text GetName() const override { return m_name; }
    void SetName(const Text& name) override { m_name = name; }
    [[nodiscard]] Text GetType() const override { return m_type; }
    void SetType(const Text& type) override { m_type = type; }
    void SetAttr(const Text& /*key*/, const Text& /*value*/) override {}
    [[nodiscard]] Text GetAttr(const Text& /*key*/) const override { return {}; }
    void SetIotCode(const Text& /*code*/) override {}
    [[nodiscard]] Text GetIotCode() const override { return {}; }
    void SetProj4(const Text& /*parameters*/) override {}
    [[nodiscard]] Text GetProj4() const override { return {}; }
    void SetTemplate(const Text& /*text*/) override {}
    [[nodiscard]] Text GetTemplate() const override { return {}; }
    [[nodiscard]] Text GetImagePath() const override { return {}; }
    [[nodiscard]] ZRSmartDB::IZRModelStore* GetModelStore() override { return nullptr; }

private:
    ZRSmartFormat::SZRFTGuid m_guid;
    Text m_name;
    Text m_type;
};

/// A project database that costs next to nothing: every project is open, stands on the server as it stands
/// here, and every answer lies ready. What a tree never asks for fails.
class PreparedDatabase final : public ZRSmartDB::IZRDBDirector,
                               public ZRSmartDB::IZRDatabase,
                               public ZRSmartDB::CZRDBNetAccess,
                               public ZRSmartDB::IZRProjUpgrader
{
public:
    using Guid = ZRSmartFormat::SZRFTGuid;
    using Text = std::wstring;
    using Task = Concurrency::task<Text>;

    static PreparedDatabase& instance();

    void add(const Text& guid, const Text& name, const Text& type);

    [[nodiscard]] bool SetServer(const Text& /*address*/) override { return true; }
    [[nodiscard]] IZRDatabase* GetDatabase() override { return this; }

    void SetUp(int /*flags*/) override {}
    [[nodiscard]] ZRSmartDB::IZRProject* OpenProject(const Guid& guid, const Text& dataFolder) override;
    [[nodiscard]] ZRSmartDB::IZRProject* CreateProj(const Guid& guid, const Text& name, const Text& type,
                                                    const ZRIMGeometryModel::CZRIMPosition& position,
                                                    const Text& dataFolder) override;
    void DeleteProj(const Guid& /*guid*/) override {}
    std::shared_ptr<void> RemoveSubProj(const Guid& /*guid*/) override { return nullptr; }
    [[nodiscard]] bool GetAllAssignProj(const Guid& /*guid*/, const Text& /*dataFolder*/,
                                        std::map<Guid, Text>& /*projects*/) override
    {
        return false;
    }
    void GetSubProj(const Guid& /*guid*/, const Text& /*dataFolder*/, std::set<Guid>& /*projects*/) override
    {
    }
    void GetBimProj(const Guid& /*guid*/, const Text& /*dataFolder*/, std::set<Guid>& /*projects*/) override
    {
    }
    void LoadProjObjects(ZRSmartDB::IZRProject* /*project*/) override {}
    void GetProjObjects(ZRSmartDB::IZRProject* /*project*/,
                        std::vector<ZRSmartDB::IZRSceneObject*>& /*objects*/, const Text& /*filter*/) override
    {
    }
    bool SaveAll() override { return false; }
    [[nodiscard]] bool GetProjStatus(const Guid& guid, const Text& dataFolder, int& state) override;
    [[nodiscard]] bool DownLoadProj(const Guid& /*guid*/, const Text& /*dataFolder*/) override
    {
        return false;
    }
    [[nodiscard]] bool UpdateProj(const Guid& /*guid*/, const Text& /*dataFolder*/) override { return false; }
    [[nodiscard]] bool UploadProj(const Guid& /*guid*/, const Text& /*dataFolder*/, bool /*force*/,
                                  bool /*unused*/) override
    {
        return false;
    }
    void CloseProject(const Guid& /*guid*/) override {}
    [[nodiscard]] CZRDBNetAccess* GetNetAccess() override { return this; }
    [[nodiscard]] IZRProjUpgrader* GetUpgrader() override { return this; }
    void GetLastError(Text& reason) override { reason.clear(); }

    Task GetStatusByProjId(const Guid& guid, std::shared_ptr<Text> reply) override;
    Task GetProjType(const Guid& /*guid*/, std::shared_ptr<Text> /*reply*/) override { return m_failed; }
    Task GetCountryList(std::shared_ptr<Text> /*reply*/) override { return m_failed; }
    Task GetAdministrativeRegion(const Text& /*id*/, std::shared_ptr<Text> /*reply*/) override
    {
        return m_failed;
    }
    Task CanAppIdUpload(const Text& /*appId*/) override { return m_failed; }
    Task DownloadFileAry(const std::vector<Text>& /*serverPaths*/,
                         const std::vector<Text>& /*localPaths*/) override
    {
        return m_failed;
    }
    void LoginByToken(const Text& /*token*/) override {}
    void SetCookie(const Text& /*cookies*/) override {}

    [[nodiscard]] bool NeedUpgrade(const Guid& /*guid*/, const Text& /*dataFolder*/) override
    {
        return false;
    }
    [[nodiscard]] bool Upgrade(const Guid& /*guid*/, const Text& /*dataFolder*/) override { return false; }

private:
    PreparedDatabase();

    std::unordered_map<Guid, PreparedProject> m_projects;
    Task m_done;   ///< of a query that has had its reply
    Task m_failed; ///< of a query that has none
};
