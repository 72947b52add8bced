// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace EditorCommon
{

/// The project server's calls beside the project database.
///
/// Every call but init waits for the server's reply, at most the time of its limit (10 s for a query;
/// uploadKyv for as long as bytes move), and returns true on success. On failure the out parameters are
/// untouched. GUI thread and the upload thread.
class KYVApi
{
public:
    KYVApi() = delete;

    /// Remembers address and token for all later calls. Sends nothing.
    static void init(const QString& serverAddr, const QString& token);

    /// A web address of the account's console, good for one login by a browser within a minute.
    [[nodiscard]] static bool GetWebConsoleUrl(QString& url);

    /// The same for the page of one project.
    [[nodiscard]] static bool GetWebProjUrl(const QString& guid, QString& url);

    /// Renames a project on the server.
    [[nodiscard]] static bool SetProjNameToService(const QString& guid, const QString& name);

    /// Sends a model archive; the server keeps it under `remotePath`. `md5` takes its digest, 32 lower-case
    /// hexadecimal digits. A second call after a failure goes on where the first one stopped.
    [[nodiscard]] static bool uploadKyv(const QString& filePath, const QString& projectId,
                                        const QString& remotePath, QString& md5);

    /// Registers a conversion job for an archive that has been sent. `job` has the texts "projectId", "path",
    /// "name", "md5", "oldModelId", "origin", "type" and "option" and the number "status". `id` takes the
    /// job's id.
    [[nodiscard]] static bool kyvSave(const QJsonObject& job, QString& id);

    /// The jobs of a project under way: objects with the texts "projectId", "name", "id", "oldModelId" and
    /// "status" and the number "sort".
    [[nodiscard]] static bool getConvertKyvInfoBimProj(const QString& bimProj, QJsonArray& jobs);

    /// The finished models of a project: objects with the texts "id" and "name".
    [[nodiscard]] static bool getKyvInfoByBimProj(const QString& bimProj, QJsonArray& models);

    /// The failed jobs of a project: objects with the texts "name", "id" and "updateDate".
    [[nodiscard]] static bool getConvertFailedList(const QString& bimProj, QJsonArray& failures);

    /// How far a job has come, 0 to 100.
    [[nodiscard]] static bool getKyvConvertProcess(const QString& id, double& percent);

    /// Cancels and deletes a job.
    [[nodiscard]] static bool delKyvConvert(const QString& id);
};

} // namespace EditorCommon
