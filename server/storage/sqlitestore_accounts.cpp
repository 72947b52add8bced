// SPDX-License-Identifier: MIT
// Accounts, sessions, organisations and applications.
#include "server/storage/sqliteconnection.h"

namespace server
{

namespace
{

Account AccountOf(SQLite::Statement& row)
{
    Account account;
    account.id = row.getColumn(0).getInt64();
    account.name = row.getColumn(1).getString();
    account.loginName = row.getColumn(2).getString();
    account.password = {row.getColumn(3).getString(), row.getColumn(4).getString()};
    account.organisation = IdAt(row, 5);
    return account;
}

} // namespace

std::optional<std::int64_t> SqliteStore::addAccount(const Account& account)
{
    auto connection = lease();
    auto& insert =
        connection.prepare("INSERT OR IGNORE INTO accounts(name, login_name, salt, hash, organisation) "
                           "VALUES(?, ?, ?, ?, ?)");
    insert.bind(1, account.name);
    insert.bind(2, account.loginName);
    BindBlob(insert, 3, account.password.salt);
    BindBlob(insert, 4, account.password.hash);
    BindId(insert, 5, account.organisation);
    if (insert.exec() == 0)
        return std::nullopt;
    return connection.database().getLastInsertRowid();
}

std::optional<Account> SqliteStore::findAccount(const std::string& name)
{
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT id, name, login_name, salt, hash, organisation FROM accounts WHERE name = ?");
    row.bind(1, name);
    if (!row.executeStep())
        return std::nullopt;
    return AccountOf(row);
}

std::vector<Account> SqliteStore::accounts()
{
    auto connection = lease();
    auto& row = connection.prepare(
        "SELECT id, name, login_name, salt, hash, organisation FROM accounts ORDER BY name");
    std::vector<Account> accounts;
    while (row.executeStep())
        accounts.push_back(AccountOf(row));
    return accounts;
}

bool SqliteStore::setPassword(const std::string& name, const PasswordHash& password)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    auto& update = connection.prepare("UPDATE accounts SET salt = ?, hash = ? WHERE name = ?");
    BindBlob(update, 1, password.salt);
    BindBlob(update, 2, password.hash);
    update.bind(3, name);
    const bool isKnown = update.exec() > 0;
    auto& end =
        connection.prepare("DELETE FROM sessions WHERE account = (SELECT id FROM accounts WHERE name = ?)");
    end.bind(1, name);
    end.exec();
    transaction.commit();
    return isKnown;
}

void SqliteStore::addSession(const wire::Digest& token, std::int64_t account, std::int64_t expires)
{
    auto connection = lease();
    Transaction transaction(connection.database());
    connection.prepare("DELETE FROM sessions WHERE expires <= unixepoch()").exec();
    auto& insert = connection.prepare("INSERT INTO sessions(token, account, expires) VALUES(?, ?, ?)");
    BindDigest(insert, 1, token);
    insert.bind(2, account);
    insert.bind(3, expires);
    insert.exec();
    transaction.commit();
}

std::optional<Session> SqliteStore::findSession(const wire::Digest& token, std::int64_t now)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT a.id, a.name, a.login_name, s.expires FROM sessions s "
                                   "JOIN accounts a ON a.id = s.account WHERE s.token = ? AND s.expires > ?");
    BindDigest(row, 1, token);
    row.bind(2, now);
    if (!row.executeStep())
        return std::nullopt;
    return Session{row.getColumn(0).getInt64(), row.getColumn(1).getString(), row.getColumn(2).getString(),
                   row.getColumn(3).getInt64()};
}

void SqliteStore::removeSession(const wire::Digest& token)
{
    auto connection = lease();
    auto& remove = connection.prepare("DELETE FROM sessions WHERE token = ?");
    BindDigest(remove, 1, token);
    remove.exec();
}

std::int64_t SqliteStore::putOrganisation(const std::string& name, const std::string& tree)
{
    auto connection = lease();
    auto& put = connection.prepare("INSERT INTO organisations(name, tree) VALUES(?, ?) "
                                   "ON CONFLICT(name) DO UPDATE SET tree = excluded.tree RETURNING id");
    put.bind(1, name);
    put.bind(2, tree);
    put.executeStep();
    return put.getColumn(0).getInt64();
}

std::string SqliteStore::organisationTree(std::int64_t account)
{
    auto connection = lease();
    auto& row =
        connection.prepare("SELECT o.tree FROM organisations o JOIN accounts a ON a.organisation = o.id "
                           "WHERE a.id = ?");
    row.bind(1, account);
    return row.executeStep() ? row.getColumn(0).getString() : std::string();
}

void SqliteStore::putApplication(const std::string& id, bool mayUpload, const std::string& reason)
{
    auto connection = lease();
    auto& put =
        connection.prepare("INSERT OR REPLACE INTO applications(id, may_upload, reason) VALUES(?, ?, ?)");
    put.bind(1, id);
    put.bind(2, mayUpload ? 1 : 0);
    put.bind(3, reason);
    put.exec();
}

std::string SqliteStore::uploadRefusal(const std::string& id)
{
    auto connection = lease();
    auto& row = connection.prepare("SELECT may_upload, reason FROM applications WHERE id = ?");
    row.bind(1, id);
    // Applications that nobody has said anything about are not held back.
    if (!row.executeStep() || row.getColumn(0).getInt() != 0)
        return {};
    return row.getColumn(1).getString();
}

} // namespace server
