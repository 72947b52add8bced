// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/projecthost.h"
#include "shell/projectserver.h"

#include <mutex>
#include <unordered_map>

namespace shell
{

/// The host's books about projects: the local ones as the plugin tells them, the server's as the server lists
/// them.
class ProjectHost final : public TorvoSDK::IProjectHost
{
public:
    /// `server` must outlive this object.
    explicit ProjectHost(ProjectServer& server)
        : m_server(server)
    {
    }

    /// Takes the organisation that the login brought.
    void setOrganisation(const std::optional<TorvoSDK::SOrgNode>& root);

    void SetProjectRecords(const std::vector<TorvoSDK::SLocalProjectRecord>& records) override;
    void AddProjectRecord(const TorvoSDK::SLocalProjectRecord& record) override;
    void GetProjectRecord(const std::wstring& guid, TorvoSDK::SLocalProjectRecord& record) override;
    void RemoveProjectRecord(const std::wstring& guid) override;
    bool GetServerProjects(std::vector<TorvoSDK::SServerProjectRecord>& records, std::wstring& note) override;
    bool GetOrgTree(TorvoSDK::SOrgNode& root) override;
    void NotifyUploaded(const TorvoSDK::SLocalProjectRecord& record,
                        const std::vector<std::wstring>& subProjects, bool success) override;
    void SetSubProjNames(const std::wstring& guid, const QMap<QString, QString>& names) override;
    void NotifyDownloaded(const std::wstring& guid, bool success) override;
    void NotifyUpdated(const std::wstring& guid, bool success) override;

private:
    ProjectServer& m_server;
    std::mutex m_mutex; ///< protects everything below: a worker asks for records while the window is in use
    std::unordered_map<std::wstring, TorvoSDK::SLocalProjectRecord> m_local;
    std::unordered_map<std::wstring, TorvoSDK::SServerProjectRecord> m_onServer;
    std::unordered_map<std::wstring, QMap<QString, QString>> m_subProjectNames;
    std::optional<TorvoSDK::SOrgNode> m_organisation;
};

} // namespace shell
