// SPDX-License-Identifier: MIT
#include "editortab/home/startmessage.h"

#include <QTest>

using editortab::ReadStartMessage;

class TestStartMessage : public QObject
{
    Q_OBJECT

private slots:
    void everythingTheHomeSaysIsRead();
    void tabAndServerAreEnough();
    void messageThatIsNoneIsRefused_data();
    void messageThatIsNoneIsRefused();
    void windowIsNeverSmallerThanItCanBeUsed();
    void windowMayStandLeftOfTheFirstScreen();
    void valuesOfAnotherKindAreAsIfTheyWereMissing();
    void unknownKeysAreIgnored();
};

void TestStartMessage::everythingTheHomeSaysIsRead()
{
    const auto message = ReadStartMessage(QStringLiteral(R"({
        "tabName": "guid-1", "ipcServer": "home-7", "token": "token-1", "serverAddr": "http://127.0.0.1:8480",
        "cookies": "a=1", "x": 10, "y": 20, "w": 800, "h": 600, "subProj": ["guid-2", "guid-3"],
        "projMode": "CIM", "sdkAddr": "http://127.0.0.1:2", "loginName": "王工"})"));
    QVERIFY(message);
    QCOMPARE(message->tabName, QStringLiteral("guid-1"));
    QCOMPARE(message->ipcServer, QStringLiteral("home-7"));
    QCOMPARE(message->token, QStringLiteral("token-1"));
    QCOMPARE(message->serverAddr, QStringLiteral("http://127.0.0.1:8480"));
    QCOMPARE(message->cookies, QStringLiteral("a=1"));
    QCOMPARE(message->contentRect, QRect(10, 20, 800, 600));
    QCOMPARE(message->subProjects, QStringList({"guid-2", "guid-3"}));
    QCOMPARE(message->projMode, QStringLiteral("CIM"));
}

void TestStartMessage::tabAndServerAreEnough()
{
    const auto message = ReadStartMessage(QStringLiteral(R"({"tabName": "guid-1", "ipcServer": "home-7"})"));
    QVERIFY(message);
    QCOMPARE(message->token, QString());
    QCOMPARE(message->subProjects, QStringList());
}

void TestStartMessage::messageThatIsNoneIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no JSON") << QStringLiteral("--help");
    QTest::newRow("half a JSON") << QStringLiteral(R"({"tabName": "guid-1", "ipcServer": "ho)");
    QTest::newRow("no object") << QStringLiteral(R"(["guid-1", "home-7"])");
    QTest::newRow("no tab") << QStringLiteral(R"({"ipcServer": "home-7"})");
    QTest::newRow("no server") << QStringLiteral(R"({"tabName": "guid-1"})");
    QTest::newRow("an empty tab") << QStringLiteral(R"({"tabName": "", "ipcServer": "home-7"})");
    QTest::newRow("a tab that is a number") << QStringLiteral(R"({"tabName": 1, "ipcServer": "home-7"})");
}

void TestStartMessage::messageThatIsNoneIsRefused()
{
    QFETCH(QString, text);
    QVERIFY(!ReadStartMessage(text));
}

void TestStartMessage::windowIsNeverSmallerThanItCanBeUsed()
{
    const auto message = ReadStartMessage(
        QStringLiteral(R"({"tabName": "guid-1", "ipcServer": "home-7", "x": 5, "y": 6, "w": 0, "h": -40})"));
    QVERIFY(message);
    QCOMPARE(message->contentRect, QRect(5, 6, 320, 240));
}

void TestStartMessage::windowMayStandLeftOfTheFirstScreen()
{
    const auto message = ReadStartMessage(QStringLiteral(
        R"({"tabName": "guid-1", "ipcServer": "home-7", "x": -1900, "y": -20, "w": 800, "h": 600})"));
    QVERIFY(message);
    QCOMPARE(message->contentRect, QRect(-1900, -20, 800, 600));
}

void TestStartMessage::valuesOfAnotherKindAreAsIfTheyWereMissing()
{
    const auto message = ReadStartMessage(QStringLiteral(
        R"({"tabName": "guid-1", "ipcServer": "home-7", "token": 7, "x": "10", "w": [], "subProj": "guid-2"})"));
    QVERIFY(message);
    QCOMPARE(message->token, QString());
    QCOMPARE(message->contentRect, QRect(0, 0, 320, 240));
    QCOMPARE(message->subProjects, QStringList());
}

void TestStartMessage::unknownKeysAreIgnored()
{
    const auto message = ReadStartMessage(
        QStringLiteral(R"({"tabName": "guid-1", "ipcServer": "home-7", "epId": "7", "later": {"a": [1]}})"));
    QVERIFY(message);
    QCOMPARE(message->tabName, QStringLiteral("guid-1"));
}

QTEST_GUILESS_MAIN(TestStartMessage)
#include "test_startmessage.moc"
