// SPDX-License-Identifier: MIT
#include "road/projectserver.h"

#include "road/desktop.h"

#include <csignal>
#include <stdexcept>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace road
{

namespace
{

QString ServerFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../server"));
}

QString Program()
{
    return ServerFolder() + QStringLiteral("/bin/torvo-server");
}

std::runtime_error Failure(const QString& what)
{
    return std::runtime_error(what.toStdString());
}

} // namespace

ProjectServer::ProjectServer()
    : m_folder(ServerFolder() + QStringLiteral("/data"))
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    if (QDir(m_folder).exists())
        return;
    const QString content = qEnvironmentVariable("TORVO_SAMPLE_CONTENT");
    const int code = QProcess::execute(Program(), {QStringLiteral("seed"), QStringLiteral("--data"), m_folder,
                                                   QStringLiteral("--samples"), content});
    if (code != 0)
        throw Failure(QStringLiteral("the server cannot be filled from \"%1\"").arg(content));
}

ProjectServer::~ProjectServer()
{
    kill();
}

void ProjectServer::start(const QStringList& options)
{
    const QString portFile = ServerFolder() + QStringLiteral("/port");
    QFile::remove(portFile);
    m_process.start(Program(), QStringList{QStringLiteral("--data"), m_folder, QStringLiteral("--listen"),
                                           QStringLiteral("127.0.0.1:") + m_port,
                                           QStringLiteral("--port-file"), portFile} +
                                   options);
    if (!WaitFor([&] { return QFile::exists(portFile) || m_process.state() == QProcess::NotRunning; }) ||
        m_process.state() == QProcess::NotRunning)
        throw Failure(QStringLiteral("the server has not started: ") + m_process.errorString());
    QFile file(portFile);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("the server's port cannot be read"));
    m_port = QString::fromLatin1(file.readAll().trimmed());
}

void ProjectServer::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void ProjectServer::halt()
{
    signal(SIGSTOP);
}

void ProjectServer::goOn()
{
    signal(SIGCONT);
}

void ProjectServer::signal(int number) const
{
    if (m_process.processId() > 0)
        ::kill(static_cast<pid_t>(m_process.processId()), number);
}

} // namespace road
