// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostmessageservice.h"
#include "TorvoSDK/hostwebservice.h"
#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Fakes
{

/// The host's books: what the plugin enters can be read back, what the server would say is set by the test.
class ProjectHost final : public TorvoSDK::IProjectHost
{
public:
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

    /// Enters a project into the server's list.
    void addServerProject(const QString& guid, const QString& name, int type);

    std::vector<TorvoSDK::SServerProjectRecord> serverProjects;
    std::wstring note;
    bool isServerReachable = true;
    std::optional<TorvoSDK::SOrgNode> organisation; ///< without one the account has none

    /// What the last end of an upload was told with. GUI thread.
    TorvoSDK::SLocalProjectRecord uploaded;
    std::vector<std::wstring> uploadedSubProjects;
    QMap<QString, QString> uploadedNames;

    /// The local records by guid.
    [[nodiscard]] std::map<std::wstring, TorvoSDK::SLocalProjectRecord> records() const;

private:
    mutable std::mutex m_mutex; ///< guards the records, which a worker reads
    std::map<std::wstring, TorvoSDK::SLocalProjectRecord> m_records;
};

class MessageService final : public TorvoSDK::IHostMessageService
{
public:
    void AddMessageObserver(TorvoSDK::IMessageObserver* observer) override;

    void tellInfo(const QString& text) const;
    void tellWarn(const QString& text) const;
    void tellError(const QString& text) const;

    std::vector<TorvoSDK::IMessageObserver*> observers;
};

class WebService final : public TorvoSDK::IHostWebService
{
public:
    void ContributeContext(QQmlContext* context) override;
    void AddWebObserver(TorvoSDK::IWebObserver* observer) override;

    std::vector<TorvoSDK::IWebObserver*> observers;
    std::function<void(QQmlContext*)> onContribute; ///< what the host does with the context
};

/// A host with all its services; the last two can be taken away.
class Host final : public TorvoSDK::ITorvoSDKPlugin
{
public:
    TorvoSDK::IProjectHost* GetProjectHost() override { return &projects; }
    TorvoSDK::IHostMessageService* GetMessageService() override { return hasMessages ? &messages : nullptr; }
    TorvoSDK::IHostWebService* GetWebService() override { return hasWeb ? &web : nullptr; }

    ProjectHost projects;
    MessageService messages;
    WebService web;
    bool hasMessages = true;
    bool hasWeb = true;
};

} // namespace Fakes
