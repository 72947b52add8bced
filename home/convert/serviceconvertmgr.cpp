// SPDX-License-Identifier: MIT
#include "convert/serviceconvertmgr.h"

#include "EditorCommon/kyvapi.h"
#include "convert/kyvconvertstates.h"
#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "view/context/editorcontrol/gridviewcontroller.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDebug>
#include <QQmlContext>
#include <QUuid>

namespace TorvoEditor
{

namespace
{

constexpr int lengthOfEnding = 4; ///< ".kyv"

} // namespace

CServiceConvertMgr::CServiceConvertMgr(QObject* parent)
    : QObject(parent)
    , m_convertTimer(this)
    , m_curBimProjTimer(this)
    , m_processTimer(this)
    , m_model(new CKyvConvertModel(this))
{
    m_convertTimer.setObjectName(QStringLiteral("convertTimer"));
    m_curBimProjTimer.setObjectName(QStringLiteral("curBimProjTimer"));
    m_processTimer.setObjectName(QStringLiteral("processTimer"));
    LoadConfig();
}

void CServiceConvertMgr::Init()
{
    if (!m_isVisible)
        return;
    using Queue = CKyvUploadMgr;
    using This = CServiceConvertMgr;
    connect(&m_uploadMgr, &Queue::sigRepackageStartNty, this, &This::OnRepackageStartNty);
    connect(&m_uploadMgr, &Queue::sigRepackageFinishedNty, this, &This::OnRepackageFinishedNty);
    connect(&m_uploadMgr, &Queue::sigUploadStartNty, this, &This::OnUploadStartNty);
    connect(&m_uploadMgr, &Queue::sigUploadFinishedNty, this, &This::OnUploadFinishedNty);
    connect(&m_uploadMgr, &Queue::sigSortChanged, this, &This::OnSortChanged);
    connect(&m_convertTimer, &QTimer::timeout, this, &This::OnConvertTimerOut);
    connect(&m_curBimProjTimer, &QTimer::timeout, this, &This::OnCurBimProjTimerOut);
    connect(&m_processTimer, &QTimer::timeout, this, &This::OnProcessTimerOut);
    m_convertTimer.start(convertInterval);
    scanAllProjects();
}

void CServiceConvertMgr::UnInit() {}

void CServiceConvertMgr::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("serviceConvertMgr"), this);
    context->setContextProperty(QStringLiteral("serviceConvertModel"), m_model);
}

void CServiceConvertMgr::LoadConfig()
{
    QJsonObject config;
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/WebConvert.json");
    const bool isVisible =
        ReadJsonFile(path, config) && config.value(QLatin1String("using")).toString() == QLatin1String("1");
    if (m_isVisible == isVisible)
        return;
    m_isVisible = isVisible;
    emit isVisibleChanged();
}

bool CServiceConvertMgr::checkServiceConvert(const QString& bimProj)
{
    if (bimProj.isEmpty() || !checkBimProj(bimProj, true))
        return false;
    m_curBimProj = bimProj;
    if (refresh())
        return true;
    m_curBimProj.clear();
    return false;
}

void CServiceConvertMgr::clearCurBimProj()
{
    refresh();
    auto* cards = CHomeApp::instance().GetMgr<CGridViewController>();
    cards->UpdateTipTexts();
    cards->RefreshStates();
    m_curBimProj.clear();
    m_curProcessGuid.clear();
}

CServiceConvertMgr::TKyvConvertInfo CServiceConvertMgr::newRecord(const QString& path, int convertType) const
{
    const auto fileName = path.mid(path.lastIndexOf('/') + 1);
    TKyvConvertInfo record;
    record.bimProj = m_curBimProj;
    record.name = fileName.left(fileName.size() - lengthOfEnding);
    record.state = KCS_WaitRepackage;
    record.aliasGuid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    record.path = path;
    record.convertType = convertType;
    return record;
}

void CServiceConvertMgr::queue(const TKyvConvertInfo& record)
{
    m_uploadMgr.addTask(
        {record.bimProj, record.aliasGuid, record.oldModelId, record.path, record.convertType});
}

void CServiceConvertMgr::addKyvModel(const QString& strPath, int convertType)
{
    const auto record = newRecord(strPath, convertType);
    m_localInfos[m_curBimProj].append(record);
    m_model->addData(NewRow(record));
    queue(record);
}

void CServiceConvertMgr::updateKyvModel(const QString& strPath, const QString& kyvProj, int convertType)
{
    auto record = newRecord(strPath, convertType);
    record.oldModelId = kyvProj;
    auto& finished = m_finishedInfos[m_curBimProj];
    const auto replaced = std::find_if(finished.begin(), finished.end(),
                                       [&](const auto& info) { return info.kyvGuid == kyvProj; });
    if (replaced != finished.end())
        finished.erase(replaced);
    m_localInfos[m_curBimProj].append(record);
    if (auto* row = m_model->findData(kyvProj)) {
        m_model->removeData(kyvProj);
        row->deleteLater();
    }
    m_model->addData(NewRow(record));
    queue(record);
}

void CServiceConvertMgr::delKyvModel(const QString& kyvGuid)
{
    auto& tasks = m_localInfos[m_curBimProj];
    const auto task =
        std::find_if(tasks.begin(), tasks.end(), [&](const auto& info) { return info.aliasGuid == kyvGuid; });
    if (task != tasks.end()) {
        tasks.erase(task);
        m_uploadMgr.removeTask(kyvGuid);
    } else {
        static_cast<void>(EditorCommon::KYVApi::delKyvConvert(kyvGuid)); // the next list shows what stayed
    }
    refresh();
}

void CServiceConvertMgr::delAllKyvModel()
{
    m_localInfos[m_curBimProj].clear();
    m_uploadMgr.removeBimProjTasks(m_curBimProj);
    const auto jobs = m_serviceInfos.value(m_curBimProj);
    for (const auto& job : jobs)
        static_cast<void>(EditorCommon::KYVApi::delKyvConvert(job.id));
    refresh();
}

CServiceConvertMgr::TKyvConvertInfo* CServiceConvertMgr::findLocal(const QString& aliasGuid, QString& bimProj)
{
    for (auto project = m_localInfos.begin(); project != m_localInfos.end(); ++project) {
        for (auto& task : project.value()) {
            if (task.aliasGuid == aliasGuid) {
                bimProj = project.key();
                return &task;
            }
        }
    }
    return nullptr;
}

void CServiceConvertMgr::setLocalState(const QString& aliasGuid, int state)
{
    QString bimProj;
    auto* task = findLocal(aliasGuid, bimProj);
    if (task == nullptr)
        return;
    task->state = state;
    if (bimProj != m_curBimProj)
        return;
    if (auto* row = m_model->findData(aliasGuid))
        row->showState(state);
}

void CServiceConvertMgr::OnRepackageStartNty(const QString& aliasGuid)
{
    setLocalState(aliasGuid, KCS_Repackage);
}

void CServiceConvertMgr::OnRepackageFinishedNty(const QString& aliasGuid, bool bSuccess)
{
    setLocalState(aliasGuid, bSuccess ? KCS_WaitUpload : KCS_RepackageFailed);
}

void CServiceConvertMgr::OnUploadStartNty(const QString& aliasGuid)
{
    setLocalState(aliasGuid, KCS_Upload);
}

void CServiceConvertMgr::OnUploadFinishedNty(const QString& aliasGuid, const QString& projId, bool bSuccess)
{
    static_cast<void>(projId); // the job comes with the server's list
    QString bimProj;
    auto* task = findLocal(aliasGuid, bimProj);
    if (task == nullptr)
        return;
    task->state = KCS_UploadFailed;
    if (bSuccess) {
        auto& tasks = m_localInfos[bimProj];
        tasks.erase(std::find_if(tasks.begin(), tasks.end(),
                                 [&](const auto& info) { return info.aliasGuid == aliasGuid; }));
    }
    if (bimProj == m_curBimProj)
        refresh();
}

void CServiceConvertMgr::OnSortChanged(bool isRepackageChanged, bool isUploadChanged)
{
    QStringList repackaging;
    QStringList uploading;
    if (isRepackageChanged)
        m_uploadMgr.GetRepackageList(repackaging);
    if (isUploadChanged)
        m_uploadMgr.GetUploadList(uploading);
    for (auto project = m_localInfos.begin(); project != m_localInfos.end(); ++project) {
        for (auto& task : project.value()) {
            const int first = repackaging.indexOf(task.aliasGuid);
            const int place = first >= 0 ? first : uploading.indexOf(task.aliasGuid);
            if (place < 0)
                continue;
            task.sort = place;
            auto* row = project.key() == m_curBimProj ? m_model->findData(task.aliasGuid) : nullptr;
            if (row != nullptr)
                row->setSort(place);
        }
    }
}

bool CServiceConvertMgr::hasUploadingProj() const
{
    return HoldsTask(m_localInfos);
}

void CServiceConvertMgr::GetConvertInfo(QMap<QString, QList<int>>& positions) const
{
    AddQueuePositions(m_serviceInfos, positions);
}

CKyvConvertData* NewRow(const CServiceConvertMgr::TKyvConvertInfo& info)
{
    auto* row = new CKyvConvertData;
    row->setGuid(!info.kyvGuid.isEmpty() ? info.kyvGuid : !info.id.isEmpty() ? info.id : info.aliasGuid);
    row->setName(info.name);
    row->setSort(info.sort);
    row->setProcess(info.process);
    row->showState(info.state);
    return row;
}

bool HoldsTask(const CServiceConvertMgr::TKyvConvertMap& tasks)
{
    return std::any_of(tasks.begin(), tasks.end(),
                       [](const auto& ofProject) { return !ofProject.isEmpty(); });
}

void AddQueuePositions(const CServiceConvertMgr::TKyvConvertMap& jobs, QMap<QString, QList<int>>& positions)
{
    for (auto project = jobs.begin(); project != jobs.end(); ++project) {
        for (const auto& job : project.value()) {
            if (job.state != KCS_WaitConvert)
                positions[project.key()].append(0);
            else if (job.sort >= 0)
                positions[project.key()].append(job.sort);
            else
                qDebug() << "CServiceConvertMgr::GetConvertInfo kyv convert failed guid:" << job.id;
        }
    }
}

} // namespace TorvoEditor
