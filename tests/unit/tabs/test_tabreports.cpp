// SPDX-License-Identifier: MIT
//
// What the home makes of the messages of its children.
#include "core/homeapp.h"
#include "fakes/fakenative.h"
#include "fakes/logbook.h"
#include "fakes/openhome.h"
#include "tabs/frames.h"

#include <cstdio>
#include <memory>

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QTemporaryFile>
#include <QTest>

#include <unistd.h>

using namespace TorvoEditor;

namespace
{

/// Takes what this process writes to its standard output while it lives.
class StandardOutput
{
public:
    StandardOutput()
    {
        std::fflush(stdout);
        m_isOpen = m_file.open();
        m_earlier = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput()
    {
        std::fflush(stdout);
        dup2(m_earlier, STDOUT_FILENO);
        close(m_earlier);
    }

    [[nodiscard]] QByteArray text() const
    {
        QFile file(m_file.fileName());
        return m_isOpen && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot read");
    }

private:
    QTemporaryFile m_file;
    bool m_isOpen = false;
    int m_earlier = -1;
};

} // namespace

class TestTabReports : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void winidEmbedsTheWindowOverTheContentArea();
    void winidIsReadAsDecimalText_data();
    void winidIsReadAsDecimalText();
    void windowThatCannotBeEmbeddedIsOneLineOnStandardOutput_data();
    void windowThatCannotBeEmbeddedIsOneLineOnStandardOutput();
    void secondWinidEmbedsTheSecondWindow();
    void winidOfAStrangerMakesHimATab();
    void reOpenProjLetsGoOfTheProjectThenRefreshesIt();
    void dialogShowIsToldAndLogged_data();
    void dialogShowIsToldAndLogged();
    void convertstateOfTwoTabsTheLatestWins();
    void createBimProjGoesToTheHomeScreenFirst();
    void quitResponseForAnotherTabClosesThatOne();
    void keysOfOneMessageAreTakenInSortedOrder();
    void unknownKeysAreSkipped();
    void processNameOfANamedChildIsSkipped();
    void badJsonIsLoggedAndIgnored_data();
    void badJsonIsLoggedAndIgnored();
    void arrayIsNoMessage();

private:
    void hear(const QByteArray& payload, const QString& from = "p1") const;
    [[nodiscard]] CTabMgr& tabs() const { return m_home->tabs(); }

    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<Fakes::OpenHome> m_home;
};

void TestTabReports::init()
{
    Fakes::Windows() = Fakes::WindowSystem();
    m_home = std::make_unique<Fakes::OpenHome>();
    QVERIFY(m_home->isStarted());
    Fakes::SmartDB::instance().add("p1", "one", "BIM");
    m_home->open("p1", "await ever");
    QTRY_VERIFY(!Fakes::StartMessageOf("p1").isEmpty());
    QCoreApplication::processEvents();
    m_log = std::make_unique<Fakes::LogBook>();
    Fakes::ForgetCalls();
}

void TestTabReports::cleanup()
{
    m_log.reset();
    m_home.reset();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
}

/// A frame has come from the child of a tab.
void TestTabReports::hear(const QByteArray& payload, const QString& from) const
{
    QVERIFY(
        QMetaObject::invokeMethod(&tabs(), "onReadyReay", Q_ARG(QString, from), Q_ARG(QByteArray, payload)));
}

void TestTabReports::winidEmbedsTheWindowOverTheContentArea()
{
    hear(R"({"winid": "4242"})");
    QCOMPARE(Fakes::CallsOf({"SetParent", "MoveWindow"}),
             QStringList({
                 QStringLiteral("SetParent(4242,%1)").arg(m_home->window->winId()),
                 // x of the content area, height of the title, 640 - 4.5 and 480 - 36.25 truncated
                 "MoveWindow(4242,2,34,635,443,true)",
             }));
    QCOMPARE(m_log->take(), QStringList("warning: received winid 4242"));
}

void TestTabReports::winidIsReadAsDecimalText_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("number");
    QTest::newRow("greatest") << QByteArray(R"("18446744073709551615")") << "18446744073709551615";
    QTest::newRow("too great") << QByteArray(R"("18446744073709551616")") << "0";
    QTest::newRow("words") << QByteArray(R"("my window")") << "0";
    QTest::newRow("hexadecimal") << QByteArray(R"("0x10")") << "0";
    QTest::newRow("negative") << QByteArray(R"("-1")") << "0";
    QTest::newRow("a number, not a text") << QByteArray("4242") << "0";
    QTest::newRow("nothing") << QByteArray("null") << "0";
}

void TestTabReports::winidIsReadAsDecimalText()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, number);
    Fakes::Windows().acceptsParent = number != "0";
    const StandardOutput output;
    hear("{\"winid\": " + value + "}");
    QCOMPARE(m_log->take(), QStringList("warning: received winid " + number));
    QCOMPARE(Fakes::CallsOf({"SetParent"}),
             QStringList(QStringLiteral("SetParent(%1,%2)").arg(number).arg(m_home->window->winId())));
}

void TestTabReports::windowThatCannotBeEmbeddedIsOneLineOnStandardOutput_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("with the system's reason")
        << "no window has the id 7" << QByteArray("no window has the id 7\n");
    QTest::newRow("without one") << "" << QByteArray("errorMessageID is 0\n");
}

void TestTabReports::windowThatCannotBeEmbeddedIsOneLineOnStandardOutput()
{
    QFETCH(QString, reason);
    QFETCH(QByteArray, line);
    Fakes::Windows().acceptsParent = false;
    Fakes::Windows().errorText = reason.toStdString();
    const StandardOutput output;
    hear(R"({"winid": "7"})");
    QCOMPARE(output.text(), line);
    QCOMPARE(Fakes::CallsOf({"MoveWindow"}), QStringList());
    QCOMPARE(m_home->tab().tabList(), QStringList("p1"));
}

void TestTabReports::secondWinidEmbedsTheSecondWindow()
{
    hear(R"({"winid": "1"})");
    hear(R"({"winid": "2"})");
    QCOMPARE(Fakes::CallsOf({"MoveWindow"}),
             QStringList({"MoveWindow(1,2,34,635,443,true)", "MoveWindow(2,2,34,635,443,true)"}));
}

void TestTabReports::winidOfAStrangerMakesHimATab()
{
    hear(R"({"winid": "9"})", "stranger");
    // He counts as started: to open him is a mere switch.
    m_home->open("stranger", "await ever");
    QCOMPARE(m_home->tab().currentTab(), QString("stranger"));
    QCOMPARE(m_home->tab().tabList(), QStringList("p1"));
    QTRY_COMPARE(Fakes::RunningChildren().size(), 1);
    QCOMPARE(Fakes::StartMessageOf("stranger"), QByteArray());
}

void TestTabReports::reOpenProjLetsGoOfTheProjectThenRefreshesIt()
{
    hear(R"({"ReOpenProj": "p1"})");
    const auto calls = Fakes::CallsOf({"CloseProject", "NeedUpgrade", "OpenProject"});
    QCOMPARE(calls.value(0), QString("CloseProject(p1)"));
    QVERIFY(calls.mid(1).contains("NeedUpgrade(p1)"));
}

void TestTabReports::dialogShowIsToldAndLogged_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<QString>("line");
    QTest::newRow("shown") << true << "info: dialogShow true";
    QTest::newRow("hidden") << false << "info: dialogShow false";
}

void TestTabReports::dialogShowIsToldAndLogged()
{
    QFETCH(bool, isShown);
    QFETCH(QString, line);
    QSignalSpy told(&tabs(), &CTabMgr::dialogShow);
    hear(isShown ? R"({"dialogShow": true})" : R"({"dialogShow": false})");
    QCOMPARE(told, QList<QVariantList>({{isShown}}));
    QCOMPARE(m_log->take(), QStringList(line));
}

void TestTabReports::convertstateOfTwoTabsTheLatestWins()
{
    QSignalSpy told(&tabs(), &CTabMgr::isConvertingChanged);
    hear(R"({"convertstate": true})", "p1");
    hear(R"({"convertstate": true})", "p2");
    hear(R"({"convertstate": false})", "p1");
    QCOMPARE(told, QList<QVariantList>({{true}, {true}, {false}}));
}

void TestTabReports::createBimProjGoesToTheHomeScreenFirst()
{
    QString current;
    connect(&tabs(), &CTabMgr::sigCreateBimProj, this, [&] { current = m_home->tab().currentTab(); });
    QSignalSpy told(&tabs(), &CTabMgr::sigCreateBimProj);
    QCOMPARE(m_home->tab().currentTab(), QString("p1"));
    hear(R"({"CreateBimProj": 5})");
    QCOMPARE(told.count(), 1);
    QCOMPARE(current, QString("main"));
}

void TestTabReports::quitResponseForAnotherTabClosesThatOne()
{
    hear(R"({"quitResponse": "p1"})", "p2");
    QCOMPARE(m_home->tab().tabList(), QStringList());
    hear(R"({"quitResponse": "unknown"})");
    QCOMPARE(m_home->tab().currentTab(), QString("p1"));
}

void TestTabReports::keysOfOneMessageAreTakenInSortedOrder()
{
    connect(&tabs(), &CTabMgr::isConvertingChanged, this, [] { Fakes::Called("converting"); });
    connect(&tabs(), &CTabMgr::dialogShow, this, [] { Fakes::Called("dialogShow"); });
    connect(&tabs(), &CTabMgr::sigCreateBimProj, this, [] { Fakes::Called("CreateBimProj"); });
    hear(
        R"({"winid": "5", "dialogShow": true, "convertstate": true, "CreateBimProj": 1, "ReOpenProj": "p1"})");
    QCOMPARE(Fakes::CallsOf({"CreateBimProj", "CloseProject", "converting", "dialogShow", "SetParent"}),
             QStringList({"CreateBimProj", "CloseProject(p1)", "converting", "dialogShow",
                          QStringLiteral("SetParent(5,%1)").arg(m_home->window->winId())}));
}

void TestTabReports::unknownKeysAreSkipped()
{
    QSignalSpy told(&tabs(), &CTabMgr::dialogShow);
    hear(R"({"aaa": 1, "dialogShow": true, "operator": "quit", "zzz": []})");
    QCOMPARE(told.count(), 1);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestTabReports::processNameOfANamedChildIsSkipped()
{
    hear(R"({"processName": "p2"})");
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(m_home->tab().tabList(), QStringList("p1"));
}

void TestTabReports::badJsonIsLoggedAndIgnored_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("reason");
    QTest::newRow("noise") << QByteArray("\x01\xFF", 2) << "illegal value";
    QTest::newRow("cut") << QByteArray(R"({"winid": "4)") << "unterminated string";
    QTest::newRow("nothing behind a comma")
        << QByteArray(R"({"winid": "4",})") << "object is missing after a comma";
}

void TestTabReports::badJsonIsLoggedAndIgnored()
{
    QFETCH(QByteArray, payload);
    QFETCH(QString, reason);
    hear(payload);
    const auto lines = m_log->take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines[0].startsWith("warning: parseError  \"") && lines[0].contains(reason),
             qPrintable(lines[0]));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestTabReports::arrayIsNoMessage()
{
    hear(R"([{"winid": "4"}])");
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_MAIN(TestTabReports)
#include "test_tabreports.moc"
