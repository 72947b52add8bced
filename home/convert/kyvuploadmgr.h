// SPDX-License-Identifier: MIT
#pragma once

#include "convert/kyvrepackageworker.h"
#include "convert/kyvuploadtask.h"
#include "convert/kyvuploadworker.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThread>

namespace TorvoEditor
{

/// The archives on their way to the server, in two stages: repackaging, then upload. Each stage works on one
/// task at a time, on a thread of its own, in the order of the queue. GUI thread; nothing outlives the
/// program.
///
/// A task that could not be repackaged goes on into the second stage, where no archive is found; its failure
/// becomes final there.
class CKyvUploadMgr : public QObject
{
    Q_OBJECT

public:
    /// Makes the folder of the work folders and starts both threads.
    explicit CKyvUploadMgr(QObject* parent = nullptr);

    /// Waits for the running tasks and removes all work folders.
    ~CKyvUploadMgr() override;

    /// Queues a task at the end of the first stage.
    void addTask(const TKyvUploadTask& task);

    /// Takes a task out of whichever list holds it. Waits for its end when it is running.
    void removeTask(const QString& aliasGuid);

    /// Takes all tasks of a project out of both lists; waits like removeTask.
    void removeBimProjTasks(const QString& bimProj);

    /// Appends the local id of each task of a stage, the running one first.
    void GetRepackageList(QStringList& out) const;
    void GetUploadList(QStringList& out) const;

signals:
    void sigStartRepackage(const QString& aliasGuid, const QString& kyvPath); ///< to the first worker
    void sigStartUpload(const QString& bimProj, const QString& aliasGuid, const QString& updateGuid,
                        int convertType); ///< to the second worker
    void sigRepackageStartNty(const QString& aliasGuid);
    void sigRepackageFinishedNty(const QString& aliasGuid, bool bSuccess);
    void sigUploadStartNty(const QString& aliasGuid);
    void sigUploadFinishedNty(const QString& aliasGuid, const QString& kyvId, bool bSuccess);
    /// The positions in one or both lists have moved.
    void sigSortChanged(bool isRepackage, bool isUpload);

public slots:
    void OnRepackageFinished(const QString& aliasGuid, bool bSuccess);
    void OnUploadFinished(const QString& aliasGuid, const QString& kyvId, bool bSuccess);

private:
    using Tasks = QList<TKyvUploadTask>;

    void startNextRepackage();
    void startNextUpload();

    QThread m_repackageThread;
    CKyvRepackageWorker m_repackageWorker;
    QThread m_uploadThread;
    CKyvUploadWorker m_uploadWorker;
    Tasks m_repackageList; ///< the first one is running, or about to
    Tasks m_uploadList;    ///< the same
    // A task that is sent before its worker has noticed the first sending runs twice. While its second run
    // holds the worker, the task behind it is not sent; these tell the second end that it has to be.
    QString m_repackageSent; ///< local id of the task that was sent last
    QString m_uploadSent;
};

} // namespace TorvoEditor
