// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/editorcontrol.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "core/messageboxmgr.h"
#include "project/asyncworker.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QQmlContext>
#include <QtQml>

namespace TorvoEditor
{

namespace
{

constexpr int refreshInterval = 300000;
constexpr int loginExpired = 40014;

int AppVerOf(const QString& text)
{
    if (text == QLatin1String("Lite"))
        return 0;
    if (text == QLatin1String("Normal"))
        return 1;
    return -1;
}

QString ApplicationText(const char* name)
{
    return QCoreApplication::instance()->property(name).toString();
}

/// What to say while `operation` runs; empty for one that has no words of its own.
QString BusyText(ProjOperateEnum operation)
{
    switch (operation) {
    case PO_Download:
        return QStringLiteral("工程下载中，请稍后重试");
    case PO_Upload:
        return QStringLiteral("工程上传中，请稍后重试");
    case PO_Update:
        return QStringLiteral("工程更新中，请稍后重试");
    default:
        return QString(QLatin1String(""));
    }
}

/// Why a project of this server state cannot be brought here; empty when it can.
QString DownloadRefusal(int serverState)
{
    switch (serverState) {
    case SS_UploadFailed:
        return QStringLiteral("服务器本工程已上传失败，请先强制上传");
    case SS_Uploading:
        return QStringLiteral("服务器本工程正在上传中，请稍后再试");
    case SS_Converting:
        return QStringLiteral("服务器本工程正在转换中，请稍后再试");
    default:
        return {};
    }
}

} // namespace

CEditorControl::CEditorControl(QObject* parent)
    : QObject(parent)
{
}

CEditorControl::~CEditorControl() = default;

void CEditorControl::Init()
{
    m_appVer = AppVerOf(ApplicationText("appVer"));
    emit appVerChanged();
    emit loginNameChanged();
    m_panelModel = new CPanelModel(this);
    m_gridViewController = CHomeApp::instance().GetMgr<CGridViewController>();
    m_projectMgr = CHomeApp::instance().GetMgr<CProjectMgr>();
    m_panelModel->InitGrouping();
    loadList();
    connect(&m_timer, &QTimer::timeout, this, &CEditorControl::refreshAll);
    m_timer.start(refreshInterval);
}

void CEditorControl::UnInit() {}

void CEditorControl::RegisterContext(QQmlContext* context)
{
    qmlRegisterType<CPanelModel>("CPanelModel", 1, 0, "CPanelModel");
    context->setContextProperty(QStringLiteral("leftPanelModel"), QVariant::fromValue(m_panelModel));
    context->setContextProperty(QStringLiteral("editorControl"), this);
}

void CEditorControl::setIsBimSdk(bool isBimSdk)
{
    if (m_isBimSdk == isBimSdk)
        return;
    m_isBimSdk = isBimSdk;
    emit isBimSdkChanged();
}

QString CEditorControl::getLoginName() const
{
    return ApplicationText("loginName");
}

QString CEditorControl::getVersion() const
{
    QJsonObject config;
    if (!ReadJsonFile(QCoreApplication::applicationDirPath() + QStringLiteral("/updateConfig.json"), config))
        return QStringLiteral("V1.0.0");
    return QLatin1Char('V') + config.value(QLatin1String("version")).toString();
}

void CEditorControl::loadList()
{
    const auto records = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->projectRecords();
    for (const auto& record : records) {
        const QString guid = QString::fromStdWString(record.guid);
        const QString name = QString::fromStdWString(record.name);
        const bool needUpgrade = record.customMap.contains(L"needUpgrade");
        if (needUpgrade)
            m_gridViewController->AddNeedUpgradeCard(guid, name);
        else
            m_gridViewController->AddCard(guid);

        if (m_panelModel->HasItem(guid))
            UpdateProjectState(guid);
        else if (needUpgrade)
            m_panelModel->AddNeedUpgradeItem(guid, name);
        else
            m_panelModel->AddItem(guid);
    }
}

void CEditorControl::refreshAll()
{
    if (m_bInOperation)
        return;
    m_gridViewController->RefreshStates();
    QStringList guids;
    m_gridViewController->GetCardGuids(guids);
    for (const auto& guid : qAsConst(guids))
        m_panelModel->UpdateItem(guid);
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
    if (CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject(projGuid)) {
        UpdateProjectState(projGuid);
        return;
    }
    m_eCurOperation = PO_Download;
    auto* worker = new CAsyncWorker(CAsyncWorker::Download, projGuid);
    connect(worker, &CAsyncWorker::singSyncFinish, this, &CEditorControl::onDownloadFinished);
    worker->start(QThread::InheritPriority);
    m_bInOperation = true;
}

void CEditorControl::slotProjectDblClick(const QString& projGuid)
{
    if (!projGuid.isEmpty())
        CHomeApp::instance().GetMgr<CTabMgr>()->openTab(projGuid);
}

void CEditorControl::reflushProjTree()
{
    m_projectMgr->RefreshServerList();
    m_panelModel->RebuildTree();
}

void CEditorControl::slotProcessFinsh(int /*exitCode*/)
{
    // The signal is passed on by the process control, which then is the sender: this finds a process only
    // when it is connected to one directly.
    const auto* process = qobject_cast<QProcess*>(sender());
    if (process != nullptr)
        UpdateProjectState(process->objectName());
}

void CEditorControl::onDownloadFinished(const QString& strGuid, bool ret, const QString& errorString)
{
    if (m_projectMgr->GetProject(strGuid) != nullptr)
        CHomeApp::instance().m_plugin->GetProjectHost()->NotifyDownloaded(strGuid.toStdWString(), ret);
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

void CEditorControl::UpdateProjectState(const QString& strGuid)
{
    m_panelModel->UpdateItem(strGuid);
    m_gridViewController->UpdateCard(strGuid);
}

void CEditorControl::showErrorMsg(const QString& msg, const QString& errCode)
{
    if (errCode.isEmpty()) {
        qDebug() << "CEditorControl::showErrorMsg , errCode.isEmpty" << msg;
        return;
    }
    QString text = msg;
    const auto document = QJsonDocument::fromJson(errCode.toUtf8());
    if (!document.isEmpty() && document.object().value(QLatin1String("code")).toInt() == loginExpired)
        text += QStringLiteral("<br/>登录已过期,请重新登录!");
    qDebug() << "CEditorControl::showErrorMsg" << text << errCode;
    showTip(text);
}

void CEditorControl::showTip(const QString& text)
{
    emit CHomeApp::instance().GetMgr<CMessageBoxMgr>()->sigShowTip(QStringLiteral("提示"), text);
}

} // namespace TorvoEditor
