// SPDX-License-Identifier: MIT
#include "fakes/fakehost.h"

#include "fakes/calls.h"

namespace Fakes
{

namespace
{

QString Text(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

QString Text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

void ProjectHost::SetProjectRecords(const std::vector<TorvoSDK::SLocalProjectRecord>& records)
{
    QStringList guids;
    {
        const std::lock_guard lock(m_mutex);
        m_records.clear();
        for (const auto& record : records) {
            m_records[record.guid] = record;
            guids.append(Text(record.guid));
        }
    }
    Called(QStringLiteral("SetProjectRecords(%1)").arg(guids.join(QLatin1Char(','))));
}

void ProjectHost::AddProjectRecord(const TorvoSDK::SLocalProjectRecord& record)
{
    {
        const std::lock_guard lock(m_mutex);
        m_records[record.guid] = record;
    }
    Called(QStringLiteral("AddProjectRecord(%1)").arg(Text(record.guid)));
}

void ProjectHost::GetProjectRecord(const std::wstring& guid, TorvoSDK::SLocalProjectRecord& record)
{
    Called(QStringLiteral("GetProjectRecord(%1)").arg(Text(guid)));
    const std::lock_guard lock(m_mutex);
    const auto local = m_records.find(guid);
    if (local != m_records.end()) {
        record = local->second;
        return;
    }
    for (const auto& onServer : serverProjects) {
        if (onServer.guid == guid)
            record = {onServer.guid, onServer.name, onServer.customMap};
    }
}

void ProjectHost::RemoveProjectRecord(const std::wstring& guid)
{
    Called(QStringLiteral("RemoveProjectRecord(%1)").arg(Text(guid)));
    const std::lock_guard lock(m_mutex);
    m_records.erase(guid);
}

bool ProjectHost::GetServerProjects(std::vector<TorvoSDK::SServerProjectRecord>& records,
                                    std::wstring& noteOfServer)
{
    Called(QStringLiteral("GetServerProjects()"));
    records = isServerReachable ? serverProjects : std::vector<TorvoSDK::SServerProjectRecord>();
    if (isServerReachable)
        noteOfServer = note;
    return isServerReachable;
}

bool ProjectHost::GetOrgTree(TorvoSDK::SOrgNode& root)
{
    Called(QStringLiteral("GetOrgTree()"));
    if (!organisation)
        return false;
    root = *organisation;
    return true;
}

void ProjectHost::NotifyUploaded(const TorvoSDK::SLocalProjectRecord& record,
                                 const std::vector<std::wstring>& subProjects, bool success)
{
    uploaded = record;
    uploadedSubProjects = subProjects;
    Called(QStringLiteral("NotifyUploaded(%1,%2)").arg(Text(record.guid), Text(success)));
}

void ProjectHost::SetSubProjNames(const std::wstring& guid, const QMap<QString, QString>& names)
{
    uploadedNames = names;
    Called(QStringLiteral("SetSubProjNames(%1,%2)")
               .arg(Text(guid), QStringList(names.keys()).join(QLatin1Char(','))));
}

void ProjectHost::NotifyDownloaded(const std::wstring& guid, bool success)
{
    Called(QStringLiteral("NotifyDownloaded(%1,%2)").arg(Text(guid), Text(success)));
}

void ProjectHost::NotifyUpdated(const std::wstring& guid, bool success)
{
    Called(QStringLiteral("NotifyUpdated(%1,%2)").arg(Text(guid), Text(success)));
}

void ProjectHost::addServerProject(const QString& guid, const QString& name, int type)
{
    TorvoSDK::SServerProjectRecord record;
    record.guid = guid.toStdWString();
    record.name = name.toStdWString();
    record.type = type;
    serverProjects.push_back(record);
}

std::map<std::wstring, TorvoSDK::SLocalProjectRecord> ProjectHost::records() const
{
    const std::lock_guard lock(m_mutex);
    return m_records;
}

void MessageService::AddMessageObserver(TorvoSDK::IMessageObserver* observer)
{
    Called(QStringLiteral("AddMessageObserver()"));
    observers.push_back(observer);
}

void MessageService::tellInfo(const QString& text) const
{
    for (auto* observer : observers)
        observer->OnInfo(text);
}

void MessageService::tellWarn(const QString& text) const
{
    for (auto* observer : observers)
        observer->OnWarn(text);
}

void MessageService::tellError(const QString& text) const
{
    for (auto* observer : observers)
        observer->OnError(text);
}

void WebService::ContributeContext(QQmlContext* context)
{
    Called(QStringLiteral("ContributeContext()"));
    if (onContribute)
        onContribute(context);
}

void WebService::AddWebObserver(TorvoSDK::IWebObserver* observer)
{
    Called(QStringLiteral("AddWebObserver()"));
    observers.push_back(observer);
}

} // namespace Fakes
