// SPDX-License-Identifier: MIT
#include "core/restartscript.h"

#include <QDir>

namespace TorvoEditor
{

QString HostPath(const QString& applicationDir)
{
    return QDir(applicationDir + QStringLiteral("/../../shell")).absolutePath() +
           QStringLiteral("/KYVShell.exe");
}

QString RestartBatchText(const QString& hostPath)
{
    auto text = QStringLiteral("\n@echo off\nchoice /t 2 /d y /n >nul \nkyvShell notAutoLogin\ndel %0\n");
    return text.replace(QLatin1String("kyvShell"), hostPath);
}

QString RestartShellText(const QString& hostPath, qint64 processId)
{
    auto quotedHost = hostPath;
    quotedHost.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    // A process that has left but has not been collected by its parent still has its number; it counts as
    // gone.
    return QStringLiteral("#!/bin/sh\n"
                          "sleep 2\n"
                          "while [ -e /proc/%1/status ] && ! grep -q '^State:.Z' /proc/%1/status; do\n"
                          "    sleep 0.1\n"
                          "done\n"
                          "rm -f -- \"$0\"\n"
                          "exec '%2' notAutoLogin\n")
        .arg(QString::number(processId), quotedHost);
}

} // namespace TorvoEditor
