// SPDX-License-Identifier: MIT
#include "road/processes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace road
{

namespace
{

QString ProcessFolder(pid_t process)
{
    return QStringLiteral("/proc/%1").arg(process);
}

} // namespace

QList<pid_t> ProcessesOf(const QString& program)
{
    const QString path =
        QFileInfo(QCoreApplication::applicationDirPath() + '/' + program).canonicalFilePath();
    QList<pid_t> found;
    const auto names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const auto& name : names) {
        const auto process = static_cast<pid_t>(name.toInt());
        // One that has ended and is not collected yet has no program any more.
        if (process > 0 && process != QCoreApplication::applicationPid() &&
            QFile::symLinkTarget(ProcessFolder(process) + QStringLiteral("/exe")) == path)
            found.append(process);
    }
    return found;
}

QList<pid_t> Children()
{
    return ProcessesOf(QStringLiteral("TorvoEditorTab.exe"));
}

QStringList ArgumentsOf(pid_t process)
{
    QFile file(ProcessFolder(process) + QStringLiteral("/cmdline"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList arguments;
    const auto parts = file.readAll().split('\0');
    for (const auto& part : parts) {
        if (!part.isEmpty())
            arguments.append(QString::fromLocal8Bit(part));
    }
    return arguments;
}

} // namespace road
