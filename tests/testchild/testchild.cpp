// SPDX-License-Identifier: MIT
#include "testchild.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QtEndian>

#include <unistd.h>

namespace
{

QByteArray FrameOf(const QByteArray& payload)
{
    QByteArray frame(4, '\0');
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    return frame + payload;
}

QByteArray Json(const QString& key, const QString& value)
{
    return QJsonDocument(QJsonObject{{key, value}}).toJson(QJsonDocument::Compact);
}

[[noreturn]] void Fail(const char* what)
{
    std::fprintf(stderr, "testchild: %s\n", what);
    std::_Exit(3);
}

} // namespace

TestChild::TestChild(const QByteArray& startMessage)
{
    const auto message = QJsonDocument::fromJson(startMessage).object();
    m_tabName = message.value("tabName").toString();
    m_serverName = message.value("ipcServer").toString();
    m_steps = message.value("epName").toString().split(';', Qt::SkipEmptyParts);
    note(m_tabName + ".start", startMessage);
    QMetaObject::invokeMethod(this, &TestChild::playOn, Qt::QueuedConnection);
}

void TestChild::playOn()
{
    while (!m_steps.isEmpty() && m_awaited.isEmpty()) {
        if (!play(m_steps.takeFirst().trimmed()))
            return;
    }
}

bool TestChild::play(const QString& step)
{
    const QString word = step.section(' ', 0, 0);
    const QString rest = step.section(' ', 1);
    if (word == "connect") {
        connectToHome();
    } else if (word == "name") {
        name(rest.isEmpty() ? m_tabName : rest);
    } else if (word == "window") {
        m_window = std::make_unique<ChildWindow>();
        connect(m_window.get(), &ChildWindow::shown, this, [this](quint64 id) {
            send(Json("winid", QString::number(id)));
            playOn();
        });
        m_window->show();
        return false;
    } else if (word == "send") {
        send(rest.toUtf8());
    } else if (word == "bytes") {
        write(QByteArray::fromHex(rest.toLatin1()));
    } else if (word == "cut") {
        const QByteArray frame = FrameOf(rest.section(' ', 1).toUtf8());
        const int size = rest.section(' ', 0, 0).toInt();
        m_rest = frame.mid(size);
        write(frame.left(size));
    } else if (word == "rest") {
        write(m_rest);
    } else if (word == "flood") {
        flood(rest.section(' ', 0, 0).toInt(), rest.section(' ', 1, 1).toInt());
    } else if (word == "await") {
        m_awaited = rest;
    } else if (word == "deaf") {
        m_isDeaf = true;
    } else if (word == "say") {
        std::printf("%s\n", qPrintable(rest));
        std::fflush(stdout);
    } else if (word == "complain") {
        std::fprintf(stderr, "%s\n", qPrintable(rest));
    } else if (word == "drop") {
        m_socket->disconnectFromServer();
    } else if (word == "exit") {
        std::_Exit(rest.toInt());
    } else if (word == "crash") {
        std::raise(SIGKILL);
    } else if (word == "hang") {
        for (;;)
            pause();
    } else {
        Fail("unknown step");
    }
    return true;
}

void TestChild::connectToHome()
{
    m_socket = new QLocalSocket(this);
    connect(m_socket, &QLocalSocket::readyRead, this, [this, socket = m_socket] { onReadyRead(socket); });
    connect(m_socket, &QLocalSocket::disconnected, this, &TestChild::onDisconnected);
    m_socket->connectToServer(m_serverName);
    if (!m_socket->waitForConnected())
        Fail("cannot connect to the home");
}

void TestChild::name(const QString& name)
{
    send(Json("processName", name));
}

void TestChild::flood(int count, int size)
{
    const QByteArray frame = FrameOf(QByteArray(size, 'x'));
    for (int i = 0; i < count; ++i)
        write(frame);
}

void TestChild::send(const QByteArray& payload)
{
    write(FrameOf(payload));
}

void TestChild::write(const QByteArray& bytes)
{
    m_socket->write(bytes);
    while (m_socket->bytesToWrite() > 0) {
        if (!m_socket->waitForBytesWritten())
            Fail("cannot write to the home");
    }
}

void TestChild::onReadyRead(QLocalSocket* socket)
{
    m_incoming += socket->readAll();
    while (m_incoming.size() >= 4) {
        const auto size = static_cast<int>(qFromBigEndian<quint32>(m_incoming.constData()));
        if (m_incoming.size() < 4 + size)
            return;
        const QByteArray payload = m_incoming.mid(4, size);
        m_incoming.remove(0, 4 + size);
        take(payload);
    }
}

void TestChild::take(const QByteArray& payload)
{
    const auto message = QJsonDocument::fromJson(payload).object();
    note(m_tabName, QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
    const QString what = message.value("operator").toString();
    if (!m_isDeaf && what == "quitRequest")
        send(Json("quitResponse", m_tabName));
    if (!m_isDeaf && what == "quit")
        std::_Exit(0);
    if (m_window && what == "show")
        m_window->show();
    if (m_window && what == "hide")
        m_window->hide();
    if (m_window && what == "resize")
        m_window->resize(message.value("w").toInt(), message.value("h").toInt());
    if (what == m_awaited) {
        m_awaited.clear();
        playOn();
    }
}

void TestChild::onDisconnected()
{
    if (!m_isDeaf && m_steps.isEmpty())
        std::_Exit(0);
}

void TestChild::note(const QString& fileName, const QByteArray& text) const
{
    const QString folder = qEnvironmentVariable("TESTCHILD_LOG");
    if (folder.isEmpty())
        return;
    QFile file(folder + '/' + fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(text) < 0)
        Fail("cannot write the log");
}
