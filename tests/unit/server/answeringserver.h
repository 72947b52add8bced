// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/api.h"
#include "server/storage/sqlitestore.h"

#include <string>
#include <vector>

#include <QJsonObject>
#include <QTemporaryDir>

/// The project server without its connections: requests go in, answers come out.
class AnsweringServer
{
public:
    AnsweringServer();

    /// Logs a new account in; the result is its token.
    std::string addAccount(const std::string& name, std::optional<std::int64_t> organisation = {});
    [[nodiscard]] std::int64_t accountId(const std::string& name);

    /// A project of `owner` without a revision.
    server::Project addProject(const std::string& guid, const std::string& owner,
                               const std::string& name = "n");

    /// An answer of the API; the token may be empty.
    [[nodiscard]] server::Reply ask(const std::string& method, const std::vector<std::string>& path,
                                    const std::string& token, const std::string& body = {});

    [[nodiscard]] static QJsonObject objectOf(const server::Reply& reply);
    [[nodiscard]] static int codeOf(const server::Reply& reply);

    [[nodiscard]] server::SqliteStore& store() { return m_store; }
    [[nodiscard]] server::Api& api() { return m_api; }
    [[nodiscard]] std::filesystem::path packs() const;
    [[nodiscard]] std::filesystem::path archives() const;
    [[nodiscard]] std::filesystem::path models() const;
    [[nodiscard]] std::filesystem::path workerKey() const;

private:
    QTemporaryDir m_folder;
    server::SqliteStore m_store;
    server::Api m_api;
};
