// SPDX-License-Identifier: MIT
#include "convert/kyvuploadmgr.h"

#include <algorithm>

#include <QDir>

namespace TorvoEditor
{

namespace
{

using Tasks = QList<TKyvUploadTask>;

int IndexOf(const Tasks& tasks, const QString& aliasGuid)
{
    const auto found = std::find_if(tasks.begin(), tasks.end(),
                                    [&](const TKyvUploadTask& task) { return task.aliasGuid == aliasGuid; });
    return found == tasks.end() ? -1 : static_cast<int>(found - tasks.begin());
}

/// True when the first task, which may be running, was among those that went.
bool RemoveOfProject(Tasks& tasks, const QString& bimProj)
{
    const bool isFirstGone = !tasks.isEmpty() && tasks.first().bimProj == bimProj;
    const auto kept = std::remove_if(tasks.begin(), tasks.end(),
                                     [&](const TKyvUploadTask& task) { return task.bimProj == bimProj; });
    tasks.erase(kept, tasks.end());
    return isFirstGone;
}

void AppendIds(const Tasks& tasks, QStringList& out)
{
    for (const auto& task : tasks)
        out.append(task.aliasGuid);
}

void MakeFolder()
{
    const auto folder = KyvUploadFolder();
    if (!QDir(folder).exists())
        QDir().mkdir(folder);
}

/// A running task cannot be stopped: this waits until it has ended.
void Restart(QThread& thread)
{
    thread.quit();
    thread.wait();
    thread.start(QThread::InheritPriority);
}

void End(QThread& thread)
{
    if (!thread.isRunning())
        return;
    thread.quit();
    thread.wait();
}

/// The first task waits without ever having been sent.
bool IsUnsent(const Tasks& tasks, const QString& sent)
{
    return !tasks.isEmpty() && tasks.first().aliasGuid != sent;
}

} // namespace

CKyvUploadMgr::CKyvUploadMgr(QObject* parent)
    : QObject(parent)
{
    MakeFolder();
    connect(this, &CKyvUploadMgr::sigStartRepackage, &m_repackageWorker,
            &CKyvRepackageWorker::OnStartRepackage);
    connect(&m_repackageWorker, &CKyvRepackageWorker::sigRepackageFinished, this,
            &CKyvUploadMgr::OnRepackageFinished);
    m_repackageWorker.moveToThread(&m_repackageThread);
    m_repackageThread.start(QThread::InheritPriority);

    connect(this, &CKyvUploadMgr::sigStartUpload, &m_uploadWorker, &CKyvUploadWorker::OnStartUpload);
    connect(&m_uploadWorker, &CKyvUploadWorker::sigUploadFinished, this, &CKyvUploadMgr::OnUploadFinished);
    m_uploadWorker.moveToThread(&m_uploadThread);
    m_uploadThread.start(QThread::InheritPriority);
}

CKyvUploadMgr::~CKyvUploadMgr()
{
    End(m_uploadThread);
    End(m_repackageThread);
    QDir(KyvUploadFolder()).removeRecursively();
    MakeFolder();
}

void CKyvUploadMgr::addTask(const TKyvUploadTask& task)
{
    m_repackageList.append(task);
    emit sigSortChanged(true, false);
    startNextRepackage();
}

void CKyvUploadMgr::removeTask(const QString& aliasGuid)
{
    if (const int index = IndexOf(m_repackageList, aliasGuid); index >= 0) {
        m_repackageList.removeAt(index);
        if (index == 0) {
            Restart(m_repackageThread);
            startNextRepackage();
        }
    }
    if (const int index = IndexOf(m_uploadList, aliasGuid); index >= 0) {
        m_uploadList.removeAt(index);
        if (index == 0) {
            Restart(m_uploadThread);
            startNextUpload();
        }
    }
    emit sigSortChanged(true, true);
}

void CKyvUploadMgr::removeBimProjTasks(const QString& bimProj)
{
    if (RemoveOfProject(m_repackageList, bimProj)) {
        Restart(m_repackageThread);
        startNextRepackage();
    }
    if (RemoveOfProject(m_uploadList, bimProj)) {
        Restart(m_uploadThread);
        startNextUpload();
    }
    emit sigSortChanged(true, true);
}

void CKyvUploadMgr::GetRepackageList(QStringList& out) const
{
    AppendIds(m_repackageList, out);
}

void CKyvUploadMgr::GetUploadList(QStringList& out) const
{
    AppendIds(m_uploadList, out);
}

void CKyvUploadMgr::startNextRepackage()
{
    if (m_repackageList.isEmpty() || m_repackageWorker.isRunning())
        return;
    const auto task = m_repackageList.first();
    m_repackageSent = task.aliasGuid;
    emit sigStartRepackage(task.aliasGuid, task.kyvPath);
    emit sigRepackageStartNty(task.aliasGuid);
}

void CKyvUploadMgr::startNextUpload()
{
    if (m_uploadList.isEmpty() || m_uploadWorker.isRunning())
        return;
    const auto task = m_uploadList.first();
    m_uploadSent = task.aliasGuid;
    emit sigStartUpload(task.bimProj, task.aliasGuid, task.updateGuid, task.convertType);
    emit sigUploadStartNty(task.aliasGuid);
}

void CKyvUploadMgr::OnRepackageFinished(const QString& aliasGuid, bool bSuccess)
{
    emit sigRepackageFinishedNty(aliasGuid, bSuccess);
    const int index = IndexOf(m_repackageList, aliasGuid);
    if (index < 0) {
        if (IsUnsent(m_repackageList, m_repackageSent))
            startNextRepackage();
        return;
    }
    m_uploadList.append(m_repackageList.takeAt(index));
    emit sigSortChanged(true, true);
    startNextRepackage();
    startNextUpload();
}

void CKyvUploadMgr::OnUploadFinished(const QString& aliasGuid, const QString& kyvId, bool bSuccess)
{
    emit sigUploadFinishedNty(aliasGuid, kyvId, bSuccess);
    const int index = IndexOf(m_uploadList, aliasGuid);
    if (index < 0) {
        if (IsUnsent(m_uploadList, m_uploadSent))
            startNextUpload();
        return;
    }
    m_uploadList.removeAt(index);
    emit sigSortChanged(false, true);
    startNextUpload();
}

} // namespace TorvoEditor
