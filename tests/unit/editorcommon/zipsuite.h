// SPDX-License-Identifier: MIT
#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

/// A folder of its own for each test, with an archive in it and a place to unpack it to.
class ZipPlace
{
public:
    [[nodiscard]] QString archive() const { return m_folder.filePath(QStringLiteral("house.kyv")); }
    [[nodiscard]] QString target() const { return m_folder.filePath(QStringLiteral("target")); }
    [[nodiscard]] QString source() const { return m_folder.filePath(QStringLiteral("source")); }
    [[nodiscard]] QString path() const { return m_folder.path(); }

    /// Writes a file, with its folders. False when it cannot.
    [[nodiscard]] static bool write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
               file.write(bytes) == bytes.size() && file.flush();
    }

    /// The files below a folder with their bytes.
    [[nodiscard]] static QMap<QString, QByteArray> files(const QString& folder)
    {
        QMap<QString, QByteArray> found;
        QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            QFile file(walk.next());
            if (file.open(QIODevice::ReadOnly))
                found.insert(QDir(folder).relativeFilePath(file.fileName()), file.readAll());
        }
        return found;
    }

private:
    QTemporaryDir m_folder;
};
