// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/editorcontrol.h"

#include "EditorCommon/kyvapi.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrproject.h"
#include "ZRSmartDB/zrsceneobject.h"
#include "core/homeapp.h"
#include "core/messageboxmgr.h"
#include "project/asyncworker.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/infocardcontroller.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <algorithm>
#include <vector>

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

namespace TorvoEditor
{

namespace
{

CLocalProjectInfoMgr& LocalProjects()
{
    return *CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>();
}

/// True when a scene links to a project that is new or changed here.
bool HasSubProjectToSend(CProjectMgr& projectMgr, const QString& guid)
{
    const auto subProjects = LocalProjects().GetSubProjects(guid);
    return std::any_of(subProjects.begin(), subProjects.end(), [&](const QString& subProject) {
        if (projectMgr.GetProject(subProject) == nullptr)
            return false;
        const int state = projectMgr.GetProjStatus(subProject);
        return state == CGridViewData::ST_LocalState || state == CGridViewData::ST_ModifyState;
    });
}

/// Empties the texts of all objects, which belong to the IoT number that the project had.
void ClearObjectTexts(ZRSmartDB::IZRProject& project)
{
    auto* database = ZRSmartDB::GetIDBDirector()->GetDatabase();
    if (database == nullptr)
        return;
    database->LoadProjObjects(&project);
    std::vector<ZRSmartDB::IZRSceneObject*> objects;
    database->GetProjObjects(&project, objects, std::wstring());
    for (auto* object : objects) {
        if (!object->GetObjectText().empty())
            object->SetObjectText(std::wstring());
    }
}

} // namespace

void CEditorControl::startJob(int jobType, const QString& guid, ProjOperateEnum operation, EndSlot end)
{
    m_eCurOperation = operation;
    auto* worker = new CAsyncWorker(jobType, guid);
    connect(worker, &CAsyncWorker::singSyncFinish, this, end);
    worker->start(QThread::InheritPriority);
    m_bInOperation = true;
}

bool CEditorControl::refuseWhileBusy()
{
    if (m_eCurOperation == PO_None)
        return false;
    const QString text = BusyText(m_eCurOperation);
    showTip(text);
    showTip(text);
    return true;
}

void CEditorControl::slotTreeDblClick(const QString& projGuid)
{
    if (m_gridViewController->ContainsCard(projGuid))
        return;
    if (m_eCurOperation != PO_None) {
        showTip(BusyText(m_eCurOperation));
        return;
    }
    const QString refusal = DownloadRefusal(m_projectMgr->GetServerProjStatus(projGuid));
    if (!refusal.isEmpty()) {
        showTip(refusal);
        return;
    }
    const auto record = m_projectMgr->GetServerProject(projGuid);
    if (m_projectMgr->NeedUpgrade(projGuid))
        m_gridViewController->AddNeedUpgradeCard(projGuid, QString::fromStdWString(record.name));
    else
        m_gridViewController->AddCard(projGuid);
    m_gridViewController->SetStateType(projGuid, CGridViewData::ST_LocalState);
    m_gridViewController->SetDealState(projGuid, CGridViewData::DS_DownloadState);
    if (LocalProjects().ContainsProject(projGuid)) {
        UpdateProjectState(projGuid);
        return;
    }
    startJob(CAsyncWorker::Download, projGuid, PO_Download, &CEditorControl::onDownloadFinished);
}

void CEditorControl::slotProjectDblClick(const QString& projGuid)
{
    if (!projGuid.isEmpty())
        CHomeApp::instance().GetMgr<CTabMgr>()->openTab(projGuid);
}

void CEditorControl::slotCreateProject()
{
    const auto record = CHomeApp::instance().GetMgr<CInfoCardController>()->GetProjectInfo();
    const auto* project = m_projectMgr->CreateProject(record);
    if (project == nullptr)
        return;
    m_gridViewController->AddCard(TextOf(project->GetGuid()));
    m_panelModel->AddItem(TextOf(project->GetGuid()));
    LocalProjects().AddProject(TextOf(project->GetGuid()));
}

void CEditorControl::slotUploadProject(const QString& projGuid, bool bForceUpdate)
{
    const auto* project = m_projectMgr->GetProject(projGuid);
    if (project == nullptr || refuseWhileBusy())
        return;
    const int serverState = m_projectMgr->GetServerProjStatus(projGuid);
    const QString refusal = UploadRefusal(serverState);
    if (!refusal.isEmpty()) {
        showTip(refusal);
        return;
    }
    if (serverState == SS_UploadFailed) {
        if (CHomeApp::instance().GetMgr<CMessageBoxMgr>()->ShowCheckBox(QStringLiteral("强制上传"),
                                                                        QStringLiteral("确定强制上传工程？")))
            startUpload(projGuid, true);
        return;
    }
    const bool hasSubToSend = HasSubProjectToSend(*m_projectMgr, projGuid);
    const int state = m_projectMgr->GetProjStatus(projGuid);
    const bool isScene = project->GetType() == L"CIM";
    if (isScene && state == CGridViewData::ST_LocalState && !canUploadNewScene())
        return;
    const UploadWay way = UploadWayOf(state, hasSubToSend);
    if (way != UploadWay::None)
        startUpload(projGuid, way == UploadWay::Forced || bForceUpdate);
}

bool CEditorControl::canUploadNewScene()
{
    QString message;
    if (m_projectMgr->CanAppIdUpload(QCoreApplication::instance()->property("appID").toString(), message))
        return true;
    if (!message.isEmpty())
        showTip(message);
    return false;
}

void CEditorControl::startUpload(const QString& guid, bool isForced)
{
    m_gridViewController->SetDealState(guid, CGridViewData::DS_UploadState);
    startJob(isForced ? CAsyncWorker::ForcedUpload : CAsyncWorker::Upload, guid, PO_Upload,
             &CEditorControl::onUploadFinished);
}

void CEditorControl::slotSyncProject(const QVariant& var)
{
    const QString guid = var.toString();
    if (m_projectMgr == nullptr || m_projectMgr->GetProject(guid) == nullptr)
        return;
    if (refuseWhileBusy()) {
        // The words have been said once: the next update goes through, whatever still runs.
        m_eCurOperation = PO_None;
        return;
    }
    int serverState = SS_None;
    if (!m_projectMgr->GetServerProjStatus(guid, serverState)) {
        showErrorMsg(QStringLiteral("工程更新失败"), m_projectMgr->GetLastError());
        return;
    }
    if (!canUpdate(guid, serverState)) {
        m_eCurOperation = PO_None;
        return;
    }
    m_gridViewController->SetStateType(guid, CGridViewData::ST_LocalState);
    m_gridViewController->SetDealState(guid, CGridViewData::DS_UpDateState);
    startJob(CAsyncWorker::Update, guid, PO_Update, &CEditorControl::onUpdateFinished);
}

bool CEditorControl::canUpdate(const QString& guid, int serverState)
{
    const QString refusal = UpdateRefusal(serverState);
    if (!refusal.isEmpty()) {
        showTip(refusal);
        return false;
    }
    // Opens them, so that the update finds them in the database.
    const auto subProjects = LocalProjects().GetSubProjects(guid);
    for (const auto& subProject : subProjects)
        static_cast<void>(m_projectMgr->GetProject(subProject));
    return m_projectMgr->GetProjStatus(guid) == CGridViewData::ST_UpdateState;
}

void CEditorControl::upgradeProj(const QString& projGuid)
{
    if (!m_projectMgr->NeedUpgrade(projGuid))
        return;
    m_gridViewController->SetIsUpgrade(projGuid, true);
    startJob(CAsyncWorker::Upgrade, projGuid, PO_Upgrade, &CEditorControl::onUpgradeFinished);
}

bool CEditorControl::isActionOnProject(const QString& guid) const
{
    return m_projectMgr != nullptr && m_panelModel != nullptr && !guid.isEmpty() &&
           m_projectMgr->GetProject(guid) != nullptr;
}

void CEditorControl::slotRemoveProject(const QVariant& var)
{
    const QString guid = var.toString();
    if (!isActionOnProject(guid))
        return;
    if (m_projectMgr->GetProjStatus(guid) == CGridViewData::ST_LocalState) {
        m_panelModel->RemoveItem(guid);
        m_projectMgr->NotifyProjectRemoved(guid);
        m_projectMgr->RemoveLocalData(guid);
    } else {
        m_panelModel->ClearStateIcon(guid);
        LocalProjects().RemoveProject(guid);
    }
    m_gridViewController->RemoveCard(guid);
}

void CEditorControl::slotDeleteProject(const QVariant& var)
{
    const QString guid = var.toString();
    if (!isActionOnProject(guid))
        return;
    if (m_projectMgr->GetProjStatus(guid) == CGridViewData::ST_LocalState) {
        m_panelModel->RemoveItem(guid);
        m_projectMgr->NotifyProjectRemoved(guid);
    } else {
        m_panelModel->ClearStateIcon(guid);
    }
    if (m_projectMgr->RemoveLocalData(guid))
        m_gridViewController->RemoveCard(guid);
}

void CEditorControl::slotProjectInfoUpdate()
{
    const auto record = CHomeApp::instance().GetMgr<CInfoCardController>()->GetProjectInfo();
    auto* project = m_projectMgr->GetProject(record.guid);
    if (project == nullptr)
        return;
    writeProject(*project, record);
    m_projectMgr->WriteBelongsRegion(project, record);
    m_projectMgr->CommitProject();
    m_panelModel->UpdateItem(record.guid);
    m_gridViewController->SetName(record.guid, record.name);
    m_panelModel->UpdateItem(record.guid);
    m_gridViewController->UpdateCard(record.guid);
    // The next look at the project reads it anew.
    m_projectMgr->CloseProject(record.guid);
}

void CEditorControl::writeProject(ZRSmartDB::IZRProject& project, const SProjectInfoRecord& record)
{
    project.SetName(record.name.toStdWString());
    project.SetType(record.type.toStdWString());
    project.SetPosition(PositionOf(record));
    project.SetTemplate(record.templateContent.toStdWString());
    project.SetProj4(record.proj4.toStdWString());
    const std::wstring oldIotCode = project.GetIotCode();
    const std::wstring newIotCode = record.iotCode.toStdWString();
    project.SetIotCode(newIotCode);
    project.SetAttr(L"basemap", record.earthConfig.toStdWString());
    if (m_isBimSdk && !oldIotCode.empty() && oldIotCode != newIotCode)
        ClearObjectTexts(project);
    // Each sub project has the template written to the scene once more; it keeps its own.
    const auto subProjects = LocalProjects().GetSubProjects(record.guid);
    for (const auto& subProject : subProjects) {
        if (m_projectMgr->GetProject(subProject) != nullptr)
            project.SetTemplate(record.templateContent.toStdWString());
    }
}

void CEditorControl::openWebProj(const QString& projGuid)
{
    if (m_projectMgr->GetProjStatus(projGuid) == CGridViewData::ST_LocalState) {
        showTip(QStringLiteral("服务器没有本工程,请先上传"));
        return;
    }
    QString url;
    if (EditorCommon::KYVApi::GetWebProjUrl(projGuid, url))
        QDesktopServices::openUrl(QUrl(url));
}

void CEditorControl::openWebConsole()
{
    QString url;
    if (EditorCommon::KYVApi::GetWebConsoleUrl(url))
        QDesktopServices::openUrl(QUrl(url));
}

} // namespace TorvoEditor
