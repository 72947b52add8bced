// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QString>

namespace editortab
{

/// The connection to the home window. Frames are 4 bytes payload length, big-endian, then JSON. GUI thread.
///
/// The home drops a frame that reaches it in two reads, so every frame goes out in one write, and small.
class HomeLink : public QObject
{
    Q_OBJECT

public:
    explicit HomeLink(QObject* parent = nullptr);

    /// Connects to the home and names this side. Either connected or lost follows.
    void open(const QString& server, const QString& tabName);

    void reportWindow(quint64 windowId);
    void reportDialog(bool isShown);
    /// This side agrees to close.
    void agreeToClose();
    /// The project was written: the home must read it anew.
    void reportSaved(const QString& guid);
    /// The person wants to make a building project: the home shows its form for that.
    void askForNewProject();

signals:
    void connected();
    /// A message of the home: its operator and the whole object.
    void received(const QString& name, const QJsonObject& message);
    /// The home is gone, or never was there.
    void lost();

private:
    void send(const QString& key, const QJsonValue& value);
    void read();

    QLocalSocket m_socket;
    QString m_tabName;
    QByteArray m_pending; ///< the front of a frame whose end has not come yet
};

} // namespace editortab
