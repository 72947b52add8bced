// SPDX-License-Identifier: MIT
#include "core/filefunctions.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonDocument>

namespace TorvoEditor
{

namespace
{

bool OpenOrWarn(QFile& file, QIODevice::OpenMode mode)
{
    if (file.open(mode))
        return true;
    qWarning() << "open file " << file.fileName() << "failed:" << file.errorString();
    return false;
}

} // namespace

bool ReadJsonFile(const QString& path, QJsonObject& object)
{
    QFile file(path);
    if (!OpenOrWarn(file, QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    file.close();

    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(bytes, &error);
    if (document.isNull()) {
        qWarning() << "parse json failed:" << error.errorString();
        return false;
    }
    object = document.object();
    return true;
}

bool ReadTextFile(const QString& path, QString& text)
{
    QFile file(path);
    if (!OpenOrWarn(file, QIODevice::ReadOnly))
        return false;
    text = QString::fromUtf8(file.readAll());
    return true;
}

bool WriteBytesFile(const QString& path, const QByteArray& data)
{
    QFile file(path);
    if (!OpenOrWarn(file, QIODevice::WriteOnly))
        return false;
    file.write(data);
    return true;
}

QString DataDir()
{
    return QDir(QCoreApplication::applicationDirPath()).absolutePath() + QStringLiteral("/data");
}

} // namespace TorvoEditor
