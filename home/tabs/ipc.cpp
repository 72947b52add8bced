// SPDX-License-Identifier: MIT
#include "tabs/ipc.h"

#include "tabs/frames.h"
#include "tabs/tabslog.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

namespace TorvoEditor
{

namespace
{

/// What may wait to be sent to one child. A child that has hung does not read any more, and what it is told
/// goes on for as long as its window stands there.
constexpr qint64 maximalBacklog = 16 * 1024 * 1024;

/// Writes a whole frame, or nothing at all when the child has not read for too long.
void WriteFrame(QLocalSocket* socket, const QByteArray& frame)
{
    if (socket->bytesToWrite() + frame.size() > maximalBacklog) {
        qCWarning(lcTabs) << "tab" << socket->objectName() << "does not read, a message to it is dropped";
        return;
    }
    socket->write(frame);
    socket->flush();
}

} // namespace

CIPC::CIPC(QObject* parent)
    : QObject(parent)
{
    // Whoever may write to this socket may steer the window: nobody but the user's own programs.
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &CIPC::onNewConnection);
    m_server.listen(QUuid::createUuid().toString());
}

CIPC::~CIPC()
{
    for (auto* socket : qAsConst(m_sockets)) {
        socket->disconnect();
        socket->deleteLater();
    }
    m_sockets.clear();
    // The server takes its other sockets along, and they would still report their end to this object.
    const auto unnamed = m_server.findChildren<QLocalSocket*>();
    for (auto* socket : unnamed)
        socket->disconnect(this);
    m_server.close();
}

QString CIPC::serverName() const
{
    return m_server.serverName();
}

void CIPC::Send(const QString& socketName, const QByteArray& data)
{
    if (auto* socket = m_sockets.value(socketName))
        WriteFrame(socket, MakeFrame(data));
}

void CIPC::SendAll(const QByteArray& data)
{
    const QByteArray frame = MakeFrame(data);
    // Writing to a child that has just died ends its connection, which leaves the table at once.
    const auto sockets = m_sockets;
    for (auto* socket : sockets)
        WriteFrame(socket, frame);
}

void CIPC::onNewConnection()
{
    while (m_server.hasPendingConnections()) {
        auto* socket = m_server.nextPendingConnection();
        connect(socket, &QLocalSocket::errorOccurred, this, &CIPC::onError);
        connect(socket, &QLocalSocket::readyRead, this, &CIPC::onReadyRead);
        connect(socket, &QLocalSocket::disconnected, this, &CIPC::onDisconnected);
    }
}

void CIPC::onError(QLocalSocket::LocalSocketError /*socketError*/)
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    qWarning() << "socket error " << socket->errorString();
}

void CIPC::onReadyRead()
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    const auto frames = CutFrames(socket->readAll());
    for (const auto& payload : frames)
        takeFrame(socket, payload);
}

void CIPC::takeFrame(QLocalSocket* socket, const QByteArray& payload)
{
    if (!socket->objectName().isEmpty()) {
        emit readyRead(socket->objectName(), payload);
        return;
    }
    const auto message = QJsonDocument::fromJson(payload).object();
    const QString name = message.value(QLatin1String("processName")).toString();
    if (name.isEmpty())
        return;
    socket->setObjectName(name);
    if (!m_sockets.contains(name))
        m_sockets.insert(name, socket);
}

void CIPC::onDisconnected()
{
    qInfo() << "socket disconnected";
    const QString name = sender()->objectName();
    if (m_sockets.remove(name) > 0)
        emit disconnected(name);
}

} // namespace TorvoEditor
