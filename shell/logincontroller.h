// SPDX-License-Identifier: MIT
#pragma once

#include "shell/projectserver.h"

#include <QObject>

namespace shell
{

/// The logic behind the login window. GUI thread.
class LoginController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(QString account READ account CONSTANT)
    Q_PROPERTY(QString server READ server CONSTANT)

public:
    /// `savedLoginFile` gives the account that was used last and takes the login that succeeds.
    LoginController(ProjectServer& server, const QString& savedLoginFile, QObject* parent = nullptr);

    /// A question to the server is under way.
    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    /// Why the last attempt failed, in words for the user.
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] QString account() const { return m_account; }
    [[nodiscard]] QString server() const { return m_server.address(); }

    /// Asks the server; the answer is either loggedIn or a message. Nothing happens while an attempt is under
    /// way.
    Q_INVOKABLE void logIn(const QString& account, const QString& password);

    /// Uses the saved login if the server still takes it; otherwise attention() asks for a new one.
    void tryLogin(const Login& login);

    void setMessage(const QString& message);

signals:
    void busyChanged();
    void messageChanged();
    void loggedIn(const shell::Login& login);
    /// The login has to be made by hand.
    void attention();

private:
    void setBusy(bool isBusy);
    void take(const ProjectServer::LoginAnswer& answer);

    ProjectServer& m_server;
    QString m_savedLoginFile;
    QString m_account;
    QString m_message;
    bool m_isBusy = false;
};

} // namespace shell
