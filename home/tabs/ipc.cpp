// SPDX-License-Identifier: MIT
#include "tabs/ipc.h"

#include "tabs/frames.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

namespace TorvoEditor
{

CIPC::CIPC(QObject* parent) : QObject(parent)
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
    m_server.close();
}

QString CIPC::serverName() const
{
    return m_server.serverName();
}

void CIPC::Send(const QString& socketName, const QByteArray& data)
{
    auto* socket = m_sockets.value(socketName);
    if (socket == nullptr)
        return;
    socket->write(MakeFrame(data));
    socket->flush();
}

void CIPC::SendAll(const QByteArray& data)
{
    const QByteArray frame = MakeFrame(data);
    for (auto* socket : qAsConst(m_sockets)) {
        socket->write(frame);
        socket->flush();
    }
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
    const auto name = message.constFind(QLatin1String("processName"));
    if (name == message.constEnd())
        return;
    socket->setObjectName(name->toString());
    if (!m_sockets.contains(socket->objectName()))
        m_sockets.insert(socket->objectName(), socket);
}

void CIPC::onDisconnected()
{
    qInfo() << "socket disconnected";
    const QString name = sender()->objectName();
    if (m_sockets.remove(name) > 0)
        emit disconnected(name);
}

} // namespace TorvoEditor
