// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

namespace TorvoEditor
{

/// File and path operations for the screens; the QML singleton "Tools" of the module "Tools" 1.0. No state.
/// What is not said otherwise is the operation of the same name of QFileInfo.
class Tools : public QObject
{
    Q_OBJECT

public:
    explicit Tools(QObject* parent = nullptr);

    Q_INVOKABLE QString toLocalFile(const QString& urlStr) const;
    Q_INVOKABLE QString toLocalFile(const QUrl& url) const;
    Q_INVOKABLE QUrl fromLocalFile(const QString& file) const;
    Q_INVOKABLE bool isExist(const QString& file) const;
    Q_INVOKABLE QString filePath(const QString& file) const;
    Q_INVOKABLE QString absoluteFilePath(const QString& file) const;
    Q_INVOKABLE QString canonicalFilePath(const QString& file) const;
    Q_INVOKABLE QString fileName(const QString& file) const;
    Q_INVOKABLE QString baseName(const QString& file) const;
    Q_INVOKABLE QString completeBaseName(const QString& file) const;
    Q_INVOKABLE QString suffix(const QString& file) const;
    Q_INVOKABLE QString bundleName(const QString& file) const;
    Q_INVOKABLE QString completeSuffix(const QString& file) const;
    Q_INVOKABLE QString path(const QString& file) const;
    Q_INVOKABLE QString absolutePath(const QString& file) const;

    /// Makes one level of folder.
    Q_INVOKABLE bool mkdir(const QString& file) const;
    /// Makes all levels of folder.
    Q_INVOKABLE bool mkpath(const QString& file) const;
    /// The whole file, of whatever size; empty when it cannot be opened.
    Q_INVOKABLE QByteArray readLittleFile(const QString& file) const;
    Q_INVOKABLE QList<QString> toLocalFileList(const QList<QUrl>& urls) const;
    /// True when the folder is there, or could be made.
    Q_INVOKABLE bool checkOrCreatePath(const QString& path) const;
};

} // namespace TorvoEditor
