// SPDX-License-Identifier: MIT
// The calls of KYVApi about models that the server converts; docs/conversion-api.md tells the requests.
#include "EditorCommon/kyvapi.h"

#include "archivesender.h"
#include "editorcommonlog.h"
#include "serverclient.h"

#include <QJsonValue>

namespace EditorCommon
{

namespace
{

bool IsLost(const http::Reply& reply)
{
    return reply.fault.code == http::faultcode::unreachable || reply.fault.code == http::faultcode::timedOut;
}

bool LogUnexpected(const char* what)
{
    qCWarning(editorCommonLog) << what << "failed: the project server's answer is not what was asked for";
    return false;
}

/// The list at `key` of an answer about a project.
bool GetList(const char* what, const QString& bimProj, const std::string& rest, const char* key,
             QJsonArray& list)
{
    if (bimProj.isEmpty())
        return false;
    const auto reply = Ask(what, {.path = ProjectPath(bimProj, rest)});
    if (reply.fault)
        return false;
    const auto found = ObjectOf(reply).value(QLatin1String(key));
    if (!found.isArray())
        return LogUnexpected(what);
    list = found.toArray();
    return true;
}

std::string JobPath(const QString& id)
{
    return "/api/v1/conversions/" + http::EncodedName(id.toStdString());
}

} // namespace

bool KYVApi::uploadKyv(const QString& filePath, const QString& projectId, const QString& remotePath,
                       QString& md5)
{
    if (projectId.isEmpty())
        return false;
    const auto fault = ArchiveSender(ServerClient(), projectId, remotePath, {}).send(filePath, md5);
    if (fault)
        qCWarning(editorCommonLog) << "uploadKyv failed:" << fault.code << QString::fromStdString(fault.msg);
    return !fault;
}

bool KYVApi::kyvSave(const QJsonObject& job, QString& id)
{
    const auto project = job.value(QStringLiteral("projectId")).toString();
    if (project.isEmpty())
        return false;
    const auto request = JsonPost(ProjectPath(project, "/conversions"), job);
    auto reply = Ask("kyvSave", request);
    if (IsLost(reply))
        reply = Ask("kyvSave", request); // for an archive that has a job the server names that job
    if (reply.fault)
        return false;
    const auto given = ObjectOf(reply).value(QStringLiteral("id")).toString();
    if (given.isEmpty())
        return LogUnexpected("kyvSave");
    id = given;
    return true;
}

bool KYVApi::getConvertKyvInfoBimProj(const QString& bimProj, QJsonArray& jobs)
{
    return GetList("getConvertKyvInfoBimProj", bimProj, "/conversions", "jobs", jobs);
}

bool KYVApi::getKyvInfoByBimProj(const QString& bimProj, QJsonArray& models)
{
    return GetList("getKyvInfoByBimProj", bimProj, "/models", "models", models);
}

bool KYVApi::getConvertFailedList(const QString& bimProj, QJsonArray& failures)
{
    return GetList("getConvertFailedList", bimProj, "/conversions/failures", "failures", failures);
}

bool KYVApi::getKyvConvertProcess(const QString& id, double& percent)
{
    if (id.isEmpty())
        return false;
    const auto reply = Ask("getKyvConvertProcess", {.path = JobPath(id) + "/progress"});
    if (reply.fault)
        return false;
    const auto told = ObjectOf(reply).value(QStringLiteral("percent"));
    if (!told.isDouble())
        return LogUnexpected("getKyvConvertProcess");
    percent = qBound(0.0, told.toDouble(), 100.0);
    return true;
}

bool KYVApi::delKyvConvert(const QString& id)
{
    if (id.isEmpty())
        return false;
    return !Ask("delKyvConvert", {.method = "DELETE", .path = JobPath(id)}).fault;
}

} // namespace EditorCommon
