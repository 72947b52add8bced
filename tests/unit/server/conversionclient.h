// SPDX-License-Identifier: MIT
#pragma once

#include "realserver.h"

#include <string>

#include <QByteArray>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// Orders conversions from the real server, as the account that RealServer makes.
class ConversionClient
{
public:
    ConversionClient(const RealServer& server, std::string project)
        : m_server(server)
        , m_project(std::move(project))
    {
    }

    http::Reply send(const std::string& method, const std::string& path, const std::string& body = {}) const
    {
        http::Client client;
        if (!client.setServer(m_server.address()))
            return {};
        client.setToken(m_server.token());
        http::Request request{
            .method = method, .path = "/api/v1" + path, .contentType = "application/json", .body = body};
        request.largestReply = std::size_t{256} << 20U;
        return client.send(request);
    }

    QJsonObject get(const std::string& path) const { return objectOf(send("GET", path)); }
    QJsonArray jobs() const { return get(project("conversions")).value("jobs").toArray(); }
    QJsonArray failures() const { return get(project("conversions/failures")).value("failures").toArray(); }
    QJsonArray models() const { return get(project("models")).value("models").toArray(); }
    double percent(const std::string& job) const
    {
        return get("/conversions/" + job + "/progress").value("percent").toDouble(-1);
    }
    /// "1" and the like.
    QString status() const { return get("/projects/" + m_project).value("status").toString(); }
    QString head() const { return get("/projects/" + m_project).value("head").toString(); }

    /// Sends an archive and registers a job for it; the result is the job's id.
    std::string order(const QByteArray& archive, const std::string& name, const std::string& oldModel = {})
    {
        const auto path = m_project + "/task-" + std::to_string(++m_orders) + "/a.kyv";
        const auto md5 = QCryptographicHash::hash(archive, QCryptographicHash::Md5).toHex().toStdString();
        const auto begun =
            objectOf(send("POST", project("archives"),
                          R"({"path":")" + path + R"(","size":)" + std::to_string(archive.size()) + "}"));
        const auto id = begun.value("archive").toString().toStdString();
        (void)send("PUT", project("archives/" + id + "/bytes/0"), archive.toStdString());
        (void)send("POST", project("archives/" + id + "/finish"), R"({"md5":")" + md5 + "\"}");
        const QJsonObject wish{{"projectId", QString::fromStdString(m_project)},
                               {"path", QString::fromStdString(path)},
                               {"name", QString::fromStdString(name)},
                               {"md5", QString::fromStdString(md5)},
                               {"oldModelId", QString::fromStdString(oldModel)},
                               {"status", 6},
                               {"origin", "1"},
                               {"type", "1"},
                               {"option", "3"}};
        const auto added = send("POST", project("conversions"), QJsonDocument(wish).toJson().toStdString());
        return objectOf(added).value("id").toString().toStdString();
    }

private:
    static QJsonObject objectOf(const http::Reply& reply)
    {
        return QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
    }
    std::string project(const std::string& what) const { return "/projects/" + m_project + "/" + what; }

    const RealServer& m_server;
    std::string m_project;
    int m_orders = 0;
};
