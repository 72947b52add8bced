// SPDX-License-Identifier: MIT
#include "shell/host.h"

#include "TorvoSDK/torvosession.h"
#include "shell/accountfiles.h"

#include <QDateTime>

namespace shell
{

Host::Host(const HostConfig& config, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_server(config.server)
    , m_web(PageFolder::ofTheProgram(), WebService::libraryOfTheProgram(),
            [this](const QString& problem) { m_messages.error(problem); })
    , m_projectHost(m_server)
    , m_hostPlugin(m_projectHost, m_messages, m_web)
    , m_login(m_server, SavedLoginFile())
    , m_watch(m_server, m_messages)
{
    connect(&m_login, &LoginController::loggedIn, this, &Host::enter);
    connect(&m_login, &LoginController::attention, this, &Host::showLogin);
}

Host::~Host() = default;

void Host::start()
{
    const auto saved = ReadSavedLogin(SavedLoginFile(), m_config.server, QDateTime::currentSecsSinceEpoch());
    if (saved && !m_config.isAutoLoginOff)
        m_login.tryLogin(*saved);
    else
        showLogin();
}

void Host::stop()
{
    m_watch.stop();
    m_web.close();
    m_messages.forgetObservers();
    if (m_plugin)
        m_plugin->UnInit();
    m_plugin.reset();
}

void Host::showLogin()
{
    if (!m_loginWindow)
        m_loginWindow = std::make_unique<LoginWindow>(m_login);
    m_loginWindow->show();
    m_loginWindow->requestActivate();
}

void Host::enter(const Login& login)
{
    m_server.setToken(login.token);
    m_server.fetchOrganisation(this, [this, login](const ProjectServer::Organisation& organisation) {
        if (!organisation.isKnown) {
            m_login.setMessage(QStringLiteral("无法读取账号的组织信息，请稍后再试。"));
            showLogin();
            return;
        }
        m_projectHost.setOrganisation(organisation.root);
        open(login);
    });
}

void Host::open(const Login& login)
{
    TorvoSDK::CTorvoSession session;
    session.token = login.token.toStdWString();
    session.serverAddr = m_config.server.toStdWString();
    session.sdkAddr = m_config.server.toStdWString();
    session.loginName = login.loginName.toStdWString();
    session.appVer = m_config.appVer.toStdWString();
    session.isBimSdk = m_config.isBimSdk;
    m_plugin = std::make_unique<TorvoEditor::TorvoHomePlugin>();
    m_plugin->Init(&m_hostPlugin, session);
    m_watch.start();
    // The home window stands: the last window is not the login any more.
    if (m_loginWindow) {
        m_loginWindow->close();
        m_loginWindow.release()->deleteLater();
    }
    emit opened();
}

} // namespace shell
