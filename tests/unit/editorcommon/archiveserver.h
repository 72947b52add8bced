// SPDX-License-Identifier: MIT
#pragma once

#include "scriptedserver.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include <QByteArray>
#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

/// The part of the project server that takes archives, for one archive, with faults that a test puts in.
class ArchiveServer
{
public:
    /// Looked at before a request is answered; an answer takes the place of the true one. The number counts
    /// the requests from 1.
    using Fault = std::function<std::optional<ScriptedServer::Answer>(int number, const std::string& path)>;

    explicit ArchiveServer(Fault fault = {})
        : m_fault(std::move(fault))
        , m_server([this](const std::string& path) { return answer(path); })
    {
    }

    [[nodiscard]] std::string address() const { return m_server.address(); }
    [[nodiscard]] std::vector<std::string> requests() const { return m_server.requests(); }

    /// Method and last parts of the path of each request: "POST archives", "PUT 0", "POST finish".
    [[nodiscard]] QStringList steps() const
    {
        QStringList found;
        for (const auto& request : m_server.requests()) {
            const auto words = QString::fromStdString(request.substr(0, request.find('\r'))).split(' ');
            found.append(words.at(0) + ' ' + words.at(1).section('/', -1));
        }
        return found;
    }

    /// What is there, as it was sent.
    [[nodiscard]] QByteArray bytes() const
    {
        const std::lock_guard lock(m_mutex);
        return m_bytes;
    }
    void setBytes(const QByteArray& bytes)
    {
        const std::lock_guard lock(m_mutex);
        m_bytes = bytes;
    }
    [[nodiscard]] bool isFinished() const
    {
        const std::lock_guard lock(m_mutex);
        return m_isFinished;
    }

    /// Takes a request as the server would, and loses the answer.
    static ScriptedServer::Answer lostAnswer() { return {"", 0, false}; }
    /// The server's word for a fault; code 0 is the page of a proxy.
    static ScriptedServer::Answer error(int status, int code)
    {
        if (code == 0)
            return ScriptedServer::reply(status, "<html>");
        return ScriptedServer::reply(status, "{\"code\":" + std::to_string(code) + ",\"msg\":\"said so\"}");
    }
    /// The true answer to the request that has just come.
    ScriptedServer::Answer truth(const std::string& path)
    {
        const auto request = m_server.requests().back();
        const auto body = QByteArray::fromStdString(request.substr(request.find("\r\n\r\n") + 4));
        const std::lock_guard lock(m_mutex);
        if (path.ends_with("/archives"))
            return begin(QJsonDocument::fromJson(body).object());
        if (path.ends_with("/finish"))
            return finish(QJsonDocument::fromJson(body).object());
        const auto offset = std::stoll(path.substr(path.rfind('/') + 1));
        if (offset != m_bytes.size())
            return error(409, 40910);
        m_bytes += body;
        return received();
    }

private:
    ScriptedServer::Answer answer(const std::string& path)
    {
        const int number = ++m_count;
        if (const auto fault = m_fault ? m_fault(number, path) : std::nullopt)
            return *fault;
        return truth(path);
    }

    ScriptedServer::Answer begin(const QJsonObject& wish)
    {
        m_size = static_cast<qint64>(wish.value("size").toDouble());
        return ScriptedServer::reply(
            200, "{\"archive\":\"a1\",\"received\":" + std::to_string(m_bytes.size()) + "}");
    }

    ScriptedServer::Answer finish(const QJsonObject& wish)
    {
        if (m_bytes.size() < m_size)
            return error(409, 40911);
        const auto digest = QCryptographicHash::hash(m_bytes, QCryptographicHash::Md5).toHex();
        if (wish.value("md5").toString().toLatin1() != digest) {
            m_bytes.clear();
            return error(409, 40912);
        }
        m_isFinished = true;
        return ScriptedServer::reply(200, "{\"path\":\"p\"}");
    }

    [[nodiscard]] ScriptedServer::Answer received() const
    {
        return ScriptedServer::reply(200, "{\"received\":" + std::to_string(m_bytes.size()) + "}");
    }

    Fault m_fault;
    mutable std::mutex m_mutex; ///< protects what follows
    QByteArray m_bytes;
    qint64 m_size = 0;
    bool m_isFinished = false;
    std::atomic<int> m_count = 0;
    ScriptedServer m_server; // last: it uses all of the above
};
