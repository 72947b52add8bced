// SPDX-License-Identifier: MIT
#include "shell/projecthost.h"

#include <QLoggingCategory>

namespace shell
{

namespace
{

Q_LOGGING_CATEGORY(log, "torvo.shell")

void LogEnd(const char* operation, const std::wstring& guid, bool success)
{
    qCInfo(log) << operation << QString::fromStdWString(guid) << (success ? "succeeded" : "failed");
}

} // namespace

void ProjectHost::setOrganisation(const std::optional<TorvoSDK::SOrgNode>& root)
{
    const std::lock_guard lock(m_mutex);
    m_organisation = root;
}

void ProjectHost::SetProjectRecords(const std::vector<TorvoSDK::SLocalProjectRecord>& records)
{
    const std::lock_guard lock(m_mutex);
    m_local.clear();
    for (const auto& record : records)
        m_local[record.guid] = record;
}

void ProjectHost::AddProjectRecord(const TorvoSDK::SLocalProjectRecord& record)
{
    const std::lock_guard lock(m_mutex);
    m_local[record.guid] = record;
}

void ProjectHost::GetProjectRecord(const std::wstring& guid, TorvoSDK::SLocalProjectRecord& record)
{
    const std::lock_guard lock(m_mutex);
    if (const auto local = m_local.find(guid); local != m_local.end()) {
        record = local->second;
        return;
    }
    if (const auto known = m_onServer.find(guid); known != m_onServer.end())
        record = {known->second.guid, known->second.name, known->second.customMap};
}

void ProjectHost::RemoveProjectRecord(const std::wstring& guid)
{
    const std::lock_guard lock(m_mutex);
    m_local.erase(guid);
}

bool ProjectHost::GetServerProjects(std::vector<TorvoSDK::SServerProjectRecord>& records, std::wstring& note)
{
    QString noteText;
    QString problem;
    records.clear();
    if (!m_server.projects(records, noteText, problem)) {
        qCWarning(log) << problem;
        return false;
    }
    note = noteText.toStdWString();
    const std::lock_guard lock(m_mutex);
    m_onServer.clear();
    for (const auto& record : records)
        m_onServer[record.guid] = record;
    return true;
}

bool ProjectHost::GetOrgTree(TorvoSDK::SOrgNode& root)
{
    const std::lock_guard lock(m_mutex);
    if (!m_organisation)
        return false;
    root = *m_organisation;
    return true;
}

void ProjectHost::NotifyUploaded(const TorvoSDK::SLocalProjectRecord& record,
                                 const std::vector<std::wstring>& subProjects, bool success)
{
    LogEnd("upload of", record.guid, success);
    qCInfo(log) << "with" << subProjects.size() << "sub projects";
}

void ProjectHost::SetSubProjNames(const std::wstring& guid, const QMap<QString, QString>& names)
{
    const std::lock_guard lock(m_mutex);
    m_subProjectNames[guid] = names;
}

void ProjectHost::NotifyDownloaded(const std::wstring& guid, bool success)
{
    LogEnd("download of", guid, success);
}

void ProjectHost::NotifyUpdated(const std::wstring& guid, bool success)
{
    LogEnd("update of", guid, success);
}

} // namespace shell
