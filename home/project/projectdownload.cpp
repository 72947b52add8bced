// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "ZRSmartDB/zrdatabase.h"
#include "core/homeapp.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"

#include <map>
#include <set>

#include <QDebug>

namespace TorvoEditor
{

bool CProjectMgr::DownLoadProj(const QString& guid)
{
    if (m_projectDB == nullptr || guid.isEmpty())
        return false;
    qDebug() << "start downLoad proj " << guid;
    if (GetProjType(guid) == QLatin1String("BIM"))
        return DownLoadBimProj(guid);

    const std::wstring dataFolder = m_dataPath.toStdWString();
    if (!m_projectDB->DownLoadProj(KeyOf(guid), dataFolder)) {
        qDebug() << "downLoad proj falied " << guid;
        return false;
    }
    std::set<ZRSmartFormat::SZRFTGuid> subProjects;
    m_projectDB->GetSubProj(KeyOf(guid), dataFolder, subProjects);
    for (const auto& subProject : subProjects) {
        if (!m_projectDB->DownLoadProj(subProject, dataFolder)) {
            qDebug() << "downLoad sub proj falied, main guid " << guid << " sub guid" << TextOf(subProject);
            return false;
        }
    }
    qDebug() << "downLoad proj success " << guid;
    CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->AddProject(guid);
    return true;
}

bool CProjectMgr::DownLoadBimProj(const QString& guid)
{
    const std::wstring dataFolder = m_dataPath.toStdWString();
    std::map<ZRSmartFormat::SZRFTGuid, std::wstring> assigned;
    if (!m_projectDB->GetAllAssignProj(KeyOf(guid), dataFolder, assigned)) {
        qDebug() << "DownLoadBimProj GetAllAssignProj falied " << guid;
        return false;
    }
    qDebug() << "start download bimproj: " << guid;
    for (const auto& [key, type] : assigned) {
        if (type == L"MODEL") {
            if (!m_projectDB->DownLoadProj(key, dataFolder)) {
                qDebug() << "downLoad kyv proj falied " << TextOf(key);
                return false;
            }
        } else if (type == L"3DTILES") {
            // Tiles stay on the server. The look-up under the type's own name is what the database has always
            // been asked here.
            static_cast<void>(GetProject(QString::fromStdWString(type)));
        }
    }
    qDebug() << "download bimproj  success : " << guid;
    CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->AddProject(guid);
    return true;
}

} // namespace TorvoEditor
