// SPDX-License-Identifier: MIT
#include "shell/logincontroller.h"

#include <QLoggingCategory>

namespace shell
{

namespace
{

Q_LOGGING_CATEGORY(log, "torvo.shell")

} // namespace

LoginController::LoginController(ProjectServer& server, const QString& savedLoginFile, QObject* parent)
    : QObject(parent)
    , m_server(server)
    , m_savedLoginFile(savedLoginFile)
    , m_account(ReadSavedAccount(savedLoginFile))
{
}

void LoginController::logIn(const QString& account, const QString& password)
{
    if (m_isBusy)
        return;
    if (account.trimmed().isEmpty() || password.isEmpty()) {
        setMessage(QStringLiteral("请输入账号和密码。"));
        return;
    }
    setMessage(QString());
    setBusy(true);
    m_server.logIn(account.trimmed(), password, this,
                   [this](const ProjectServer::LoginAnswer& answer) { take(answer); });
}

void LoginController::take(const ProjectServer::LoginAnswer& answer)
{
    setBusy(false);
    if (!answer.problem.isEmpty()) {
        setMessage(answer.problem);
        return;
    }
    if (!SaveLogin(m_savedLoginFile, answer.login))
        qCWarning(log) << "the login cannot be kept in" << m_savedLoginFile;
    emit loggedIn(answer.login);
}

void LoginController::tryLogin(const Login& login)
{
    setBusy(true);
    m_server.setToken(login.token);
    m_server.checkSession(this, [this, login](const ProjectServer::SessionAnswer& answer) {
        setBusy(false);
        if (answer.isValid) {
            emit loggedIn(login);
            return;
        }
        m_server.setToken(QString());
        if (answer.isReachable)
            ForgetToken(m_savedLoginFile);
        setMessage(answer.problem);
        emit attention();
    });
}

void LoginController::setMessage(const QString& message)
{
    if (m_message == message)
        return;
    m_message = message;
    emit messageChanged();
}

void LoginController::setBusy(bool isBusy)
{
    if (m_isBusy == isBusy)
        return;
    m_isBusy = isBusy;
    emit busyChanged();
}

} // namespace shell
