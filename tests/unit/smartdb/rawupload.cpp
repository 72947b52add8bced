// SPDX-License-Identifier: MIT
#include "rawupload.h"

#include "wire/cutting.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"

#include <utility>

#include <QJsonDocument>

RawUpload::RawUpload(const RealServer& server, std::string guid)
    : m_server(server)
    , m_guid(std::move(guid))
{
}

http::Reply RawUpload::send(const std::string& path, const std::string& body) const
{
    http::Client client;
    if (!client.setServer(m_server.address()))
        return {};
    client.setToken(m_server.token());
    http::Request request;
    request.method = "POST";
    request.path = path;
    request.contentType = "application/octet-stream";
    request.body = body;
    return client.send(request);
}

http::Reply RawUpload::begin(const QJsonObject& head, const std::string& delta) const
{
    return send("/api/v1/projects/" + m_guid + "/uploads",
                wire::WriteMessage(QJsonDocument(head).toJson().toStdString(), delta));
}

http::Reply RawUpload::begin(const wire::Manifest& manifest, const QJsonObject& record,
                             const std::string& against) const
{
    return begin(
        {{"base", ""}, {"against", QString::fromStdString(against)}, {"force", false}, {"project", record}},
        wire::EncodeManifestDelta({}, manifest));
}

http::Reply RawUpload::beginAhead(const std::string& delta) const
{
    return begin(
        {{"base", ""}, {"against", ""}, {"force", false}, {"ahead", true}, {"project", sceneRecord()}},
        delta);
}

std::string RawUpload::pathOf(const http::Reply& reply) const
{
    const auto message = wire::ReadMessage(reply.body);
    if (!message)
        return {};
    const QByteArray head(message->head.data(), static_cast<int>(message->head.size()));
    const auto id = QJsonDocument::fromJson(head).object().value("upload").toString().toStdString();
    return "/api/v1/projects/" + m_guid + "/uploads/" + id;
}

std::string RawUpload::bitsOf(const http::Reply& reply)
{
    const auto message = wire::ReadMessage(reply.body);
    return message ? std::string(message->body) : std::string("no bits");
}

QJsonObject RawUpload::sceneRecord()
{
    return {{"type", "CIM"},  {"name", "n"},   {"parent", ""},      {"longitude", ""},
            {"latitude", ""}, {"iotCode", ""}, {"earthConfig", ""}, {"proj4", ""}};
}

wire::Manifest RawUpload::manifestOf(const std::filesystem::path& file, const std::string& path)
{
    const auto sink = [](const wire::Piece&, std::span<const std::byte>) {};
    return {{std::get<wire::FileEntry>(wire::CutFile(file, path, sink))}};
}
