// SPDX-License-Identifier: MIT
#include "editortab/home/homelink.h"

#include <QJsonDocument>
#include <QtEndian>

namespace editortab
{

namespace
{

constexpr int headerSize = 4;
constexpr quint32 largestFrame = 16U << 20U; ///< the home has nothing longer to say

} // namespace

HomeLink::HomeLink(QObject* parent)
    : QObject(parent)
{
    connect(&m_socket, &QLocalSocket::connected, this, [this] {
        send(QStringLiteral("processName"), m_tabName);
        emit connected();
    });
    connect(&m_socket, &QLocalSocket::readyRead, this, &HomeLink::read);
    connect(&m_socket, &QLocalSocket::disconnected, this, &HomeLink::lost);
    connect(&m_socket, &QLocalSocket::errorOccurred, this, [this] {
        if (m_socket.state() != QLocalSocket::ConnectedState)
            emit lost();
    });
}

void HomeLink::open(const QString& server, const QString& tabName)
{
    m_tabName = tabName;
    m_socket.connectToServer(server);
}

void HomeLink::reportWindow(quint64 windowId)
{
    send(QStringLiteral("winid"), QString::number(windowId));
}

void HomeLink::reportDialog(bool isShown)
{
    send(QStringLiteral("dialogShow"), isShown);
}

void HomeLink::agreeToClose()
{
    send(QStringLiteral("quitResponse"), m_tabName);
}

void HomeLink::reportSaved(const QString& guid)
{
    send(QStringLiteral("ReOpenProj"), guid);
}

void HomeLink::askForNewProject()
{
    send(QStringLiteral("CreateBimProj"), true);
}

void HomeLink::send(const QString& key, const QJsonValue& value)
{
    const QByteArray payload = QJsonDocument(QJsonObject{{key, value}}).toJson(QJsonDocument::Compact);
    QByteArray frame(headerSize, '\0');
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    m_socket.write(frame + payload);
    m_socket.flush();
}

void HomeLink::read()
{
    m_pending += m_socket.readAll();
    while (m_pending.size() >= headerSize) {
        const auto length = qFromBigEndian<quint32>(m_pending.constData());
        if (length == 0 || length > largestFrame) {
            m_socket.abort();
            return;
        }
        const int frameSize = headerSize + static_cast<int>(length);
        if (m_pending.size() < frameSize)
            return;
        const auto message =
            QJsonDocument::fromJson(m_pending.mid(headerSize, static_cast<int>(length))).object();
        m_pending.remove(0, frameSize);
        if (message.contains(QLatin1String("operator")))
            emit received(message.value(QLatin1String("operator")).toString(), message);
    }
}

} // namespace editortab
