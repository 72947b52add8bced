// SPDX-License-Identifier: MIT
#pragma once

#include "childwindow.h"

#include <memory>

#include <QByteArray>
#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QString>
#include <QStringList>

/// A child process that plays a part.
///
/// Its argument is a start message; the part is the text of "epName", steps separated by ";", each a word and
/// what follows it:
///
///     connect            connects to the home; a second time makes a second connection, which later steps
///     use name [NAME]        names the connection, by itself by the tab's name window             shows a
///     native window and reports its number send JSON          sends a frame bytes HEX          writes bytes
///     as they are cut N JSON         writes the first N bytes of a frame; "rest" writes the others rest
///     flood COUNT BYTES  sends frames of that size
///     await OPERATOR     waits for a message of the home
///     deaf               from now on does nothing about "quitRequest", "quit" and the end of the connection
///     say TEXT           writes a line to standard output
///     complain TEXT      writes a line to standard error
///     drop               closes the connection
///     exit CODE          ends
///     crash              ends by a signal
///     hang               stops doing anything at all
///
/// After the last step it obeys: it agrees to "quitRequest", and ends at "quit" and with its connection.
/// Every message of the home is appended, as one line of JSON, to the file of the tab's name in the folder
/// that the environment variable TESTCHILD_LOG names. It never outlives its parent.
class TestChild : public QObject
{
    Q_OBJECT

public:
    explicit TestChild(const QByteArray& startMessage);

private:
    void playOn();
    bool play(const QString& step); ///< false: the next step has to wait
    void connectToHome();
    void name(const QString& name);
    void flood(int count, int size);
    void send(const QByteArray& payload);
    void write(const QByteArray& bytes);
    void onReadyRead(QLocalSocket* socket);
    void take(const QByteArray& payload);
    void onDisconnected();
    void note(const QString& fileName, const QByteArray& text) const;

    QString m_tabName;
    QString m_serverName;
    QStringList m_steps;
    QString m_awaited; ///< the operator that the next step waits for
    QByteArray m_rest; ///< what "cut" has held back
    bool m_isDeaf = false;
    QLocalSocket* m_socket = nullptr;
    QByteArray m_incoming; ///< the part of a frame that has come
    std::unique_ptr<ChildWindow> m_window;
};
