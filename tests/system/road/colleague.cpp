// SPDX-License-Identifier: MIT
#include "road/colleague.h"

#include "road/desktop.h"
#include "road/samplecontent.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QProcess>

namespace road
{

namespace
{

constexpr int longest = 60000;

} // namespace

Colleague::Colleague(QString server)
    : m_server(std::move(server))
    , m_dataFolder(m_folder.path())
{
}

Colleague::Colleague(QString server, QString dataFolder)
    : m_server(std::move(server))
    , m_dataFolder(std::move(dataFolder))
{
}

int Colleague::stateOf(const QString& guid) const
{
    QString said;
    return run({"state", guid}, &said) ? said.toInt() : -1;
}

QString Colleague::noteOf(const QString& guid) const
{
    QString said;
    return run({"note", guid}, &said) ? said : QString();
}

QJsonObject Colleague::factsOf(const QString& guid) const
{
    QString said;
    return run({"facts", guid}, &said) ? QJsonDocument::fromJson(said.toUtf8()).object() : QJsonObject();
}

bool Colleague::run(const QStringList& command, QString* said) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QDir(QCoreApplication::applicationDirPath()).filePath("torvo-colleague"),
                  QStringList{m_server, account, password, m_dataFolder} + command);
    // The windows of this process go on meanwhile.
    if (!WaitFor([&] { return process.state() == QProcess::NotRunning; }, longest))
        return false;
    if (said != nullptr)
        *said = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace road
