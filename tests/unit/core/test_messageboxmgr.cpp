// SPDX-License-Identifier: MIT
#include "core/messageboxmgr.h"

#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"

#include <memory>

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace TorvoEditor;

class TestMessageBoxMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void observesTheHostsMessages();
    void hostWithoutMessagesIsNoError();
    void hostMessageOnTheHomeTabIsATip_data();
    void hostMessageOnTheHomeTabIsATip();
    void hostMessageOnAnotherTabNeverShowsInTheHomeWindow();
    void showCheckBoxAsksAndWaitsForTheAnswer_data();
    void showCheckBoxAsksAndWaitsForTheAnswer();
    void tipThatReplacesTheQuestionAnswersItWithYes();
    void eventLoopGoesOnWhileAQuestionWaits();
    void answerToAMereTipWaitsForNothing();
    void earlierAnswerIsNoAnswerToTheNextQuestion();
    void secondQuestionWhileOneIsOpenIsAnsweredWithNo();
    void endOfTheProgramAnswersNo();

private:
    [[nodiscard]] static CMessageBoxMgr& box() { return *CHomeApp::instance().GetMgr<CMessageBoxMgr>(); }

    std::unique_ptr<Fakes::Surroundings> m_surroundings;
};

void TestMessageBoxMgr::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
}

void TestMessageBoxMgr::cleanup()
{
    m_surroundings.reset();
}

void TestMessageBoxMgr::observesTheHostsMessages()
{
    const auto& observers = m_surroundings->host.messages.observers;
    QCOMPARE(observers.size(), std::size_t(1));
    QVERIFY(observers.front() == &box());
}

void TestMessageBoxMgr::hostWithoutMessagesIsNoError()
{
    CHomeApp::instance().UnInit();
    m_surroundings->host.hasMessages = false;
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
}

void TestMessageBoxMgr::hostMessageOnTheHomeTabIsATip_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("title");
    QTest::newRow("info") << "info" << QString::fromUtf8("提示");
    QTest::newRow("warn") << "warn" << QString::fromUtf8("警告");
    QTest::newRow("error") << "error" << QString::fromUtf8("出错");
}

void TestMessageBoxMgr::hostMessageOnTheHomeTabIsATip()
{
    QFETCH(QString, kind);
    QFETCH(QString, title);
    QSignalSpy tips(&box(), &CMessageBoxMgr::sigShowTip);
    const auto& messages = m_surroundings->host.messages;
    if (kind == "info")
        messages.tellInfo("what happened");
    else if (kind == "warn")
        messages.tellWarn("what happened");
    else
        messages.tellError("what happened");
    QCOMPARE(tips, QList<QVariantList>({{title, "what happened"}}));
}

void TestMessageBoxMgr::hostMessageOnAnotherTabNeverShowsInTheHomeWindow()
{
    CHomeApp::instance().GetMgr<CTabMgr>()->tab()->setCurrentTab("project-1");
    QSignalSpy tips(&box(), &CMessageBoxMgr::sigShowTip);
    m_surroundings->host.messages.tellInfo("a");
    m_surroundings->host.messages.tellWarn("b");
    m_surroundings->host.messages.tellError("c");
    QCOMPARE(tips.count(), 0);
}

void TestMessageBoxMgr::showCheckBoxAsksAndWaitsForTheAnswer_data()
{
    QTest::addColumn<bool>("answer");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void TestMessageBoxMgr::showCheckBoxAsksAndWaitsForTheAnswer()
{
    QFETCH(bool, answer);
    QSignalSpy asked(&box(), &CMessageBoxMgr::sigCheckBox);
    QTimer::singleShot(0, &box(), [=] { box().callResultCallBack(answer); });
    QCOMPARE(box().ShowCheckBox("title", "really?"), answer);
    QCOMPARE(asked, QList<QVariantList>({{"title", "really?"}}));
}

void TestMessageBoxMgr::tipThatReplacesTheQuestionAnswersItWithYes()
{
    QSignalSpy tips(&box(), &CMessageBoxMgr::sigShowTip);
    QTimer::singleShot(0, &box(), [this] {
        m_surroundings->host.messages.tellInfo("something else");
        // The tip has one button, and the screen reports it as any other.
        box().callResultCallBack(true);
    });
    QCOMPARE(box().ShowCheckBox("title", "really?"), true);
    QCOMPARE(tips.count(), 1);
}

void TestMessageBoxMgr::eventLoopGoesOnWhileAQuestionWaits()
{
    QStringList steps;
    QTimer::singleShot(0, this, [&] { steps.append("first"); });
    QTimer::singleShot(10, this, [&] {
        steps.append("second");
        box().callResultCallBack(false);
    });
    QVERIFY(!box().ShowCheckBox("title", "really?"));
    QCOMPARE(steps, QStringList({"first", "second"}));
}

void TestMessageBoxMgr::answerToAMereTipWaitsForNothing()
{
    box().callResultCallBack(true);
    box().callResultCallBack(false);
    QTimer::singleShot(0, &box(), [] { box().callResultCallBack(true); });
    QVERIFY(box().ShowCheckBox("title", "really?"));
}

void TestMessageBoxMgr::earlierAnswerIsNoAnswerToTheNextQuestion()
{
    box().callResultCallBack(true);
    QTimer::singleShot(0, &box(), [] { box().callResultCallBack(false); });
    QVERIFY(!box().ShowCheckBox("title", "really?"));
}

void TestMessageBoxMgr::secondQuestionWhileOneIsOpenIsAnsweredWithNo()
{
    Fakes::LogBook log;
    QSignalSpy asked(&box(), &CMessageBoxMgr::sigCheckBox);
    bool second = true;
    QTimer::singleShot(0, &box(), [&] {
        second = box().ShowCheckBox("title", "the second?");
        box().callResultCallBack(true);
    });
    QCOMPARE(box().ShowCheckBox("title", "the first?"), true);
    QCOMPARE(second, false);
    QCOMPARE(asked, QList<QVariantList>({{"title", "the first?"}}));
    QCOMPARE(log.take(), QStringList("warning: a question is open already, this one counts as answered with "
                                     "no: \"the second?\""));
}

void TestMessageBoxMgr::endOfTheProgramAnswersNo()
{
    bool answer = true;
    QTimer::singleShot(0, &box(), [&] {
        QTimer::singleShot(0, &box(), [] { QCoreApplication::quit(); });
        answer = box().ShowCheckBox("title", "really?");
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(!answer);
}

QTEST_MAIN(TestMessageBoxMgr)
#include "test_messageboxmgr.moc"
