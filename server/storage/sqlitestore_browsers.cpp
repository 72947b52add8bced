// SPDX-License-Identifier: MIT
// Tickets, and the browsers that came in with them.
#include "server/storage/sqliteconnection.h"

namespace server
{

namespace
{

/// For so long a ticket that is worth nothing any more can still be told from one that never was.
constexpr std::int64_t remembered = 3600;

} // namespace

void SqliteStore::addTicket(const wire::Digest& ticket, const wire::Digest& session, std::int64_t expires)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& forget = connection.prepare("DELETE FROM tickets WHERE expires < unixepoch() - ?");
    forget.bind(1, remembered);
    forget.exec();
    connection.prepare("DELETE FROM browsers WHERE expires <= unixepoch()").exec();
    // A session that was ended a moment ago gives a ticket that nobody knows.
    auto& insert = connection.prepare(
        "INSERT INTO tickets(name, session, expires) SELECT ?, token, ? FROM sessions WHERE token = ?");
    BindDigest(insert, 1, ticket);
    insert.bind(2, expires);
    BindDigest(insert, 3, session);
    insert.exec();
    transaction.commit();
}

TicketUse SqliteStore::useTicket(const wire::Digest& ticket, std::int64_t now, const wire::Digest& cookie,
                                 std::int64_t cookieExpires)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& row = connection.prepare("SELECT is_used, expires FROM tickets WHERE name = ?");
    BindDigest(row, 1, ticket);
    if (!row.executeStep())
        return TicketUse::unknown;
    if (row.getColumn(0).getInt() != 0)
        return TicketUse::usedBefore;
    if (row.getColumn(1).getInt64() <= now)
        return TicketUse::expired;
    auto& use = connection.prepare("UPDATE tickets SET is_used = 1 WHERE name = ?");
    BindDigest(use, 1, ticket);
    use.exec();
    auto& insert = connection.prepare("INSERT INTO browsers(cookie, session, expires) "
                                      "SELECT ?, session, ? FROM tickets WHERE name = ?");
    BindDigest(insert, 1, cookie);
    insert.bind(2, cookieExpires);
    BindDigest(insert, 3, ticket);
    insert.exec();
    transaction.commit();
    return TicketUse::good;
}

std::optional<Session> SqliteStore::findBrowser(const wire::Digest& cookie, std::int64_t now)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT a.id, a.name, a.login_name, min(b.expires, s.expires) "
                                   "FROM browsers b JOIN sessions s ON s.token = b.session "
                                   "JOIN accounts a ON a.id = s.account "
                                   "WHERE b.cookie = ?1 AND b.expires > ?2 AND s.expires > ?2");
    BindDigest(row, 1, cookie);
    row.bind(2, now);
    if (!row.executeStep())
        return std::nullopt;
    return Session{row.getColumn(0).getInt64(), row.getColumn(1).getString(), row.getColumn(2).getString(),
                   row.getColumn(3).getInt64()};
}

} // namespace server
