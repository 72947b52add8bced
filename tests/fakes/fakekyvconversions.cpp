// SPDX-License-Identifier: MIT
#include "fakes/fakekyvconversions.h"

#include "EditorCommon/kyvapi.h"
#include "fakes/calls.h"

#include <mutex>

#include <QFile>
#include <QFileInfo>

namespace Fakes
{

namespace
{

std::mutex conversionsMutex; ///< guards the server

KyvConversions& Server()
{
    static KyvConversions server;
    return server;
}

bool ReadFile(const QString& path, QString& md5)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    md5 = QStringLiteral("md5 of ") + QString::fromUtf8(file.readAll());
    return true;
}

/// The list of a project, when the server has one.
bool Give(QMap<QString, QJsonArray> KyvConversions::*lists, const QString& bimProj, QJsonArray& array)
{
    const std::lock_guard lock(conversionsMutex);
    const auto& known = Server().*lists;
    const auto found = known.find(bimProj);
    if (found == known.end())
        return false;
    array = *found;
    return true;
}

} // namespace

void ChangeConversions(const std::function<void(KyvConversions&)>& change)
{
    const std::lock_guard lock(conversionsMutex);
    change(Server());
}

QList<QJsonObject> SavedJobs()
{
    const std::lock_guard lock(conversionsMutex);
    return Server().savedJobs;
}

} // namespace Fakes

namespace EditorCommon
{

bool KYVApi::uploadKyv(const QString& filePath, const QString& projectId, const QString& remotePath,
                       QString& md5)
{
    Fakes::Called(QStringLiteral("uploadKyv(%1,%2)").arg(projectId, QFileInfo(filePath).fileName()));
    std::function<bool(const QString&, const QString&)> upload;
    {
        const std::lock_guard lock(Fakes::conversionsMutex);
        upload = Fakes::Server().upload;
    }
    return (!upload || upload(filePath, remotePath)) && Fakes::ReadFile(filePath, md5);
}

bool KYVApi::kyvSave(const QJsonObject& job, QString& id)
{
    const auto name = job.value(QStringLiteral("name")).toString();
    Fakes::Called(QStringLiteral("kyvSave(%1)").arg(name));
    const std::lock_guard lock(Fakes::conversionsMutex);
    auto& server = Fakes::Server();
    if (server.acceptsJobs || server.givesIdOfRefusedJob)
        id = QStringLiteral("job of ") + name;
    if (server.acceptsJobs)
        server.savedJobs.append(job);
    return server.acceptsJobs;
}

bool KYVApi::getConvertKyvInfoBimProj(const QString& bimProj, QJsonArray& jobs)
{
    Fakes::Called(QStringLiteral("getConvertKyvInfoBimProj(%1)").arg(bimProj));
    return Fakes::Give(&Fakes::KyvConversions::jobs, bimProj, jobs);
}

bool KYVApi::getKyvInfoByBimProj(const QString& bimProj, QJsonArray& models)
{
    Fakes::Called(QStringLiteral("getKyvInfoByBimProj(%1)").arg(bimProj));
    return Fakes::Give(&Fakes::KyvConversions::models, bimProj, models);
}

bool KYVApi::getConvertFailedList(const QString& bimProj, QJsonArray& failures)
{
    Fakes::Called(QStringLiteral("getConvertFailedList(%1)").arg(bimProj));
    return Fakes::Give(&Fakes::KyvConversions::failures, bimProj, failures);
}

bool KYVApi::getKyvConvertProcess(const QString& id, double& percent)
{
    Fakes::Called(QStringLiteral("getKyvConvertProcess(%1)").arg(id));
    const std::lock_guard lock(Fakes::conversionsMutex);
    const auto& known = Fakes::Server().percents;
    const auto found = known.find(id);
    if (found == known.end())
        return false;
    percent = *found;
    return true;
}

bool KYVApi::delKyvConvert(const QString& id)
{
    Fakes::Called(QStringLiteral("delKyvConvert(%1)").arg(id));
    const std::lock_guard lock(Fakes::conversionsMutex);
    auto& server = Fakes::Server();
    if (!server.deletesJobs)
        return false;
    for (auto& jobs : server.jobs) {
        for (int index = jobs.size() - 1; index >= 0; --index) {
            if (jobs.at(index).toObject().value(QStringLiteral("id")).toString() == id)
                jobs.removeAt(index);
        }
    }
    return true;
}

} // namespace EditorCommon
