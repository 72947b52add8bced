// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrproject.h"
#include "ZRSmartDB/zrprojupgrader.h"
#include "ZRSmartDB/zrsceneobject.h"
#include "core/homeapp.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"

#include <set>
#include <vector>

#include <QDebug>
#include <QScopeGuard>

namespace TorvoEditor
{

namespace
{

// The numbers of CGridViewData::StateTypeEnum, which lies above this folder.
constexpr int localState = 0;
constexpr int modifyState = 2;
constexpr int updateState = 3;

ZRSmartDB::IZRProject* FindOpen(ZRSmartDB::IZRDatabase& database, const QString& guid)
{
    return database.OpenProject(KeyOf(guid), std::wstring());
}

QString NameOfOpen(ZRSmartDB::IZRDatabase& database, const QString& guid)
{
    const auto* project = FindOpen(database, guid);
    return project != nullptr ? QString::fromStdWString(project->GetName()) : QString();
}

bool IsScene(const ZRSmartDB::IZRProject* project)
{
    return project != nullptr && project->GetType() == L"CIM";
}

QStringList SubProjectsOf(const QString& guid)
{
    return CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->GetSubProjects(guid);
}

} // namespace

bool CProjectMgr::UploadProject(const QString& guid, const bool& force)
{
    const auto tellTheEnd = qScopeGuard([&] { emit afterUpload(guid); });
    if (m_projectDB == nullptr)
        return false;
    const auto* project = FindOpen(*m_projectDB, guid);
    const QString name = NameOfOpen(*m_projectDB, guid);
    qDebug() << "start UploadProject proj, proj:" << name << " guid:" << guid;
    if (!m_projectDB->UploadProj(KeyOf(guid), m_dataPath.toStdWString(), force, false)) {
        qDebug() << "start UploadProject proj failed, projName:" << name << " guid:" << guid;
        return false;
    }
    if (IsScene(project) && !uploadSubProjects(guid, name, force))
        return false;
    qDebug() << "start UploadProject proj success, projName:" << name << " guid:" << guid;
    return true;
}

bool CProjectMgr::uploadSubProjects(const QString& guid, const QString& name, const bool& force)
{
    const std::wstring dataFolder = m_dataPath.toStdWString();
    const auto subProjects = SubProjectsOf(guid);
    for (const auto& subProject : subProjects) {
        static_cast<void>(m_projectDB->OpenProject(KeyOf(subProject), dataFolder));
        int state = localState;
        GetProjStatus(subProject, state);
        if (state != localState && state != modifyState)
            continue;
        if (!m_projectDB->UploadProj(KeyOf(subProject), dataFolder, force, false)) {
            qDebug() << "start UploadProject subProj failed, projName:" << name << " guid:" << guid
                     << " subName:" << NameOfOpen(*m_projectDB, subProject) << " subGuid:" << subProject;
            return false;
        }
    }
    return true;
}

bool CProjectMgr::UpdateProject(const QString& guid)
{
    if (m_projectDB == nullptr)
        return false;
    if (IsScene(FindOpen(*m_projectDB, guid)) && !updateSubProjects(guid))
        return false;
    if (!IsEmptyOrgNode(m_orgRoot) && !updateBimProjects(guid))
        return false;
    return m_projectDB->UpdateProj(KeyOf(guid), m_dataPath.toStdWString());
}

bool CProjectMgr::updateSubProjects(const QString& guid)
{
    const auto subProjects = SubProjectsOf(guid);
    for (const auto& subProject : subProjects) {
        if (!m_projectDB->UpdateProj(KeyOf(subProject), m_dataPath.toStdWString())) {
            qDebug() << "CProjectMgr::UpdateProject UploadProject subProj failed, projID:" << subProject;
            return false;
        }
    }
    return true;
}

bool CProjectMgr::updateBimProjects(const QString& guid)
{
    const auto bimProjects = bimSet(guid);
    for (const auto& bimProject : bimProjects) {
        int state = localState;
        GetProjStatus(bimProject, state);
        if (state != updateState)
            continue;
        if (!m_projectDB->UpdateProj(KeyOf(bimProject), m_dataPath.toStdWString())) {
            qDebug() << "CProjectMgr::UpdateProject UploadProject bimProj failed, projID:" << bimProject;
            return false;
        }
    }
    return true;
}

bool CProjectMgr::UpgradeProject(const QString& guid)
{
    if (m_projectDB == nullptr || !upgradeOne(guid))
        return false;
    std::set<ZRSmartFormat::SZRFTGuid> subProjects;
    m_projectDB->GetSubProj(KeyOf(guid), m_dataPath.toStdWString(), subProjects);
    for (const auto& subProject : subProjects) {
        if (!upgradeOne(TextOf(subProject)))
            return false;
    }
    return true;
}

bool CProjectMgr::upgradeOne(const QString& guid)
{
    const auto key = KeyOf(guid);
    const std::wstring dataFolder = m_dataPath.toStdWString();
    int state = localState;
    if (!m_projectDB->GetProjStatus(key, dataFolder, state)) {
        qWarning() << "GetProjStatus failed" << GetLastError();
        return false;
    }
    if (state == updateState && !m_projectDB->UpdateProj(key, dataFolder)) {
        qWarning() << "UpdateProj failed" << GetLastError();
        return false;
    }
    return !NeedUpgrade(guid) || m_projectDB->GetUpgrader()->Upgrade(key, dataFolder);
}

bool CProjectMgr::GetSubProjNames(const QString& guid, QMap<QString, QString>& names)
{
    auto* project = GetProject(guid);
    if (project == nullptr)
        return false;
    m_projectDB->LoadProjObjects(project);
    std::vector<ZRSmartDB::IZRSceneObject*> objects;
    m_projectDB->GetProjObjects(project, objects, std::wstring());
    for (const auto* object : objects) {
        const QString text = QString::fromStdWString(object->GetObjectText());
        if (!text.isEmpty())
            names[TextOf(object->GetGuid())] = text;
    }
    m_projectDB->CloseProject(KeyOf(guid));
    return true;
}

} // namespace TorvoEditor
