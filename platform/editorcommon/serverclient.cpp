// SPDX-License-Identifier: MIT
#include "serverclient.h"

#include "editorcommonlog.h"

#include <QJsonDocument>

namespace EditorCommon
{

http::Client& ServerClient()
{
    static http::Client client;
    return client;
}

http::Reply Ask(const char* what, http::Request request)
{
    if (request.method != "GET" && request.contentType.empty())
        request.contentType = "application/json";
    auto reply = ServerClient().send(request);
    if (reply.fault)
        qCWarning(editorCommonLog) << what << "failed:" << reply.fault.code
                                   << QString::fromStdString(reply.fault.msg);
    return reply;
}

QJsonObject ObjectOf(const http::Reply& reply)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
}

std::string ProjectPath(const QString& guid, const std::string& rest)
{
    return "/api/v1/projects/" + http::EncodedName(guid.toStdString()) + rest;
}

http::Request JsonPost(const std::string& path, const QJsonObject& body)
{
    return {.method = "POST",
            .path = path,
            .contentType = "application/json",
            .body = QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString()};
}

} // namespace EditorCommon
