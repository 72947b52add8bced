// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/editorcontrol.h"

#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/administrativeregion.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/panelmodel.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QProcess>
#include <QQmlContext>
#include <QtQml>

namespace TorvoEditor
{

namespace
{

constexpr int refreshInterval = 300000;

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
    m_regionModel = std::make_unique<CAdministrativeRegion>(m_projectMgr);
    m_regionModel->Load();
}

void CEditorControl::UnInit() {}

void CEditorControl::RegisterContext(QQmlContext* context)
{
    qmlRegisterType<CPanelModel>("CPanelModel", 1, 0, "CPanelModel");
    context->setContextProperty(QStringLiteral("leftPanelModel"), QVariant::fromValue(m_panelModel));
    context->setContextProperty(QStringLiteral("editorControl"), this);
    context->setContextProperty(QStringLiteral("regionModel"), m_regionModel.get());
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

void CEditorControl::updateProjName(const QString& projGuid, const QString& projName)
{
    m_panelModel->RenameItem(projGuid, projName);
}

void CEditorControl::UpdateProjectState(const QString& strGuid)
{
    m_panelModel->UpdateItem(strGuid);
    m_gridViewController->UpdateCard(strGuid);
}

} // namespace TorvoEditor
