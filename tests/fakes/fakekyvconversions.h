// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

namespace Fakes
{

/// The conversion server. A list, number or step that is not there makes its call fail. Calls lock it; a test
/// changes it through ChangeConversions while the upload thread may be inside.
struct KyvConversions {
    /// Given the file's path and the remote path; null: the file is read, and its digest is "md5 of" its
    /// text.
    std::function<bool(const QString& filePath, const QString& remotePath)> upload;
    bool acceptsJobs = true;
    bool givesIdOfRefusedJob = false;   ///< a refused job has an id all the same
    QMap<QString, QJsonArray> jobs;     ///< by building project
    QMap<QString, QJsonArray> models;   ///< by building project
    QMap<QString, QJsonArray> failures; ///< by building project
    QMap<QString, double> percents;     ///< by job
    bool deletesJobs = true;
    QList<QJsonObject> savedJobs; ///< in the order in which they came
};

/// Runs `change` on the server while no call is inside.
void ChangeConversions(const std::function<void(KyvConversions&)>& change);

/// The jobs that were registered so far.
[[nodiscard]] QList<QJsonObject> SavedJobs();

} // namespace Fakes
