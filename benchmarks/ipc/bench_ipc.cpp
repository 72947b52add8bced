// SPDX-License-Identifier: MIT
#include "ratio.h"
#include "tabs/frames.h"
#include "tabs/ipc.h"

#include <functional>
#include <memory>
#include <vector>

#include <QCoreApplication>
#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QThread>
#include <QTimer>

#include <sched.h>

// A frame to a child and back: through CIPC, and over a bare QLocalSocket with the same bytes. The child,
// this program once more, gives back what it gets as it comes, in both cases.

namespace
{

using TorvoEditor::CIPC;
using TorvoEditor::MakeFrame;

constexpr int roundTrips = 20000;
constexpr int blocks = 10; ///< the two sides take turns, so that a busy machine disturbs both
const QByteArray payload = QByteArray("{\"operator\": \"resize\", \"w\": 1600, \"h\": 900, \"text\": \"") +
                           QByteArray(160, 'x') + "\"}";

/// Keeps this process on one processor: on which one the system puts a child makes more of a difference than
/// everything that is measured here.
void StayOn(int processor)
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(processor, &processors);
    sched_setaffinity(0, sizeof processors, &processors);
}

int Echo(QCoreApplication& app, const QString& serverName)
{
    QLocalSocket socket;
    QObject::connect(&socket, &QLocalSocket::readyRead, &socket, [&] {
        socket.write(socket.readAll());
        socket.flush();
    });
    QObject::connect(&socket, &QLocalSocket::disconnected, &app, &QCoreApplication::quit);
    socket.connectToServer(serverName);
    if (!socket.waitForConnected())
        return 1;
    socket.write(MakeFrame("{\"processName\": \"echo\"}"));
    return QCoreApplication::exec();
}

/// Seconds of each of `count` round trips; `send` begins one, and its end wakes the loop.
std::vector<double> Times(int count, QEventLoop& loop, const std::function<void()>& send)
{
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        times.push_back(bench::SecondsOf([&] {
            send();
            loop.exec();
        }));
    }
    return times;
}

std::unique_ptr<QProcess> StartChild(const QString& serverName)
{
    auto child = std::make_unique<QProcess>();
    child->setProcessChannelMode(QProcess::ForwardedChannels);
    child->start(QCoreApplication::applicationFilePath(), {serverName});
    return child;
}

void End(QProcess& child)
{
    child.kill();
    child.waitForFinished();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    QCoreApplication app(argumentCount, arguments);
    const int last = QThread::idealThreadCount() - 1;
    if (argumentCount > 1) {
        StayOn(last);
        return Echo(app, QCoreApplication::arguments().at(1));
    }
    StayOn(0);

    QEventLoop loop;
    CIPC ipc;
    QObject::connect(&ipc, &CIPC::readyRead, &loop, &QEventLoop::quit);
    const auto ourChild = StartChild(ipc.serverName());

    QLocalServer server;
    server.listen(QStringLiteral("bench-ipc-%1").arg(QCoreApplication::applicationPid()));
    const auto bareChild = StartChild(server.serverName());
    if (!server.waitForNewConnection(30000))
        return 2;
    auto* bare = server.nextPendingConnection();
    bare->waitForReadyRead(); // its name, which nobody asks for here
    bare->readAll();
    const QByteArray frame = MakeFrame(payload);
    qint64 missing = 0;
    QObject::connect(bare, &QLocalSocket::readyRead, &loop, [&] {
        missing -= bare->readAll().size();
        if (missing <= 0)
            loop.quit();
    });
    const auto sendBare = [&] {
        missing = frame.size();
        bare->write(frame);
    };
    const auto sendOurs = [&] { ipc.Send(QStringLiteral("echo"), payload); };
    // The child's name has to have come.
    QTimer retry;
    QObject::connect(&retry, &QTimer::timeout, &loop, sendOurs);
    retry.start(10);
    loop.exec();
    retry.stop();

    std::vector<double> ourTimes;
    std::vector<double> bareTimes;
    for (int block = 0; block < blocks; ++block) {
        for (const double time : Times(roundTrips / blocks, loop, sendOurs))
            ourTimes.push_back(time);
        for (const double time : Times(roundTrips / blocks, loop, sendBare))
            bareTimes.push_back(time);
    }
    std::fprintf(stderr, "ours %.1f us, bare %.1f us (medians of %d)\n", bench::MedianOf(ourTimes) * 1e6,
                 bench::MedianOf(bareTimes) * 1e6, roundTrips);
    bench::Report report;
    report.ratio("frame to a child and back", bench::MedianOf(ourTimes) / bench::MedianOf(bareTimes), 1.2,
                 "a bare QLocalSocket with the same bytes");
    End(*ourChild);
    End(*bareChild);
    return report.exitCode();
}
