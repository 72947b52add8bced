// SPDX-License-Identifier: MIT
#pragma once

#include "shell/messageservice.h"
#include "shell/projectserver.h"

#include <QObject>
#include <QTimer>

namespace shell
{

/// Looks once a minute whether the login still holds and the server can be reached, and tells the user when
/// that changes, once per change. GUI thread.
class SessionWatch : public QObject
{
    Q_OBJECT

public:
    SessionWatch(ProjectServer& server, MessageService& messages, QObject* parent = nullptr);

    void start();
    void stop();

    /// Looks now.
    void check();

private:
    enum class Condition { good, unreachable, expired };

    void take(const ProjectServer::SessionAnswer& answer);

    ProjectServer& m_server;
    MessageService& m_messages;
    QTimer m_timer;
    Condition m_condition = Condition::good;
};

} // namespace shell
