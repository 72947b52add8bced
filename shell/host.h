// SPDX-License-Identifier: MIT
#pragma once

#include "core/torvohomeplugin.h"
#include "shell/hostconfig.h"
#include "shell/hostplugin.h"
#include "shell/logincontroller.h"
#include "shell/loginwindow.h"
#include "shell/messageservice.h"
#include "shell/projecthost.h"
#include "shell/projectserver.h"
#include "shell/sessionwatch.h"
#include "shell/web/webservice.h"

#include <memory>

#include <QObject>

namespace shell
{

/// The whole host: from the login to the end of the plugin. GUI thread.
class Host : public QObject
{
    Q_OBJECT

public:
    explicit Host(const HostConfig& config, QObject* parent = nullptr);
    ~Host() override;

    /// Uses the saved login, or shows the login window. To be called with an event loop about to run.
    void start();

    /// Ends the plugin; to be called when the event loop has ended.
    void stop();

    /// The login window; null once the home window is open.
    [[nodiscard]] LoginWindow* loginWindow() const { return m_loginWindow.get(); }

signals:
    /// The home window is open.
    void opened();

private:
    void showLogin();
    void enter(const Login& login);
    void open(const Login& login);

    HostConfig m_config;
    ProjectServer m_server;
    MessageService m_messages;
    WebService m_web;
    ProjectHost m_projectHost;
    HostPlugin m_hostPlugin;
    LoginController m_login;
    SessionWatch m_watch;
    std::unique_ptr<LoginWindow> m_loginWindow;
    std::unique_ptr<TorvoEditor::TorvoHomePlugin> m_plugin;
};

} // namespace shell
