// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

namespace TorvoEditor
{

/// One archive on its way to the server.
struct TKyvUploadTask {
    QString bimProj;     ///< guid of the building project
    QString aliasGuid;   ///< local id, the name of the task's work folder
    QString updateGuid;  ///< the server's id of the model that this upload replaces; empty for a new model
    QString kyvPath;     ///< full path of the chosen archive
    int convertType = 0; ///< 0 levels, performance first; 1 levels, quality first; else static
};

/// The folder of all work folders, with a slash at its end.
[[nodiscard]] inline QString KyvUploadFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/kyvUpload/");
}

/// The work folder of one task.
[[nodiscard]] inline QString KyvWorkFolder(const QString& aliasGuid)
{
    return KyvUploadFolder() + aliasGuid;
}

} // namespace TorvoEditor
