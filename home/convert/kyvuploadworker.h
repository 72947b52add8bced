// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include <QJsonObject>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// The second stage: sends a repackaged archive and registers its conversion. Lives on a thread of its own;
/// one task at a time.
class CKyvUploadWorker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// A task is being worked on. Any thread; may still be false for a task that has just been sent.
    [[nodiscard]] bool isRunning() const { return m_running; }

public slots:
    /// Works on a task, removes its work folder and tells its end.
    void OnStartUpload(const QString& bimProj, const QString& aliasGuid, const QString& updateGuid,
                       int convertType);

signals:
    /// `kyvId` is the server's id of the job. The worker is free by then.
    void sigUploadFinished(const QString& aliasGuid, const QString& kyvId, bool bSuccess);

private:
    [[nodiscard]] bool upload(QString& id) const;

    std::atomic<bool> m_running = false;
    QString m_bimProj;
    QString m_aliasGuid;
    QString m_updateGuid;
    int m_convertType = 0;
};

/// What decides how the server converts, added to its job.
void AddConvertMode(int convertType, QJsonObject& job);

} // namespace TorvoEditor
