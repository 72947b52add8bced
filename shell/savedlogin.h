// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <QString>

namespace shell
{

/// A login, as the server gave it. The password is not part of it.
struct Login {
    QString server;
    QString account;
    QString token;
    QString loginName;
    qint64 expires = 0; ///< seconds since 1970
};

/// The login that is kept for the next start; nothing when there is none, when it is for another server or
/// has expired, or when the file is damaged.
[[nodiscard]] std::optional<Login> ReadSavedLogin(const QString& file, const QString& server, qint64 now);

/// The account that was used last, for the login's field; empty when none is known.
[[nodiscard]] QString ReadSavedAccount(const QString& file);

/// Keeps a login, readable by its owner alone. False when the file cannot be written.
[[nodiscard]] bool SaveLogin(const QString& file, const Login& login);

/// Forgets the token and keeps the account's name.
void ForgetToken(const QString& file);

} // namespace shell
