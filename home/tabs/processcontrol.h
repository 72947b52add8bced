// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

/// Starts child programs and logs what becomes of them. Children that are still running when this object goes
/// are killed. GUI thread.
class CProcessControl : public QObject
{
    Q_OBJECT

public:
    explicit CProcessControl(QObject* parent = nullptr);

    /// Starts a child in the application's folder and returns at once; a failure to start is only logged.
    /// `name` becomes the object name of its QProcess, unless it is empty.
    void Start(const QString& program, const QStringList& arguments, const QString& name);

signals:
    /// A child has finished, well or by a crash. It does not come for a child that could not be started.
    void sigFinished(int exitCode);

private slots:
    void onStatrted();
    void onFinished(int exitCode);
    void onErrorOccurred(QProcess::ProcessError error);
    void onReadyReadStandardOutput();
    void onReadyReadStandardError();
};

} // namespace TorvoEditor
