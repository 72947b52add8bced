// SPDX-License-Identifier: MIT
#include "client.h"

#include <thread>

#include <QJsonDocument>
#include <QJsonObject>

namespace
{

constexpr int endMilliseconds = 60000;

} // namespace

int Outcome::code() const
{
    return QJsonDocument::fromJson(words.toUtf8()).object().value("code").toInt();
}

void Client::start(const QStringList& arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_timer.start();
    m_process.start(TORVO_TRANSFER, arguments);
    m_process.waitForStarted();
}

void Client::sleepUntil(std::chrono::microseconds moment) const
{
    const auto left = moment - std::chrono::microseconds(m_timer.nsecsElapsed() / 1000);
    if (left.count() > 0)
        std::this_thread::sleep_for(left);
}

void Client::letGo(std::chrono::microseconds time)
{
    m_process.waitForFinished(static_cast<int>(time.count() / 1000));
}

void Client::kill()
{
    m_process.kill();
}

Outcome Client::wait()
{
    const bool hasEnded = !isRunning() || m_process.waitForFinished(endMilliseconds);
    Outcome outcome;
    outcome.length = std::chrono::microseconds(m_timer.nsecsElapsed() / 1000);
    outcome.hasCrashed = !hasEnded || m_process.exitStatus() != QProcess::NormalExit;
    outcome.isDone = !outcome.hasCrashed && m_process.exitCode() == 0;
    outcome.written = m_process.readLine().trimmed().toULongLong();
    outcome.words = QString::fromUtf8(m_process.readAll()).trimmed();
    return outcome;
}
