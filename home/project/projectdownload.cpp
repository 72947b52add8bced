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
    // The program may end meanwhile, and the manager then lets go of the database.
    auto* database = m_projectDB;
    if (database == nullptr || guid.isEmpty())
        return false;
    qDebug() << "start downLoad proj " << guid;
    if (GetProjType(guid) == QLatin1String("BIM"))
        return DownLoadBimProj(*database, guid);

    const std::wstring dataFolder = m_dataPath.toStdWString();
    if (!database->DownLoadProj(KeyOf(guid), dataFolder)) {
        qDebug() << "downLoad proj falied " << guid;
        return false;
    }
    std::set<ZRSmartFormat::SZRFTGuid> subProjects;
    database->GetSubProj(KeyOf(guid), dataFolder, subProjects);
    for (const auto& subProject : subProjects) {
        if (!database->DownLoadProj(subProject, dataFolder)) {
            qDebug() << "downLoad sub proj falied, main guid " << guid << " sub guid" << TextOf(subProject);
            return false;
        }
    }
    qDebug() << "downLoad proj success " << guid;
    CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->AddProject(guid);
    return true;
}

bool CProjectMgr::DownLoadBimProj(ZRSmartDB::IZRDatabase& database, const QString& guid)
{
    const std::wstring dataFolder = m_dataPath.toStdWString();
    std::map<ZRSmartFormat::SZRFTGuid, std::wstring> assigned;
    if (!database.GetAllAssignProj(KeyOf(guid), dataFolder, assigned)) {
        qDebug() << "DownLoadBimProj GetAllAssignProj falied " << guid;
        return false;
    }
    qDebug() << "start download bimproj: " << guid;
    for (const auto& [key, type] : assigned) {
        if (type == L"MODEL") {
            if (!database.DownLoadProj(key, dataFolder)) {
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
