// SPDX-License-Identifier: MIT
//
// Opening, switching and closing of tabs, with real children.
#include "tabs/tabmgr.h"

#include "core/messageboxmgr.h"
#include "fakes/logbook.h"
#include "fakes/openhome.h"
#include "project/projectmgr.h"
#include "tabs/frames.h"

#include <memory>

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QTest>

using namespace TorvoEditor;
using Fakes::OperatorsReceivedBy;

namespace
{

Fakes::Guid KeyOf(const QString& guid)
{
    return ZRSmartFormat::GuidFromText(guid.toStdWString());
}

} // namespace

class TestTabMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void openTabStartsAChildWithItsStartMessage();
    void startMessageOfAnUnknownProjectHasNoMode();
    void openTabListsTheTabAndMakesItCurrent();
    void openTabOfTheCurrentTabDoesNothing();
    void openTabOfAnOpenTabIsAMereSwitch();
    void openTabMainStartsNothingAndHidesTheCurrentChild();
    void switchHidesTheOldChildAndShowsTheNewOne();
    void showToAChildThatIsStillStartingGoesNowhere();
    void closeTabMainDoesNothing();
    void closeTabAsksTheChildWhichThenGoes();
    void closeTabOfATabThatIsShownFirstSaysShowThenQuitRequest();
    void quitResponseLeavesTheTabCurrentUntilTheConnectionIsGone();
    void childThatDoesNotAgreeStays();
    void childThatDiesTakesItsTabAlong_data();
    void childThatDiesTakesItsTabAlong();
    void childThatDiesHiddenLeavesTheCurrentTab();
    void childThatCannotBeStartedLeavesItsTabInTheBar();
    void tabCanBeOpenedAgainAfterItsChildHasDied();
    void hostMessagesGoToTheNamedTab();
    void menuMessagesGoToTheCurrentTab();
    void menuMessagesOnTheHomeTabGoNowhere();
    void hostsMessageReachesTheCurrentTab();
    void uploadsAreCountedOnce();
    void endOfAnUploadThatNeverBeganIsToldAllTheSame();
    void unInitTellsTheChildrenToQuit();
    void unInitKillsAChildThatDoesNotListen();
    void releaseWithoutUnInitLeavesNoChild();

private:
    [[nodiscard]] CTabMgr& tabs() const { return m_home->tabs(); }
    [[nodiscard]] CTab& tab() const { return m_home->tab(); }

    std::unique_ptr<Fakes::OpenHome> m_home;
};

void TestTabMgr::init()
{
    m_home = std::make_unique<Fakes::OpenHome>();
    QVERIFY(m_home->isStarted());
    Fakes::SmartDB::instance().add("p1", "one", "BIM");
    Fakes::SmartDB::instance().add("p2", "two", "CIM");
}

void TestTabMgr::cleanup()
{
    m_home.reset();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestTabMgr::openTabStartsAChildWithItsStartMessage()
{
    auto& scene = *Fakes::SmartDB::instance().find("p2")->project;
    scene.addObject(KeyOf("o1"), KeyOf("sub-b"));
    scene.addObject(KeyOf("o2"), KeyOf("sub-a"));
    m_home->open("p2", "await ever");
    QTRY_VERIFY(!Fakes::StartMessageOf("p2").isEmpty());

    const QByteArray text = Fakes::StartMessageOf("p2");
    const auto message = QJsonDocument::fromJson(text).object();
    QCOMPARE(text, QJsonDocument(message).toJson(QJsonDocument::Indented));
    QVERIFY(message.value("ipcServer").toString().startsWith('{'));
    const QPoint content = m_home->window->mapToGlobal(QPoint(2, 34));
    const QJsonObject expected{
        {"tabName", "p2"},
        {"ipcServer", message.value("ipcServer")},
        {"token", "token-1"},
        {"serverAddr", "http://127.0.0.1:1"},
        {"sdkAddr", "http://127.0.0.1:2"},
        {"loginName", QString::fromUtf8("王工")},
        {"x", content.x()},
        {"y", content.y()},
        {"w", 635}, // 640 - 4.5, truncated
        {"h", 443}, // 480 - 36.25, truncated
        {"subProj", QJsonArray({"sub-b", "sub-a"})},
        {"projMode", "CIM"},
        {"cookies", "cookie=1"},
        {"epName", "await ever"},
    };
    QCOMPARE(QString::fromUtf8(text), QString::fromUtf8(QJsonDocument(expected).toJson()));
}

void TestTabMgr::startMessageOfAnUnknownProjectHasNoMode()
{
    m_home->open("unknown", "await ever");
    QTRY_VERIFY(!Fakes::StartMessageOf("unknown").isEmpty());
    const auto message = QJsonDocument::fromJson(Fakes::StartMessageOf("unknown")).object();
    QCOMPARE(message.value("projMode"), QJsonValue(""));
    QCOMPARE(message.value("subProj"), QJsonValue(QJsonArray()));
}

void TestTabMgr::openTabListsTheTabAndMakesItCurrent()
{
    m_home->open("p1", "await ever");
    QCOMPARE(tab().tabList(), QStringList("p1"));
    QCOMPARE(tab().currentTab(), QString("p1"));
}

void TestTabMgr::openTabOfTheCurrentTabDoesNothing()
{
    QVERIFY(m_home->openConnected("p1"));
    QSignalSpy changed(&tab(), &CTab::currentTabChanged);
    tabs().openTab("p1");
    tabs().showHelp();
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("showHelp"));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(Fakes::RunningChildren().size(), 1);
}

void TestTabMgr::openTabOfAnOpenTabIsAMereSwitch()
{
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    tabs().openTab("p1");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList({"hide", "show"}));
    QCOMPARE(tab().tabList(), QStringList({"p1", "p2"}));
    QCOMPARE(Fakes::RunningChildren().size(), 2);
}

void TestTabMgr::openTabMainStartsNothingAndHidesTheCurrentChild()
{
    QVERIFY(m_home->openConnected("p1"));
    tabs().openTab("main");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("hide"));
    QCOMPARE(tab().currentTab(), QString("main"));
    QCOMPARE(tab().tabList(), QStringList("p1"));
    QCOMPARE(Fakes::RunningChildren().size(), 1);
}

void TestTabMgr::switchHidesTheOldChildAndShowsTheNewOne()
{
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("hide"));
    tabs().openTab("main");
    QTRY_COMPARE(OperatorsReceivedBy("p2"), QStringList("hide"));
    tabs().openTab("p1");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList({"hide", "show"}));
    QCOMPARE(Fakes::ReceivedBy("p1"), QStringList({R"({"operator":"hide"})", R"({"operator":"show"})"}));
}

void TestTabMgr::showToAChildThatIsStillStartingGoesNowhere()
{
    // It has been made current, and shown, before it connects.
    QVERIFY(m_home->openConnected("p1"));
    QCOMPARE(tab().currentTab(), QString("p1"));
    tabs().showHelp();
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("showHelp"));
}

void TestTabMgr::closeTabMainDoesNothing()
{
    QVERIFY(m_home->openConnected("p1"));
    tabs().closeTab("main");
    tabs().showHelp();
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("showHelp"));
}

void TestTabMgr::closeTabAsksTheChildWhichThenGoes()
{
    QVERIFY(m_home->openConnected("p1"));
    tabs().closeTab("p1");
    QTRY_COMPARE(tab().currentTab(), QString("main"));
    QCOMPARE(OperatorsReceivedBy("p1"), QStringList({"quitRequest", "quit"}));
    QCOMPARE(tab().tabList(), QStringList());
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestTabMgr::closeTabOfATabThatIsShownFirstSaysShowThenQuitRequest()
{
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    tabs().openTab("p1");
    tabs().closeTab("p1");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList({"hide", "show", "quitRequest", "quit"}));
    QTRY_COMPARE(tab().currentTab(), QString("main"));
    QCOMPARE(tab().tabList(), QStringList("p2"));
}

void TestTabMgr::quitResponseLeavesTheTabCurrentUntilTheConnectionIsGone()
{
    QVERIFY(m_home->openConnected("p1", "deaf"));
    // The deaf child agrees in so many words and stays.
    QVERIFY(m_home->openConnected("p2", "deaf;send {\"quitResponse\": \"p2\"}"));
    QTRY_COMPARE(OperatorsReceivedBy("p2"), QStringList("quit"));
    QCOMPARE(tab().tabList(), QStringList("p1"));
    QCOMPARE(tab().currentTab(), QString("p2"));
}

void TestTabMgr::childThatDoesNotAgreeStays()
{
    QVERIFY(m_home->openConnected("p1", "deaf"));
    tabs().closeTab("p1");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("quitRequest"));
    QCOMPARE(tab().tabList(), QStringList("p1"));
    QCOMPARE(tab().currentTab(), QString("p1"));
}

void TestTabMgr::childThatDiesTakesItsTabAlong_data()
{
    QTest::addColumn<QString>("end");
    QTest::newRow("ends by itself") << "exit 0";
    QTest::newRow("fails") << "exit 3";
    QTest::newRow("is killed") << "crash";
    QTest::newRow("hangs up") << "drop";
}

void TestTabMgr::childThatDiesTakesItsTabAlong()
{
    QFETCH(QString, end);
    QVERIFY(m_home->openConnected("p1", "await showHelp;" + end));
    QCOMPARE(tab().currentTab(), QString("p1"));
    QSignalSpy tips(CHomeApp::instance().GetMgr<CMessageBoxMgr>(), &CMessageBoxMgr::sigShowTip);
    tabs().showHelp();
    QTRY_COMPARE(tab().currentTab(), QString("main"));
    QCOMPARE(tab().tabList(), QStringList());
    QCOMPARE(tips.count(), 0);
}

void TestTabMgr::childThatDiesHiddenLeavesTheCurrentTab()
{
    QVERIFY(m_home->openConnected("p1", "await hide;crash"));
    QVERIFY(m_home->openConnected("p2"));
    QTRY_COMPARE(tab().tabList(), QStringList("p2"));
    QTRY_COMPARE(Fakes::RunningChildren().size(), 1);
    QCOMPARE(tab().currentTab(), QString("p2"));
}

void TestTabMgr::childThatCannotBeStartedLeavesItsTabInTheBar()
{
    const QString child = QCoreApplication::applicationDirPath() + "/TorvoEditorTab.exe";
    QVERIFY(QFile::rename(child, child + ".away"));
    Fakes::LogBook log;
    m_home->open("p1", "await ever");
    QTRY_COMPARE(log.linesWith(" error: ").size(), 1);
    QVERIFY(QFile::rename(child + ".away", child));
    QCOMPARE(tab().tabList(), QStringList("p1"));
    QCOMPARE(tab().currentTab(), QString("p1"));
    tabs().closeTab("p1");
    QCoreApplication::processEvents();
    QCOMPARE(tab().tabList(), QStringList("p1"));
    // Opening it again does not start it either: the tab is there.
    tabs().openTab("main");
    tabs().openTab("p1");
    QCOMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestTabMgr::tabCanBeOpenedAgainAfterItsChildHasDied()
{
    QVERIFY(m_home->openConnected("p1"));
    tabs().closeTab("p1");
    QTRY_COMPARE(tab().currentTab(), QString("main"));
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
    QVERIFY(m_home->openConnected("p1"));
    QCOMPARE(tab().tabList(), QStringList("p1"));
}

void TestTabMgr::hostMessagesGoToTheNamedTab()
{
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("hide"));
    tabs().SendError("it broke", "p1");
    tabs().SendInfo("so you know", "p1");
    tabs().SendWarn("careful", "p1");
    QTRY_COMPARE(Fakes::ReceivedBy("p1").mid(1), QStringList({
                                                     R"({"operator":"error","value":"it broke"})",
                                                     R"({"operator":"info","value":"so you know"})",
                                                     R"({"operator":"warn","value":"careful"})",
                                                 }));
    QCOMPARE(Fakes::ReceivedBy("p2"), QStringList());
}

void TestTabMgr::menuMessagesGoToTheCurrentTab()
{
    QVERIFY(m_home->openConnected("p1"));
    QVERIFY(m_home->openConnected("p2"));
    tabs().showMenu();
    tabs().hideMenu();
    tabs().showHelp();
    QTRY_COMPARE(OperatorsReceivedBy("p2"), QStringList({"showMenu", "hideMenu", "showHelp"}));
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList("hide"));
}

void TestTabMgr::menuMessagesOnTheHomeTabGoNowhere()
{
    QVERIFY(m_home->openConnected("p1"));
    tabs().openTab("main");
    tabs().showMenu();
    tabs().hideMenu();
    tabs().showHelp();
    tabs().openTab("p1");
    QTRY_COMPARE(OperatorsReceivedBy("p1"), QStringList({"hide", "show"}));
}

void TestTabMgr::hostsMessageReachesTheCurrentTab()
{
    QVERIFY(m_home->openConnected("p1"));
    m_home->surroundings.host.messages.tellWarn("the login ends soon");
    QTRY_COMPARE(Fakes::ReceivedBy("p1"),
                 QStringList(R"({"operator":"warn","value":"the login ends soon"})"));
}

void TestTabMgr::uploadsAreCountedOnce()
{
    auto* projects = CHomeApp::instance().GetMgr<CProjectMgr>();
    QSignalSpy counted(&tabs(), &CTabMgr::uploadCountChanged);
    emit projects->beforeUpload("p1");
    emit projects->beforeUpload("p1");
    emit projects->beforeUpload("p2");
    emit projects->afterUpload("p1");
    emit projects->afterUpload("p2");
    QCOMPARE(counted, QList<QVariantList>({{1}, {1}, {2}, {1}, {0}}));
}

void TestTabMgr::endOfAnUploadThatNeverBeganIsToldAllTheSame()
{
    QSignalSpy counted(&tabs(), &CTabMgr::uploadCountChanged);
    emit CHomeApp::instance().GetMgr<CProjectMgr>()->afterUpload("p1");
    QCOMPARE(counted, QList<QVariantList>({{0}}));
}

void TestTabMgr::unInitTellsTheChildrenToQuit()
{
    m_home->open("p1", "await ever");
    QTRY_VERIFY(!Fakes::StartMessageOf("p1").isEmpty());
    QLocalSocket child;
    child.connectToServer(
        QJsonDocument::fromJson(Fakes::StartMessageOf("p1")).object().value("ipcServer").toString());
    QVERIFY(child.waitForConnected());
    QSignalSpy said(&tabs(), &CTabMgr::isConvertingChanged);
    child.write(MakeFrame("{\"processName\": \"p2\"}") + MakeFrame("{\"convertstate\": true}"));
    QTRY_COMPARE(said.count(), 1);

    CHomeApp::instance().UnInit();
    QTRY_COMPARE(child.state(), QLocalSocket::UnconnectedState);
    QCOMPARE(child.readAll(), MakeFrame("{\n    \"operator\": \"quit\"\n}\n"));
}

void TestTabMgr::unInitKillsAChildThatDoesNotListen()
{
    QVERIFY(m_home->openConnected("p1", "deaf"));
    CHomeApp::instance().UnInit();
    QCOMPARE(Fakes::RunningChildren(), QList<qint64>());
}

void TestTabMgr::releaseWithoutUnInitLeavesNoChild()
{
    QVERIFY(m_home->openConnected("p1", "deaf"));
    m_home->window.reset();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
    QCOMPARE(Fakes::RunningChildren(), QList<qint64>());
}

QTEST_MAIN(TestTabMgr)
#include "test_tabmgr.moc"
