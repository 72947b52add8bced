// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include "server/accounts/token.h"

#include <chrono>
#include <ctime>
#include <stdexcept>

#include <QJsonDocument>

namespace
{

constexpr int hour = 3600;

} // namespace

AnsweringServer::AnsweringServer()
    : m_store(m_folder.filePath("server.db").toStdString())
    , m_api(m_store, {packs(), archives(), models(), workerKey()}, {.tokenLife = std::chrono::seconds(hour)})
{
    std::filesystem::create_directories(packs());
}

std::filesystem::path AnsweringServer::archives() const
{
    return m_folder.filePath("archives").toStdString();
}

std::filesystem::path AnsweringServer::models() const
{
    return m_folder.filePath("models").toStdString();
}

std::filesystem::path AnsweringServer::workerKey() const
{
    return m_folder.filePath("worker.key").toStdString();
}

std::filesystem::path AnsweringServer::packs() const
{
    return m_folder.filePath("packs").toStdString();
}

std::string AnsweringServer::addAccount(const std::string& name, std::optional<std::int64_t> organisation)
{
    server::Account account;
    account.name = name;
    account.loginName = name;
    account.organisation = organisation;
    const auto id = m_store.addAccount(account);
    if (!id)
        throw std::runtime_error("there is an account of that name already");
    auto token = server::MakeToken();
    m_store.addSession(server::TokenName(token), *id, std::time(nullptr) + hour);
    return token;
}

std::int64_t AnsweringServer::accountId(const std::string& name)
{
    return m_store.findAccount(name).value().id;
}

server::Project AnsweringServer::addProject(const std::string& guid, const std::string& owner,
                                            const std::string& name)
{
    server::Project project;
    project.guid = guid;
    project.type = "BIM";
    project.name = name;
    project.record = "{}";
    project.owner = accountId(owner);
    m_store.putProject(project);
    return project;
}

server::Reply AnsweringServer::ask(const std::string& method, const std::vector<std::string>& path,
                                   const std::string& token, const std::string& body)
{
    server::Request request;
    request.method = method;
    request.path = path;
    request.authorization = token.empty() ? std::string() : "Bearer " + token;
    request.body = body;
    return m_api.answer(request);
}

QJsonObject AnsweringServer::objectOf(const server::Reply& reply)
{
    const auto& body = reply.sharedBody ? *reply.sharedBody : reply.body;
    return QJsonDocument::fromJson(QByteArray::fromStdString(body)).object();
}

int AnsweringServer::codeOf(const server::Reply& reply)
{
    return objectOf(reply).value(QStringLiteral("code")).toInt();
}
