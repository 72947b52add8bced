// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/editorcontrol.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "ZRSmartDB/zrproject.h"
#include "core/homeapp.h"
#include "core/messageboxmgr.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <string>
#include <vector>

#include <QDebug>
#include <QMap>

namespace TorvoEditor
{

namespace
{

TorvoSDK::IProjectHost& ProjectHost()
{
    return *CHomeApp::instance().m_plugin->GetProjectHost();
}

CLocalProjectInfoMgr& LocalProjects()
{
    return *CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>();
}

TorvoSDK::SLocalProjectRecord HostRecord(const CProjectMgr& projectMgr, const ZRSmartDB::IZRProject& project)
{
    TorvoSDK::SLocalProjectRecord record;
    record.guid = ZRSmartFormat::GuidToText(project.GetGuid());
    record.name = project.GetName();
    QMap<QString, QString> attributes;
    projectMgr.GetProjExtAttrs(&project, attributes);
    for (auto entry = attributes.cbegin(); entry != attributes.cend(); ++entry)
        record.customMap[entry.key().toStdWString()] = entry.value().toStdWString();
    return record;
}

} // namespace

void CEditorControl::onDownloadFinished(const QString& strGuid, bool ret, const QString& errorString)
{
    if (m_projectMgr->GetProject(strGuid) != nullptr)
        ProjectHost().NotifyDownloaded(strGuid.toStdWString(), ret);
    m_eCurOperation = PO_None;
    m_bInOperation = false;
    m_gridViewController->SetDealState(strGuid, CGridViewData::DS_NonState);
    if (ret) {
        UpdateProjectState(strGuid);
        return;
    }
    showErrorMsg(QStringLiteral("工程下载失败"), errorString);
    UpdateProjectState(strGuid);
    m_gridViewController->RemoveCard(strGuid);
    m_projectMgr->RemoveLocalData(strGuid);
}

void CEditorControl::onUploadFinished(const QString& strGuid, bool ret, const QString& errorString)
{
    tellHostOfUpload(strGuid, ret);
    m_eCurOperation = PO_None;
    if (ret)
        m_projectMgr->RefreshServerList();
    else
        showErrorMsg(QStringLiteral("工程上传失败"), errorString);
    UpdateProjectState(strGuid);
    m_bInOperation = false;
}

void CEditorControl::tellHostOfUpload(const QString& guid, bool isDone)
{
    const auto* project = m_projectMgr->GetProject(guid);
    if (project == nullptr)
        return;
    const auto record = HostRecord(*m_projectMgr, *project);
    std::vector<std::wstring> subProjects;
    const auto subGuids = LocalProjects().GetSubProjects(guid);
    for (const auto& subGuid : subGuids)
        subProjects.push_back(subGuid.toStdWString());
    ProjectHost().NotifyUploaded(record, subProjects, isDone);
    QMap<QString, QString> names;
    if (isDone && m_projectMgr->GetSubProjNames(guid, names))
        ProjectHost().SetSubProjNames(guid.toStdWString(), names);
}

void CEditorControl::onUpdateFinished(const QString& strGuid, bool ret, const QString& errorString)
{
    if (m_projectMgr->GetProject(strGuid) != nullptr)
        ProjectHost().NotifyUpdated(strGuid.toStdWString(), ret);
    m_eCurOperation = PO_None;
    if (ret)
        m_projectMgr->CloseProject(strGuid);
    else
        showErrorMsg(QStringLiteral("工程更新失败"), errorString);
    UpdateProjectState(strGuid);
    if (m_isBimSdk) {
        m_gridViewController->RefreshStates();
        m_panelModel->RefreshStateIcons();
    }
    m_bInOperation = false;
}

void CEditorControl::onUpgradeFinished(const QString& strGuid, bool ret, const QString& errorString)
{
    m_gridViewController->SetIsUpgrade(strGuid, false);
    UpdateProjectState(strGuid);
    m_eCurOperation = PO_None;
    m_bInOperation = false;
    if (!ret)
        showErrorMsg(QStringLiteral("工程升级失败"), errorString);
}

void CEditorControl::onDownloadDemoFinished(const QString& strGuid, const QString& strCloneGuid, bool ret,
                                            const QString& errorString)
{
    if (m_projectMgr->GetProject(strGuid) != nullptr)
        ProjectHost().NotifyDownloaded(strGuid.toStdWString(), ret);
    m_eCurOperation = PO_None;
    if (ret) {
        m_gridViewController->SetGuid(strGuid, strCloneGuid);
        if (m_projectMgr->GetProject(strCloneGuid) != nullptr) {
            m_panelModel->AddItem(strCloneGuid);
            LocalProjects().AddProject(strCloneGuid);
        }
        UpdateProjectState(strCloneGuid);
    } else {
        showErrorMsg(QStringLiteral("工程下载失败"), errorString);
        m_gridViewController->RemoveCard(strGuid);
        m_projectMgr->RemoveLocalData(strCloneGuid);
    }
    m_projectMgr->RemoveLocalData(strGuid);
    m_bInOperation = false;
}

void CEditorControl::showErrorMsg(const QString& msg, const QString& errCode)
{
    if (errCode.isEmpty()) {
        qDebug() << "CEditorControl::showErrorMsg , errCode.isEmpty" << msg;
        return;
    }
    const QString text = FailureText(msg, errCode);
    qDebug() << "CEditorControl::showErrorMsg" << text << errCode;
    showTip(text);
}

void CEditorControl::showTip(const QString& text)
{
    emit CHomeApp::instance().GetMgr<CMessageBoxMgr>()->sigShowTip(QStringLiteral("提示"), text);
}

} // namespace TorvoEditor
