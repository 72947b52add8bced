// SPDX-License-Identifier: MIT
// What CServiceConvertMgr asks the server, and when.
#include "convert/serviceconvertmgr.h"

#include "EditorCommon/kyvapi.h"
#include "ZRSmartDB/zrproject.h"
#include "convert/kyvconvertstates.h"
#include "core/homeapp.h"
#include "core/messageboxmgr.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/gridviewcontroller.h"

#include <QDebug>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

QString Text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString();
}

CServiceConvertMgr::TKyvConvertInfo JobOf(const QJsonObject& object)
{
    CServiceConvertMgr::TKyvConvertInfo job;
    job.bimProj = Text(object, "projectId");
    job.name = Text(object, "name");
    job.id = Text(object, "id");
    job.oldModelId = Text(object, "oldModelId");
    job.sort = object.value(QLatin1String("sort")).toInt();
    job.state = convertServiceStateToLocal(Text(object, "status"));
    return job;
}

} // namespace

void CServiceConvertMgr::OnConvertTimerOut()
{
    scanAllProjects();
    m_convertTimer.start(convertInterval);
}

void CServiceConvertMgr::OnCurBimProjTimerOut()
{
    if (m_curBimProj.isEmpty())
        return;
    refresh();
    m_curBimProjTimer.start(curBimProjInterval);
}

void CServiceConvertMgr::OnProcessTimerOut()
{
    if (m_curBimProj.isEmpty() || m_curProcessGuid.isEmpty())
        return;
    updateProgress();
    m_processTimer.start(processInterval);
}

void CServiceConvertMgr::scanAllProjects()
{
    const auto guids = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->projectGuids();
    for (const auto& guid : guids) {
        QStringList excluded;
        if (checkBimProj(guid, false))
            static_cast<void>(readJobs(guid, excluded)); // what cannot be read stays as it was
    }
    CHomeApp::instance().GetMgr<CGridViewController>()->UpdateTipTexts();
}

bool CServiceConvertMgr::readJobs(const QString& bimProj, QStringList& excluded)
{
    QJsonArray array;
    if (!EditorCommon::KYVApi::getConvertKyvInfoBimProj(bimProj, array))
        return false;
    auto& jobs = m_serviceInfos[bimProj];
    jobs.clear();
    for (const auto& element : qAsConst(array)) {
        const auto job = JobOf(element.toObject());
        if (!m_curBimProj.isEmpty() && job.state == KCS_Convert) {
            m_curProcessGuid = job.id;
            if (!m_processTimer.isActive())
                m_processTimer.start(processInterval);
        }
        if (!job.oldModelId.isEmpty())
            excluded.append(job.oldModelId);
        jobs.append(job);
    }
    return true;
}

bool CServiceConvertMgr::readFinished(const QStringList& excluded)
{
    QJsonArray array;
    if (!EditorCommon::KYVApi::getKyvInfoByBimProj(m_curBimProj, array))
        return false;
    auto& finished = m_finishedInfos[m_curBimProj];
    finished.clear();
    for (const auto& element : qAsConst(array)) {
        TKyvConvertInfo model;
        model.bimProj = m_curBimProj;
        model.name = Text(element.toObject(), "name");
        model.id = Text(element.toObject(), "id");
        if (!excluded.contains(model.id))
            finished.append(model);
    }
    return true;
}

bool CServiceConvertMgr::refresh()
{
    if (m_curBimProj.isEmpty())
        return false;
    QStringList excluded;
    bool isRead = readJobs(m_curBimProj, excluded);
    if (isRead) {
        const auto tasks = m_localInfos.value(m_curBimProj);
        for (const auto& task : tasks) {
            if (!task.oldModelId.isEmpty())
                excluded.append(task.oldModelId);
        }
        isRead = readFinished(excluded);
    }
    rebuildFailed();
    if (!isRead)
        return false;
    m_curBimProjTimer.start(curBimProjInterval);
    rebuildRows();
    updateProgress();
    return true;
}

void CServiceConvertMgr::rebuildFailed()
{
    if (m_curBimProj.isEmpty())
        return;
    m_failedArray = {};
    QJsonArray array;
    static_cast<void>(EditorCommon::KYVApi::getConvertFailedList(m_curBimProj, array)); // then it is empty
    for (const auto& element : qAsConst(array)) {
        const auto failure = element.toObject();
        m_failedArray.append(QJsonObject{{QStringLiteral("name"), Text(failure, "name")},
                                         {QStringLiteral("guid"), Text(failure, "id")},
                                         {QStringLiteral("faildDate"), Text(failure, "updateDate")}});
    }
    emit failedArrayChanged();
}

void CServiceConvertMgr::rebuildRows()
{
    CKyvConvertModel::Rows rows;
    for (const auto* source : {&m_finishedInfos, &m_serviceInfos, &m_localInfos}) {
        const auto infos = source->value(m_curBimProj);
        for (const auto& info : infos)
            rows.push_back(NewRow(info));
    }
    m_model->resetData(rows);
}

void CServiceConvertMgr::updateProgress()
{
    if (m_curBimProj.isEmpty() || m_curProcessGuid.isEmpty())
        return;
    double percent = 0;
    if (!EditorCommon::KYVApi::getKyvConvertProcess(m_curProcessGuid, percent))
        return;
    auto* row = m_model->findData(m_curProcessGuid);
    if (row == nullptr)
        return;
    const bool wasMoving = row->process() != 0;
    row->setProcess(percent / 100.0);
    if (percent == 0 && wasMoving)
        refresh(); // the job has ended
}

bool CServiceConvertMgr::checkBimProj(const QString& bimProj, bool isShowDialog)
{
    if (bimProj.isEmpty())
        return false;
    auto& projects = *CHomeApp::instance().GetMgr<CProjectMgr>();
    const auto* project = projects.GetProject(bimProj);
    if (project == nullptr || project->GetType() != L"BIM")
        return false;
    const int status = projects.GetProjStatus(bimProj);
    if (status != CGridViewData::ST_SynchroState && status != CGridViewData::ST_UpdateState) {
        refuse(isShowDialog, QStringLiteral("当前bim工程与服务器不一致请先上传或者更新后再试"));
        qDebug() << "ServiceConvertMgr::checkBimProj 当前bim工程与服务版本不一致,guid:" << bimProj
                 << " status" << status;
        return false;
    }
    const int upload = projects.GetServerProjStatus(bimProj);
    if (upload == SS_Uploading) {
        refuse(isShowDialog, QStringLiteral("当前bim工程服务端上传中请稍后再试"));
        qDebug() << "ServiceConvertMgr::checkBimProj 当前bim工程服务端上传中请稍后再试,guid:" << bimProj;
        return false;
    }
    if (upload == SS_UploadFailed) {
        refuse(isShowDialog, QStringLiteral("当前bim工程服务器上传失败,请先强制上传!"));
        qDebug() << "ServiceConvertMgr::checkBimProj 当前bim工程服务器上传失败,guid:" << bimProj;
        return false;
    }
    return true;
}

void CServiceConvertMgr::refuse(bool isShowDialog, const QString& text) const
{
    if (isShowDialog)
        emit CHomeApp::instance().GetMgr<CMessageBoxMgr>()->sigShowTip(QStringLiteral("提示"), text);
}

} // namespace TorvoEditor
