// SPDX-License-Identifier: MIT
#include "editortab/home/homelink.h"

#include <memory>

#include <QJsonDocument>
#include <QLocalServer>
#include <QSignalSpy>
#include <QTest>
#include <QUuid>
#include <QtEndian>

namespace
{

QByteArray Frame(const QByteArray& payload)
{
    QByteArray frame(4, '\0');
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    return frame + payload;
}

/// The home's side of the connection.
class Home
{
public:
    Home()
        : name(QStringLiteral("home-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
    {
        m_server.listen(name);
    }

    /// Waits for the child to connect.
    [[nodiscard]] bool takeChild()
    {
        if (!QTest::qWaitFor([this] { return m_server.hasPendingConnections(); }))
            return false;
        m_child.reset(m_server.nextPendingConnection());
        return true;
    }

    void send(const QByteArray& bytes) const
    {
        m_child->write(bytes);
        m_child->flush();
    }

    void close() { m_child.reset(); }

    /// The next whole frame of the child; an empty object when none comes.
    [[nodiscard]] QJsonObject nextMessage()
    {
        const auto isWhole = [this] {
            m_received += m_child->readAll();
            return m_received.size() >= 4 && m_received.size() >= 4 + frameLength();
        };
        if (!QTest::qWaitFor(isWhole))
            return {};
        const int length = frameLength();
        const auto message = QJsonDocument::fromJson(m_received.mid(4, length)).object();
        m_received.remove(0, 4 + length);
        return message;
    }

    [[nodiscard]] bool hasMore() const { return !m_received.isEmpty() || m_child->bytesAvailable() > 0; }

    const QString name;

private:
    [[nodiscard]] int frameLength() const
    {
        return static_cast<int>(qFromBigEndian<quint32>(m_received.constData()));
    }

    QLocalServer m_server;
    std::unique_ptr<QLocalSocket> m_child;
    QByteArray m_received;
};

} // namespace

class TestHomeLink : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void namesItsTabFirst();
    void reportsItsWindowAsText();
    void reportsItsDialogs();
    void agreesToCloseByItsName();
    void reportsASavedProject();
    void asksForANewProject();
    void reportsArriveInTheirOrder();

    void messageOfTheHomeIsHeardWithAllThatIsInIt();
    void severalMessagesAtOnceAreHeardInTheirOrder();
    void messageThatComesByteByByteIsHeardOnce();
    void messageOfAMegabyteIsHeard();
    void messageWithoutAnOperatorIsIgnored();
    void payloadThatIsNoJsonIsIgnored();
    void frameWithoutALengthEndsTheConnection();
    void frameLongerThanAnythingEndsTheConnection();

    void homeThatGoesIsLost();
    void homeThatIsNotThereIsLost();

private:
    std::unique_ptr<Home> m_home;
    std::unique_ptr<editortab::HomeLink> m_link;
    std::unique_ptr<QSignalSpy> m_received;
    std::unique_ptr<QSignalSpy> m_lost;
};

/// Every test begins with a child that has connected and named itself.
void TestHomeLink::init()
{
    m_home = std::make_unique<Home>();
    m_link = std::make_unique<editortab::HomeLink>();
    m_received = std::make_unique<QSignalSpy>(m_link.get(), &editortab::HomeLink::received);
    m_lost = std::make_unique<QSignalSpy>(m_link.get(), &editortab::HomeLink::lost);
    QSignalSpy connected(m_link.get(), &editortab::HomeLink::connected);
    m_link->open(m_home->name, "guid-1");
    QVERIFY(m_home->takeChild());
    QTRY_COMPARE(connected.count(), 1);
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"processName", "guid-1"}}));
}

void TestHomeLink::cleanup()
{
    m_lost.reset();
    m_received.reset();
    m_link.reset();
    m_home.reset();
}

void TestHomeLink::namesItsTabFirst()
{
    // init has seen it.
    QVERIFY(!m_home->hasMore());
    QCOMPARE(m_lost->count(), 0);
}

void TestHomeLink::reportsItsWindowAsText()
{
    m_link->reportWindow(0x7fffffffffffffffULL);
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"winid", "9223372036854775807"}}));
}

void TestHomeLink::reportsItsDialogs()
{
    m_link->reportDialog(true);
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"dialogShow", true}}));
    m_link->reportDialog(false);
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"dialogShow", false}}));
}

void TestHomeLink::agreesToCloseByItsName()
{
    m_link->agreeToClose();
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"quitResponse", "guid-1"}}));
}

void TestHomeLink::reportsASavedProject()
{
    m_link->reportSaved("guid-1");
    QCOMPARE(m_home->nextMessage(), (QJsonObject{{"ReOpenProj", "guid-1"}}));
}

void TestHomeLink::asksForANewProject()
{
    m_link->askForNewProject();
    QCOMPARE(m_home->nextMessage().keys(), QStringList("CreateBimProj"));
}

void TestHomeLink::reportsArriveInTheirOrder()
{
    m_link->reportDialog(true);
    m_link->reportSaved("guid-1");
    m_link->agreeToClose();
    QCOMPARE(m_home->nextMessage().keys(), QStringList("dialogShow"));
    QCOMPARE(m_home->nextMessage().keys(), QStringList("ReOpenProj"));
    QCOMPARE(m_home->nextMessage().keys(), QStringList("quitResponse"));
}

void TestHomeLink::messageOfTheHomeIsHeardWithAllThatIsInIt()
{
    m_home->send(Frame("{\n    \"operator\": \"info\",\n    \"text\": \"你好\"\n}\n"));
    QTRY_COMPARE(m_received->count(), 1);
    QCOMPARE(m_received->at(0).at(0).toString(), QStringLiteral("info"));
    QCOMPARE(m_received->at(0).at(1).toJsonObject().value("text").toString(), QStringLiteral("你好"));
}

void TestHomeLink::severalMessagesAtOnceAreHeardInTheirOrder()
{
    m_home->send(Frame(R"({"operator": "a"})") + Frame(R"({"operator": "b"})") +
                 Frame(R"({"operator": "c"})"));
    QTRY_COMPARE(m_received->count(), 3);
    QCOMPARE(m_received->at(0).at(0).toString(), QStringLiteral("a"));
    QCOMPARE(m_received->at(1).at(0).toString(), QStringLiteral("b"));
    QCOMPARE(m_received->at(2).at(0).toString(), QStringLiteral("c"));
}

void TestHomeLink::messageThatComesByteByByteIsHeardOnce()
{
    const auto frame = Frame(R"({"operator": "size"})");
    for (int i = 0; i < frame.size(); ++i) {
        m_home->send(frame.mid(i, 1));
        QCoreApplication::processEvents();
    }
    m_home->send(Frame(R"({"operator": "end"})"));
    QTRY_COMPARE(m_received->count(), 2);
    QCOMPARE(m_received->at(0).at(0).toString(), QStringLiteral("size"));
}

void TestHomeLink::messageOfAMegabyteIsHeard()
{
    const QString text(1 << 20, QLatin1Char('x'));
    m_home->send(Frame(
        QJsonDocument(QJsonObject{{"operator", "info"}, {"text", text}}).toJson(QJsonDocument::Compact)));
    QTRY_COMPARE(m_received->count(), 1);
    QVERIFY(m_received->at(0).at(1).toJsonObject().value("text").toString() == text);
}

void TestHomeLink::messageWithoutAnOperatorIsIgnored()
{
    m_home->send(Frame(R"({"text": "a"})") + Frame(R"([1, 2])") + Frame(R"({"operator": "b"})"));
    QTRY_COMPARE(m_received->count(), 1);
    QCOMPARE(m_received->at(0).at(0).toString(), QStringLiteral("b"));
}

void TestHomeLink::payloadThatIsNoJsonIsIgnored()
{
    m_home->send(Frame("\xff\xfe not JSON {") + Frame(R"({"operator": "b"})"));
    QTRY_COMPARE(m_received->count(), 1);
    QCOMPARE(m_lost->count(), 0);
}

void TestHomeLink::frameWithoutALengthEndsTheConnection()
{
    m_home->send(Frame({}) + Frame(R"({"operator": "b"})"));
    QTRY_COMPARE(m_lost->count(), 1);
    QCOMPARE(m_received->count(), 0);
}

void TestHomeLink::frameLongerThanAnythingEndsTheConnection()
{
    m_home->send(QByteArray("\xff\xff\xff\xff{", 5));
    QTRY_COMPARE(m_lost->count(), 1);
    QCOMPARE(m_received->count(), 0);
}

void TestHomeLink::homeThatGoesIsLost()
{
    m_home->close();
    QTRY_COMPARE(m_lost->count(), 1);
}

void TestHomeLink::homeThatIsNotThereIsLost()
{
    editortab::HomeLink link;
    QSignalSpy connected(&link, &editortab::HomeLink::connected);
    QSignalSpy lost(&link, &editortab::HomeLink::lost);
    link.open(m_home->name + "-not", "guid-2");
    QTRY_COMPARE(lost.count(), 1);
    QCOMPARE(connected.count(), 0);
}

QTEST_GUILESS_MAIN(TestHomeLink)
#include "test_homelink.moc"
