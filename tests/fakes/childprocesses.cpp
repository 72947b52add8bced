// SPDX-License-Identifier: MIT
#include "fakes/childprocesses.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace Fakes
{

namespace
{

QByteArray NoteOf(const QString& fileName)
{
    QFile file(qEnvironmentVariable("TESTCHILD_LOG") + QLatin1Char('/') + fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QList<qint64> RunningChildren()
{
    const QString child = QCoreApplication::applicationDirPath() + QStringLiteral("/TorvoEditorTab.exe");
    QList<qint64> running;
    const auto processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto& process : processes) {
        bool isProcess = false;
        const qint64 id = process.toLongLong(&isProcess);
        // A process that has ended and was not collected yet has no program any more.
        if (isProcess && QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(id)) == child)
            running.append(id);
    }
    return running;
}

QStringList ReceivedBy(const QString& tabName)
{
    return QString::fromUtf8(NoteOf(tabName)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QByteArray StartMessageOf(const QString& tabName)
{
    return NoteOf(tabName + QLatin1String(".start"));
}

QStringList OperatorsReceivedBy(const QString& tabName)
{
    QStringList operators;
    const auto messages = ReceivedBy(tabName);
    for (const auto& message : messages)
        operators.append(
            QJsonDocument::fromJson(message.toUtf8()).object().value(QLatin1String("operator")).toString());
    return operators;
}

} // namespace Fakes
