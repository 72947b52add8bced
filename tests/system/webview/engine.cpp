// SPDX-License-Identifier: MIT
#include "webview/engine.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>

namespace webview
{

namespace
{

QByteArray ContentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Name and parent of a process, from "PID (NAME) STATE PARENT ...".
struct Stat {
    QByteArray name;
    qint64 parent = 0;
};

Stat StatOf(const QString& process)
{
    const QByteArray line = ContentOf(QStringLiteral("/proc/%1/stat").arg(process));
    const int open = line.indexOf('(');
    const int close = line.lastIndexOf(')');
    return {line.mid(open + 1, close - open - 1), line.mid(close + 2).split(' ').value(1).toLongLong()};
}

} // namespace

QStringList MappedEngineFiles()
{
    QStringList found;
    const auto lines = ContentOf(QStringLiteral("/proc/self/maps")).split('\n');
    for (const auto& line : lines) {
        const QString file = QString::fromLocal8Bit(line.mid(line.indexOf('/')));
        if ((file.contains(QLatin1String("WebEngine")) || file.contains(QLatin1String("TorvoWebView"))) &&
            !found.contains(file))
            found.append(file);
    }
    return found;
}

int EngineProcesses()
{
    QHash<qint64, Stat> processes;
    const auto names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const auto& name : names) {
        if (name.toLongLong() > 0)
            processes.insert(name.toLongLong(), StatOf(name));
    }
    const auto isOurs = [&](qint64 process) {
        while (process > 1 && process != QCoreApplication::applicationPid())
            process = processes.value(process).parent;
        return process == QCoreApplication::applicationPid();
    };
    int count = 0;
    for (auto each = processes.cbegin(); each != processes.cend(); ++each)
        // The system cuts names to fifteen bytes.
        count += each->name.startsWith("QtWebEnginePro") && isOurs(each.key()) ? 1 : 0;
    return count;
}

} // namespace webview
