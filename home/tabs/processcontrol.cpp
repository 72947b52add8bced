// SPDX-License-Identifier: MIT
#include "tabs/processcontrol.h"

#include <QCoreApplication>
#include <QDebug>
#include <QProcessEnvironment>

namespace TorvoEditor
{

CProcessControl::CProcessControl(QObject* parent)
    : QObject(parent)
{
}

void CProcessControl::Start(const QString& program, const QStringList& arguments, const QString& name)
{
    auto* process = new QProcess(this);
    if (!name.isEmpty())
        process->setObjectName(name);
    process->setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    process->setWorkingDirectory(QCoreApplication::applicationDirPath());
    const auto finished = QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished);
    connect(process, &QProcess::started, this, &CProcessControl::onStatrted);
    connect(process, &QProcess::errorOccurred, this, &CProcessControl::onErrorOccurred);
    connect(process, &QProcess::readyReadStandardOutput, this, &CProcessControl::onReadyReadStandardOutput);
    connect(process, &QProcess::readyReadStandardError, this, &CProcessControl::onReadyReadStandardError);
    connect(process, finished, this, &CProcessControl::sigFinished);
    connect(process, finished, this, &CProcessControl::onFinished);
    process->start(program, arguments, QIODevice::ReadWrite);
}

void CProcessControl::onStatrted()
{
    auto* process = qobject_cast<QProcess*>(sender());
    qInfo() << process->program() << process->processId() << " started ";
}

void CProcessControl::onFinished(int exitCode)
{
    auto* process = qobject_cast<QProcess*>(sender());
    qInfo() << process->program() << process->processId() << " finished with exitcode " << exitCode;
    process->deleteLater();
}

void CProcessControl::onErrorOccurred(QProcess::ProcessError /*error*/)
{
    auto* process = qobject_cast<QProcess*>(sender());
    qWarning() << process->program() << process->processId() << " error: " << process->errorString();
}

void CProcessControl::onReadyReadStandardOutput()
{
    auto* process = qobject_cast<QProcess*>(sender());
    qInfo() << process->program() << process->processId() << process->readAllStandardOutput();
}

void CProcessControl::onReadyReadStandardError()
{
    auto* process = qobject_cast<QProcess*>(sender());
    qWarning() << process->program() << process->processId() << process->readAllStandardError();
}

} // namespace TorvoEditor
