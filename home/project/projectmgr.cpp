// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "core/homeapp.h"
#include "project/guidtext.h"

#include <QCoreApplication>

namespace TorvoEditor
{

namespace
{

TorvoSDK::IProjectHost* ProjectHost()
{
    return CHomeApp::instance().m_plugin->GetProjectHost();
}

} // namespace

CProjectMgr::CProjectMgr(QObject* parent)
    : QObject(parent)
    , m_dataPath(QCoreApplication::applicationDirPath() + QStringLiteral("/data"))
{
}

void CProjectMgr::Init()
{
    m_projectDB = ZRSmartDB::GetIDBDirector()->GetDatabase();
    RefreshServerList();
    ProjectHost()->GetOrgTree(m_orgRoot);
}

void CProjectMgr::UnInit()
{
    m_projectDB = nullptr;
    ZRSmartDB::FreeIDBDirector();
}

ZRSmartDB::IZRProject* CProjectMgr::GetProject(const QString& guid) const
{
    if (m_projectDB == nullptr)
        return nullptr;
    const auto key = KeyOf(guid);
    if (auto* project = m_projectDB->OpenProject(key, std::wstring()))
        return project;
    return m_projectDB->OpenProject(key, m_dataPath.toStdWString());
}

void CProjectMgr::CloseProject(const QString& guid)
{
    if (m_projectDB != nullptr)
        m_projectDB->CloseProject(KeyOf(guid));
}

TorvoSDK::SServerProjectRecord CProjectMgr::GetServerProject(const QString& guid) const
{
    const auto found = m_serverProjectByGuid.constFind(guid);
    if (found == m_serverProjectByGuid.constEnd())
        return {};
    return m_serverProjects[static_cast<std::size_t>(*found)];
}

QString CProjectMgr::GetProjectImagePath(const QString& guid) const
{
    return m_dataPath + QStringLiteral("/proj_") + guid + QStringLiteral("/projimage.jpg");
}

QString CProjectMgr::GetLastError() const
{
    std::wstring reason;
    if (m_projectDB != nullptr)
        m_projectDB->GetLastError(reason);
    return QString::fromStdWString(reason);
}

bool CProjectMgr::RefreshServerList()
{
    std::vector<TorvoSDK::SServerProjectRecord> records;
    std::wstring note;
    const bool isRead = ProjectHost()->GetServerProjects(records, note);
    m_serverProjects = std::move(records);
    m_serverProjectByGuid.clear();
    for (std::size_t i = m_serverProjects.size(); i > 0; --i)
        m_serverProjectByGuid.insert(QString::fromStdWString(m_serverProjects[i - 1].guid),
                                     static_cast<int>(i - 1));
    if (isRead)
        m_serverListNote = QString::fromStdWString(note);
    return isRead;
}

} // namespace TorvoEditor
