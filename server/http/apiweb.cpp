// SPDX-License-Identifier: MIT
#include "server/accounts/token.h"
#include "server/http/api.h"

#include <ctime>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

constexpr std::int64_t ticketSeconds = 60; ///< a browser may have to be started first

} // namespace

Reply Api::ticket(const Request& request)
{
    const auto session = TokenName(std::string_view(request.authorization).substr(7));
    const std::string ticket = MakeToken();
    const std::int64_t expires = std::time(nullptr) + ticketSeconds;
    m_store.addTicket(TokenName(ticket), session, expires);
    return JsonReply(200, nlohmann::json{{"ticket", ticket}, {"expires", expires}}.dump());
}

} // namespace server
