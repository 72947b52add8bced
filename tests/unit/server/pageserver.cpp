// SPDX-License-Identifier: MIT
#include "pageserver.h"

#include "server/projects/publish.h"

#include <fstream>

std::string PageServer::ticketFor(const std::string& token)
{
    const auto reply = ask("POST", {"tickets"}, token);
    return objectOf(reply).value("ticket").toString().toStdString();
}

server::Reply PageServer::open(const Path& path, const std::string& query, const std::string& cookie,
                               const std::string& method)
{
    server::Request request;
    request.method = method;
    request.path = path;
    request.isForPage = true;
    request.query = query;
    request.cookie = cookie;
    return api().answer(request);
}

std::string PageServer::browserOf(const std::string& token)
{
    return CookieOf(open({"console"}, "ticket=" + ticketFor(token)));
}

server::Reply PageServer::see(const Path& path, const std::string& token)
{
    return open(path, {}, browserOf(token));
}

void PageServer::publish(const std::string& guid,
                         const std::vector<std::pair<std::string, std::string>>& files)
{
    const QTemporaryDir folder;
    for (const auto& [name, bytes] : files)
        std::ofstream(folder.filePath(QString::fromStdString(name)).toStdString(), std::ios::binary) << bytes;
    server::PublishFolder(store(), packs(), guid, folder.path().toStdString());
}

QByteArray HeaderOf(const server::Reply& reply, const std::string& name)
{
    for (const auto& [key, value] : reply.headers)
        if (key == name)
            return QByteArray::fromStdString(value);
    return {};
}

QByteArray BodyOf(const server::Reply& reply)
{
    return QByteArray::fromStdString(reply.body);
}

std::string CookieOf(const server::Reply& reply)
{
    return HeaderOf(reply, "Set-Cookie").split(';').at(0).toStdString();
}

Path PathOf(const QStringList& names)
{
    Path path;
    for (const auto& name : names)
        path.push_back(name.toStdString());
    return path;
}
