// SPDX-License-Identifier: MIT
#include "shell/sessionwatch.h"

namespace shell
{

namespace
{

constexpr int interval = 60000;

} // namespace

SessionWatch::SessionWatch(ProjectServer& server, MessageService& messages, QObject* parent)
    : QObject(parent)
    , m_server(server)
    , m_messages(messages)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &SessionWatch::check);
}

void SessionWatch::start()
{
    m_timer.start();
}

void SessionWatch::stop()
{
    m_timer.stop();
}

void SessionWatch::check()
{
    m_server.checkSession(this, [this](const ProjectServer::SessionAnswer& answer) { take(answer); });
}

void SessionWatch::take(const ProjectServer::SessionAnswer& answer)
{
    Condition condition = Condition::good;
    if (!answer.isValid)
        condition = answer.isReachable ? Condition::expired : Condition::unreachable;
    if (condition == m_condition || !m_timer.isActive())
        return;
    m_condition = condition;
    if (condition == Condition::good)
        m_messages.info(QStringLiteral("已重新连接工程服务器。"));
    else
        m_messages.warn(answer.problem);
}

} // namespace shell
