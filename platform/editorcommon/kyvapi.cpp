// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"

#include "editorcommonlog.h"
#include "serverclient.h"

#include <QJsonDocument>

namespace EditorCommon
{

namespace
{

/// The address of a page with a ticket, by which the browser that opens it is logged in once.
bool PageUrl(const char* what, const std::string& page, QString& url)
{
    const auto reply = Ask(what, {.method = "POST", .path = "/api/v1/tickets"});
    if (reply.fault)
        return false;
    const auto answer = QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
    const auto ticket = answer.value(QStringLiteral("ticket")).toString().toStdString();
    if (ticket.empty()) {
        qCWarning(editorCommonLog) << what << "failed: the project server's answer holds no ticket";
        return false;
    }
    url = QString::fromStdString(ServerClient().server() + page + "?ticket=" + http::EncodedName(ticket));
    return true;
}

} // namespace

void KYVApi::init(const QString& serverAddr, const QString& token)
{
    if (!ServerClient().setServer(serverAddr.toStdString()))
        qCWarning(editorCommonLog) << "no address of a project server:" << serverAddr;
    ServerClient().setToken(token.toStdString());
}

bool KYVApi::GetWebConsoleUrl(QString& url)
{
    return PageUrl("GetWebConsoleUrl", "/web/console", url);
}

bool KYVApi::GetWebProjUrl(const QString& guid, QString& url)
{
    if (guid.isEmpty())
        return false;
    return PageUrl("GetWebProjUrl", "/web/projects/" + http::EncodedName(guid.toStdString()), url);
}

bool KYVApi::SetProjNameToService(const QString& guid, const QString& name)
{
    if (guid.isEmpty())
        return false;
    const QJsonObject body{{QStringLiteral("name"), name}};
    const auto reply = Ask("SetProjNameToService",
                           {.method = "PUT",
                            .path = "/api/v1/projects/" + http::EncodedName(guid.toStdString()) + "/name",
                            .body = QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString()});
    return !reply.fault;
}

} // namespace EditorCommon
