// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// The home side of the channel to the children: one local server, and frames to and from named connections.
///
/// A frame is a payload length of 4 bytes, big-endian and without itself, followed by the payload, a JSON
/// document in UTF-8. A connection is named by the first frame whose object has the key "processName"; that
/// frame and those before it are not passed on; an empty name names nothing. A frame must arrive in one read:
/// a part of a frame is dropped. The first connection of a name is the one that is sent to; the end of any
/// connection of that name ends the name. GUI thread.
class CIPC : public QObject
{
    Q_OBJECT

public:
    /// Listens under a fresh random name.
    explicit CIPC(QObject* parent = nullptr);
    ~CIPC() override;

    /// The name that a child has to connect to.
    [[nodiscard]] QString serverName() const;

    /// Sends one frame to the connection of that name; without one nothing happens. A frame to a child that
    /// has 16 MiB unread is dropped.
    void Send(const QString& socketName, const QByteArray& data);

    /// Sends one frame to every named connection.
    void SendAll(const QByteArray& data);

signals:
    /// The payload of one complete frame of a named connection.
    void readyRead(const QString& socketName, const QByteArray& data);

    /// A named connection has gone.
    void disconnected(const QString& socketName);

private slots:
    void onNewConnection();
    void onError(QLocalSocket::LocalSocketError socketError);
    void onReadyRead();
    void onDisconnected();

private:
    void takeFrame(QLocalSocket* socket, const QByteArray& payload);

    QLocalServer m_server;
    QHash<QString, QLocalSocket*> m_sockets; ///< named connections; the sockets are the server's children
};

} // namespace TorvoEditor
