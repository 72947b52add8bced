// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// The first stage: takes the model files out of a chosen archive and packs them again, so that less has to
/// travel. Lives on a thread of its own; one task at a time.
class CKyvRepackageWorker : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// A task is being worked on. Any thread; may still be false for a task that has just been sent.
    [[nodiscard]] bool isRunning() const { return m_running; }

public slots:
    /// Works on a task and tells its end, but for an archive that is not there, of which nothing is told.
    void OnStartRepackage(const QString& aliasGuid, const QString& kyvPath);

    /// Works on the task that was given last.
    void GetUploadFile();

signals:
    /// The new archive lies in the work folder, under the name of the chosen one, or could not be made. The
    /// worker is free by then.
    void sigRepackageFinished(const QString& aliasGuid, bool bSuccess);

private:
    [[nodiscard]] bool repackage() const;

    std::atomic<bool> m_running = false;
    QString m_aliasGuid;
    QString m_kyvPath;
};

} // namespace TorvoEditor
