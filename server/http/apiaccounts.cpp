// SPDX-License-Identifier: MIT
#include "server/accounts/password.h"
#include "server/accounts/token.h"
#include "server/http/api.h"

#include <ctime>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::size_t longestName = 128;
constexpr std::size_t longestPassword = 1024;

struct Credentials {
    std::string account;
    std::string password;
};

std::optional<Credentials> CredentialsOf(const std::string& body)
{
    const auto given = json::parse(body, nullptr, false);
    if (!given.is_object() || !given.contains("account") || !given.contains("password"))
        return std::nullopt;
    if (!given["account"].is_string() || !given["password"].is_string())
        return std::nullopt;
    Credentials credentials{given["account"].get<std::string>(), given["password"].get<std::string>()};
    if (credentials.account.size() > longestName || credentials.password.size() > longestPassword)
        return std::nullopt;
    return credentials;
}

} // namespace

Reply Api::login(const Request& request)
{
    const auto credentials = CredentialsOf(request.body);
    if (!credentials)
        return ErrorReply(400, code::badRequest, "an account and a password are needed");
    const int wait = m_guard.secondsToWait(credentials->account, LoginGuard::Clock::now());
    if (wait > 0) {
        auto reply = ErrorReply(429, code::tooMany, "too many attempts");
        reply.headers.emplace_back("Retry-After", std::to_string(wait));
        return reply;
    }
    const auto account = m_store.findAccount(credentials->account);
    if (!IsPassword(credentials->password, account ? account->password : HashOfNobody()) || !account) {
        m_guard.hasFailed(credentials->account, LoginGuard::Clock::now());
        return ErrorReply(401, code::wrongPassword, "no such account, or another password");
    }
    m_guard.hasSucceeded(credentials->account);

    const std::string token = MakeToken();
    const std::int64_t expires = std::time(nullptr) + m_tokenLife.count();
    m_store.addSession(TokenName(token), account->id, expires);
    return JsonReply(200,
                     json{{"token", token}, {"expires", expires}, {"loginName", account->loginName}}.dump());
}

Reply Api::session(const Request& request, const Session& session)
{
    if (request.method == "DELETE") {
        m_store.removeSession(TokenName(std::string_view(request.authorization).substr(7)));
        return EmptyReply(204);
    }
    if (request.method != "GET")
        return ErrorReply(405, code::wrongMethod, "this cannot be done here");
    const json answer{
        {"account", session.name}, {"loginName", session.loginName}, {"expires", session.expires}};
    return JsonReply(200, answer.dump());
}

Reply Api::organisation(const Session& session)
{
    const std::string tree = m_store.organisationTree(session.account);
    return JsonReply(200, json{{"root", tree.empty() ? json() : json::parse(tree)}}.dump());
}

Reply Api::uploadPermission(const std::string& application)
{
    const std::string refusal = m_store.uploadRefusal(application);
    return JsonReply(200, json{{"allowed", refusal.empty()}, {"msg", refusal}}.dump());
}

} // namespace server
