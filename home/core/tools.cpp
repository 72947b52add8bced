// SPDX-License-Identifier: MIT
#include "core/tools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace TorvoEditor
{

Tools::Tools(QObject* parent)
    : QObject(parent)
{
}

QString Tools::toLocalFile(const QString& urlStr) const
{
    return QUrl(urlStr, QUrl::TolerantMode).toLocalFile();
}

QString Tools::toLocalFile(const QUrl& url) const
{
    return url.toLocalFile();
}

QUrl Tools::fromLocalFile(const QString& file) const
{
    return QUrl::fromLocalFile(file);
}

bool Tools::isExist(const QString& file) const
{
    return QFileInfo::exists(file);
}

QString Tools::filePath(const QString& file) const
{
    return QFileInfo(file).filePath();
}

QString Tools::absoluteFilePath(const QString& file) const
{
    return QFileInfo(file).absoluteFilePath();
}

QString Tools::canonicalFilePath(const QString& file) const
{
    return QFileInfo(file).canonicalFilePath();
}

QString Tools::fileName(const QString& file) const
{
    return QFileInfo(file).fileName();
}

QString Tools::baseName(const QString& file) const
{
    return QFileInfo(file).baseName();
}

QString Tools::completeBaseName(const QString& file) const
{
    return QFileInfo(file).completeBaseName();
}

QString Tools::suffix(const QString& file) const
{
    return QFileInfo(file).suffix();
}

QString Tools::bundleName(const QString& file) const
{
    return QFileInfo(file).bundleName();
}

QString Tools::completeSuffix(const QString& file) const
{
    return QFileInfo(file).completeSuffix();
}

QString Tools::path(const QString& file) const
{
    return QFileInfo(file).path();
}

QString Tools::absolutePath(const QString& file) const
{
    return QFileInfo(file).absolutePath();
}

bool Tools::mkdir(const QString& file) const
{
    return QDir(QString()).mkdir(file);
}

bool Tools::mkpath(const QString& file) const
{
    return QDir(QString()).mkpath(file);
}

QByteArray Tools::readLittleFile(const QString& file) const
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    return source.readAll();
}

QList<QString> Tools::toLocalFileList(const QList<QUrl>& urls) const
{
    QList<QString> files;
    for (const auto& url : urls)
        files.append(toLocalFile(url));
    return files;
}

bool Tools::checkOrCreatePath(const QString& path) const
{
    const QDir folder(path);
    return folder.exists() || folder.mkpath(path);
}

} // namespace TorvoEditor
