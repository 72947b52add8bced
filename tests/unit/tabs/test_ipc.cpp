// SPDX-License-Identifier: MIT
#include "tabs/ipc.h"

#include "fakes/logbook.h"
#include "tabs/frames.h"

#include <rapidcheck.h>

#include <memory>
#include <vector>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CIPC;
using TorvoEditor::CutFrames;
using TorvoEditor::MakeFrame;

namespace
{

QByteArray NameFrame(const QByteArray& name)
{
    return MakeFrame("{\"processName\": \"" + name + "\"}");
}

} // namespace

class TestIpc : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void serverNameIsFreshForEachStart();
    void socketIsForTheOwnUserAlone();
    void frameThatNamesTheConnectionIsNotPassedOn();
    void frameBehindTheNameInTheSameReadIsPassedOn();
    void framesOfANamedConnectionAreNotLookedInto_data();
    void framesOfANamedConnectionAreNotLookedInto();
    void firstFramesWithoutANameAreDropped_data();
    void firstFramesWithoutANameAreDropped();
    void nameMayComeInALaterFrame();
    void sendReachesTheNamedConnectionAsOneFrame();
    void sendToANameThatIsNotThereDoesNothing();
    void unnamedConnectionCannotBeAddressed();
    void sendAllReachesEveryNamedConnection();
    void sendAllToConnectionsThatHaveJustGoneReachesTheOthers();
    void endOfANamedConnectionIsTold();
    void endOfAnUnnamedConnectionIsOnlyLogged();
    void nameOfAnEndedConnectionCanBeTakenAgain();
    void secondConnectionUnderOneNameDoesNotTakeOverTheFirst();
    void endOfTheSecondConnectionEndsTheName();
    void frameInTwoReadsIsDroppedAndItsRestIsTakenForANewFrame();
    void frameCutAtAnyByteDoesNotDisturbTheNextRead();
    void badLengthsDropTheReadAndNothingElse_data();
    void badLengthsDropTheReadAndNothingElse();
    void noiseNeverEndsTheConnection();
    void childThatDoesNotReadHoldsNoMoreThanTheLimit();
    void endOfTheServerEndsTheConnectionsSilently();

private:
    [[nodiscard]] std::unique_ptr<QLocalSocket> connected() const;
    [[nodiscard]] std::unique_ptr<QLocalSocket> connectedAs(const QByteArray& name) const;
    void writeInOneRead(QLocalSocket& socket, const QByteArray& bytes) const;

    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<CIPC> m_ipc;
};

void TestIpc::init()
{
    m_log = std::make_unique<Fakes::LogBook>();
    m_ipc = std::make_unique<CIPC>();
}

void TestIpc::cleanup()
{
    m_ipc.reset();
    m_log.reset();
}

std::unique_ptr<QLocalSocket> TestIpc::connected() const
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(m_ipc->serverName());
    if (!socket->waitForConnected())
        qFatal("the server does not listen");
    return socket;
}

std::unique_ptr<QLocalSocket> TestIpc::connectedAs(const QByteArray& name) const
{
    auto socket = connected();
    writeInOneRead(*socket, NameFrame(name));
    return socket;
}

/// Once the bytes are in the socket, the next turns of the event loop take the connection and read all of
/// them.
void TestIpc::writeInOneRead(QLocalSocket& socket, const QByteArray& bytes) const
{
    socket.write(bytes);
    while (socket.bytesToWrite() > 0)
        socket.waitForBytesWritten();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void TestIpc::serverNameIsFreshForEachStart()
{
    const CIPC other;
    QVERIFY(!m_ipc->serverName().isEmpty());
    QVERIFY(m_ipc->serverName() != other.serverName());
}

void TestIpc::socketIsForTheOwnUserAlone()
{
    const QFileInfo socket(QDir::tempPath() + '/' + m_ipc->serverName());
    QVERIFY(socket.exists());
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QCOMPARE(socket.permissions() & others, QFile::Permissions());
}

void TestIpc::frameThatNamesTheConnectionIsNotPassedOn()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto child = connectedAs("a");
    QCOMPARE(frames.count(), 0);
    writeInOneRead(*child, MakeFrame("{\"winid\": \"1\"}"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("{\"winid\": \"1\"}")}}));
}

void TestIpc::frameBehindTheNameInTheSameReadIsPassedOn()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto child = connected();
    writeInOneRead(*child, NameFrame("a") + MakeFrame("first") + MakeFrame("second"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("first")}, {"a", QByteArray("second")}}));
}

void TestIpc::framesOfANamedConnectionAreNotLookedInto_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("no JSON") << QByteArray("\0\1\2", 3);
    QTest::newRow("another name") << QByteArray("{\"processName\": \"b\"}");
}

void TestIpc::framesOfANamedConnectionAreNotLookedInto()
{
    QFETCH(QByteArray, payload);
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto child = connectedAs("a");
    writeInOneRead(*child, MakeFrame(payload));
    QCOMPARE(frames, QList<QVariantList>({{"a", payload}}));
}

void TestIpc::firstFramesWithoutANameAreDropped_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("other key") << QByteArray("{\"winid\": \"1\"}");
    QTest::newRow("no JSON") << QByteArray("\xFF\xFE");
    QTest::newRow("array") << QByteArray("[\"processName\"]");
    QTest::newRow("number for a name") << QByteArray("{\"processName\": 5}");
    QTest::newRow("empty name") << QByteArray("{\"processName\": \"\"}");
}

void TestIpc::firstFramesWithoutANameAreDropped()
{
    QFETCH(QByteArray, payload);
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    const auto child = connected();
    writeInOneRead(*child, MakeFrame(payload));
    writeInOneRead(*child, MakeFrame("{\"winid\": \"1\"}"));
    QCOMPARE(frames.count(), 0);
    child->disconnectFromServer();
    QTRY_VERIFY(m_log->linesWith("socket disconnected").size() == 1);
    QCOMPARE(ended.count(), 0);
}

void TestIpc::nameMayComeInALaterFrame()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto child = connected();
    writeInOneRead(*child, MakeFrame("{}") + NameFrame("a") + MakeFrame("seen"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("seen")}}));
}

void TestIpc::sendReachesTheNamedConnectionAsOneFrame()
{
    const auto child = connectedAs("a");
    const auto other = connectedAs("b");
    m_ipc->Send("a", "{\"operator\": \"show\"}");
    QTRY_COMPARE(child->bytesAvailable(), qint64(4 + 20));
    QCOMPARE(child->readAll(), MakeFrame("{\"operator\": \"show\"}"));
    QCoreApplication::processEvents();
    QCOMPARE(other->bytesAvailable(), qint64(0));
}

void TestIpc::sendToANameThatIsNotThereDoesNothing()
{
    const auto child = connectedAs("a");
    m_ipc->Send("A", "x");
    m_ipc->Send("", "x");
    m_ipc->Send("a", "y");
    QTRY_COMPARE(child->bytesAvailable(), qint64(5));
    QCOMPARE(child->readAll(), MakeFrame("y"));
    QCOMPARE(m_log->take(), QStringList());
}

void TestIpc::unnamedConnectionCannotBeAddressed()
{
    const auto unnamed = connected();
    writeInOneRead(*unnamed, MakeFrame("{}"));
    const auto named = connectedAs("a");
    m_ipc->SendAll("x");
    m_ipc->Send("", "x");
    QTRY_COMPARE(named->bytesAvailable(), qint64(5));
    QCoreApplication::processEvents();
    QCOMPARE(unnamed->bytesAvailable(), qint64(0));
}

void TestIpc::sendAllReachesEveryNamedConnection()
{
    const auto first = connectedAs("a");
    const auto second = connectedAs("b");
    m_ipc->SendAll("to all");
    QTRY_COMPARE(first->bytesAvailable(), qint64(10));
    QTRY_COMPARE(second->bytesAvailable(), qint64(10));
    QCOMPARE(first->readAll(), MakeFrame("to all"));
    QCOMPARE(second->readAll(), MakeFrame("to all"));
}

void TestIpc::sendAllToConnectionsThatHaveJustGoneReachesTheOthers()
{
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    std::vector<std::unique_ptr<QLocalSocket>> gone;
    for (const char* name : {"a", "b", "c", "d", "e", "f"})
        gone.push_back(connectedAs(name));
    const auto left = connectedAs("g");
    // Nothing has been heard of their end when the message goes out.
    gone.clear();
    m_ipc->SendAll("x");
    m_ipc->Send("a", "x");
    QTRY_COMPARE(ended.count(), 6);
    QTRY_COMPARE(left->bytesAvailable(), qint64(5));
}

void TestIpc::endOfANamedConnectionIsTold()
{
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    const auto child = connectedAs("a");
    child->disconnectFromServer();
    QTRY_COMPARE(ended, QList<QVariantList>({{"a"}}));
    QCOMPARE(m_log->take(), QStringList({"warning: socket error  \"QLocalSocket: Remote closed\"",
                                         "info: socket disconnected"}));
    m_ipc->Send("a", "x");
    QCOMPARE(m_log->take(), QStringList());
}

void TestIpc::endOfAnUnnamedConnectionIsOnlyLogged()
{
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    const auto named = connectedAs("a");
    const auto child = connected();
    writeInOneRead(*child, MakeFrame("{}"));
    child->disconnectFromServer();
    QTRY_COMPARE(m_log->linesWith("info: socket disconnected").size(), 1);
    QCOMPARE(ended.count(), 0);
}

void TestIpc::nameOfAnEndedConnectionCanBeTakenAgain()
{
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    const auto first = connectedAs("a");
    first->disconnectFromServer();
    QTRY_COMPARE(ended.count(), 1);
    const auto second = connectedAs("a");
    m_ipc->Send("a", "x");
    QTRY_COMPARE(second->bytesAvailable(), qint64(5));
}

void TestIpc::secondConnectionUnderOneNameDoesNotTakeOverTheFirst()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto first = connectedAs("a");
    const auto second = connectedAs("a");
    writeInOneRead(*second, MakeFrame("from the second"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("from the second")}}));
    m_ipc->Send("a", "x");
    m_ipc->SendAll("y");
    QTRY_COMPARE(first->bytesAvailable(), qint64(10));
    QCoreApplication::processEvents();
    QCOMPARE(second->bytesAvailable(), qint64(0));
}

void TestIpc::endOfTheSecondConnectionEndsTheName()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    const auto first = connectedAs("a");
    const auto second = connectedAs("a");
    second->disconnectFromServer();
    QTRY_COMPARE(ended, QList<QVariantList>({{"a"}}));
    // The first one still speaks under the name, and is not spoken to any more.
    m_ipc->Send("a", "x");
    writeInOneRead(*first, MakeFrame("still here"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("still here")}}));
    QCOMPARE(first->bytesAvailable(), qint64(0));
    first->disconnectFromServer();
    QTRY_COMPARE(m_log->linesWith("info: socket disconnected").size(), 2);
    QCOMPARE(ended.count(), 1);
}

void TestIpc::frameInTwoReadsIsDroppedAndItsRestIsTakenForANewFrame()
{
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const auto child = connectedAs("a");
    // What is held back looks like a frame of its own.
    const QByteArray hidden = MakeFrame("hidden");
    const QByteArray frame = MakeFrame("start" + hidden);
    writeInOneRead(*child, frame.left(frame.size() - hidden.size()));
    QCOMPARE(frames.count(), 0);
    writeInOneRead(*child, hidden);
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("hidden")}}));
}

void TestIpc::frameCutAtAnyByteDoesNotDisturbTheNextRead()
{
    const auto child = connectedAs("a");
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    const QByteArray frame = MakeFrame("{\"dialogShow\": true}");
    for (int size = 1; size < frame.size(); ++size) {
        writeInOneRead(*child, frame.left(size));
        writeInOneRead(*child, frame.mid(size));
        frames.clear();
        writeInOneRead(*child, frame);
        QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("{\"dialogShow\": true}")}}));
    }
}

void TestIpc::badLengthsDropTheReadAndNothingElse_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("length 0") << QByteArray("\0\0\0\0", 4) + MakeFrame("lost");
    QTest::newRow("4 GiB less one") << QByteArray("\xFF\xFF\xFF\xFF") + MakeFrame("lost");
    QTest::newRow("wraps around") << QByteArray("\xFF\xFF\xFF\xFD") + MakeFrame("lost");
    QTest::newRow("four bytes") << QByteArray("\0\0\0\1", 4);
}

void TestIpc::badLengthsDropTheReadAndNothingElse()
{
    QFETCH(QByteArray, bytes);
    const auto child = connectedAs("a");
    QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
    writeInOneRead(*child, bytes);
    QCOMPARE(frames.count(), 0);
    writeInOneRead(*child, MakeFrame("seen"));
    QCOMPARE(frames, QList<QVariantList>({{"a", QByteArray("seen")}}));
}

void TestIpc::noiseNeverEndsTheConnection()
{
    const auto child = connectedAs("a");
    const bool holds = rc::check("noise, then a frame", [&] {
        const auto noise = *rc::gen::container<std::vector<char>>(rc::gen::arbitrary<char>());
        const QByteArray bytes(noise.data(), static_cast<int>(noise.size()));
        QSignalSpy frames(m_ipc.get(), &CIPC::readyRead);
        writeInOneRead(*child, bytes);
        RC_ASSERT(frames.count() == CutFrames(bytes).size());
        writeInOneRead(*child, MakeFrame("seen"));
        RC_ASSERT(frames.last() == QVariantList({"a", QByteArray("seen")}));
    });
    QVERIFY(holds);
    QCOMPARE(m_log->take(), QStringList());
}

void TestIpc::childThatDoesNotReadHoldsNoMoreThanTheLimit()
{
    const auto deaf = connectedAs("a");
    const auto other = connectedAs("b");
    deaf->setReadBufferSize(1);
    const QByteArray payload(1024 * 1024 - 4, 'x');
    for (int i = 0; i < 40; ++i)
        m_ipc->Send("a", payload);
    const auto lines = m_log->take();
    QVERIFY2(lines.size() >= 20 && lines.size() <= 24, qPrintable(QString::number(lines.size())));
    for (const auto& line : lines)
        QCOMPARE(line, QString("warning: tab \"a\" does not read, a message to it is dropped"));
    m_ipc->Send("b", "other children are not concerned");
    QTRY_VERIFY(other->bytesAvailable() > 0);

    // When it reads again it gets whole frames, and what is sent from then on.
    QByteArray received;
    deaf->setReadBufferSize(0);
    connect(deaf.get(), &QLocalSocket::readyRead, this, [&] { received += deaf->readAll(); });
    received += deaf->readAll();
    QTRY_COMPARE(received.size(), (40 - lines.size()) * 1024 * 1024);
    QCOMPARE(CutFrames(received).size(), 40 - lines.size());
    m_ipc->Send("a", "again");
    QTRY_VERIFY(received.endsWith(MakeFrame("again")));
}

void TestIpc::endOfTheServerEndsTheConnectionsSilently()
{
    const auto named = connectedAs("a");
    const auto unnamed = connected();
    writeInOneRead(*unnamed, MakeFrame("{}"));
    QSignalSpy ended(m_ipc.get(), &CIPC::disconnected);
    QSignalSpy namedEnded(named.get(), &QLocalSocket::disconnected);
    QSignalSpy unnamedEnded(unnamed.get(), &QLocalSocket::disconnected);
    m_ipc.reset();
    QTRY_COMPARE(namedEnded.count(), 1);
    QTRY_COMPARE(unnamedEnded.count(), 1);
    QCOMPARE(ended.count(), 0);
    QCOMPARE(m_log->take(), QStringList());
}

QTEST_GUILESS_MAIN(TestIpc)
#include "test_ipc.moc"
