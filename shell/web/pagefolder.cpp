// SPDX-License-Identifier: MIT
#include "shell/web/pagefolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace shell
{

namespace
{

bool IsBelow(const QString& file, const QString& folder)
{
    return !folder.isEmpty() && file.startsWith(folder + QLatin1Char('/'));
}

/// On another machine, as file://machine/share or //machine/share.
bool IsOnTheNetwork(const QString& file)
{
    return file.startsWith(QLatin1String("//"));
}

} // namespace

PageFolder PageFolder::ofTheProgram()
{
    return PageFolder(QCoreApplication::applicationDirPath() + QStringLiteral("/EditorWebExtern"));
}

QString PageFolder::fileOf(const QString& address)
{
    const QUrl url(address);
    const QString file = url.isLocalFile() ? url.toLocalFile() : address;
    return QDir::isAbsolutePath(file) && !IsOnTheNetwork(file) ? QDir::cleanPath(file) : QString();
}

bool PageFolder::covers(const QString& file) const
{
    return !IsOnTheNetwork(file) && IsBelow(QDir::cleanPath(file), QDir::cleanPath(m_folder));
}

bool PageFolder::holds(const QString& file) const
{
    return !IsOnTheNetwork(file) &&
           IsBelow(QFileInfo(file).canonicalFilePath(), QFileInfo(m_folder).canonicalFilePath());
}

} // namespace shell
