// SPDX-License-Identifier: MIT
#include "convertsuite.h"

using namespace TorvoEditor;

class TestBimProjCheck : public QObject
{
    Q_OBJECT

private slots:
    void projectIsVetted_data();
    void projectIsVetted();
    void refusalIsOnlyLoggedWithoutTheDialog();
    void emptyGuidIsRefusedInSilence();
    void unknownProjectIsRefusedInSilence();
    void dialogOpensOnlyWhenTheListCanBeRead_data();
    void dialogOpensOnlyWhenTheListCanBeRead();
    void dialogDoesNotOpenForARefusedProject();
    void dialogDoesNotOpenForAnEmptyGuid();
};

namespace
{

const QString differs = "当前bim工程与服务器不一致请先上传或者更新后再试";
const QString uploads = "当前bim工程服务端上传中请稍后再试";
const QString failed = "当前bim工程服务器上传失败,请先强制上传!";

} // namespace

void TestBimProjCheck::projectIsVetted_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("word"); // the server's, on the project
    QTest::addColumn<int>("state");    // the library's
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isGood");
    const QString differsLine =
        "ServiceConvertMgr::checkBimProj 当前bim工程与服务版本不一致,guid: \"p\"  status ";
    const QString uploadsLine =
        "ServiceConvertMgr::checkBimProj 当前bim工程服务端上传中请稍后再试,guid: \"p\"";
    const QString none;
    QTest::newRow("the same") << "BIM"
                              << "1" << 1 << none << none << true;
    QTest::newRow("older here") << "BIM"
                                << "1" << 3 << none << none << true;
    QTest::newRow("being converted") << "BIM"
                                     << "3" << 1 << none << none << true;
    QTest::newRow("a scene") << "CIM"
                             << "1" << 1 << none << none << false;
    QTest::newRow("only here") << "BIM"
                               << "1" << 0 << differs << differsLine + "0" << false;
    QTest::newRow("changed here") << "BIM"
                                  << "1" << 2 << differs << differsLine + "2" << false;
    QTest::newRow("changed on both sides") << "BIM"
                                           << "1" << 4 << differs << differsLine + "4" << false;
    QTest::newRow("upload failed") << "BIM"
                                   << "-1" << 1 << differs << differsLine + "5" << false;
    QTest::newRow("upload runs") << "BIM"
                                 << "0" << 1 << uploads << uploadsLine << false;
}

void TestBimProjCheck::projectIsVetted()
{
    QFETCH(QString, type);
    QFETCH(QString, word);
    QFETCH(int, state);
    QFETCH(QString, box);
    QFETCH(QString, line);
    StartedConvert home;
    QVERIFY(home.start());
    StartedConvert::addLocal("p", type, word, state);
    home.log.take();
    QTEST(StartedConvert::convert().checkBimProj("p"), "isGood");
    QCOMPARE(home.boxes, box.isEmpty() ? QStringList() : QStringList("提示: " + box));
    QCOMPARE(home.log.linesWith("checkBimProj"),
             line.isEmpty() ? QStringList() : QStringList("debug: " + line));
}

void TestBimProjCheck::refusalIsOnlyLoggedWithoutTheDialog()
{
    StartedConvert home;
    QVERIFY(home.start());
    StartedConvert::addLocal("p", "BIM", "1", 2);
    home.log.take();
    QVERIFY(!StartedConvert::convert().checkBimProj("p", false));
    QCOMPARE(home.boxes, QStringList());
    QCOMPARE(home.log.linesWith("checkBimProj").size(), 1);
}

void TestBimProjCheck::emptyGuidIsRefusedInSilence()
{
    StartedConvert home;
    QVERIFY(home.start());
    QVERIFY(!StartedConvert::convert().checkBimProj(""));
    QCOMPARE(home.boxes, QStringList());
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimProjCheck::unknownProjectIsRefusedInSilence()
{
    StartedConvert home;
    QVERIFY(home.start());
    QVERIFY(!StartedConvert::convert().checkBimProj("unknown"));
    QCOMPARE(home.boxes, QStringList());
    QCOMPARE(home.log.linesWith("checkBimProj"), QStringList());
}

void TestBimProjCheck::dialogOpensOnlyWhenTheListCanBeRead_data()
{
    QTest::addColumn<bool>("hasJobs");
    QTest::addColumn<bool>("hasModels");
    QTest::addColumn<bool>("hasFailures");
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("all") << true << true << true << true;
    QTest::newRow("no failures") << true << true << false << true;
    QTest::newRow("no models") << true << false << true << false;
    QTest::newRow("no jobs") << false << true << true << false;
}

void TestBimProjCheck::dialogOpensOnlyWhenTheListCanBeRead()
{
    QFETCH(bool, hasJobs);
    QFETCH(bool, hasModels);
    QFETCH(bool, hasFailures);
    StartedConvert home;
    QVERIFY(home.start());
    StartedConvert::addLocal("p", "BIM");
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        if (hasJobs)
            server.jobs["p"] = {};
        if (hasModels)
            server.models["p"] = {};
        if (hasFailures)
            server.failures["p"] = {};
    });
    QFETCH(bool, isOpen);
    QCOMPARE(StartedConvert::convert().checkServiceConvert("p"), isOpen);
    QCOMPARE(home.boxes, QStringList());

    // Only for a current project does the timer ask.
    Fakes::ForgetCalls();
    QMetaObject::invokeMethod(&StartedConvert::convert(), "OnCurBimProjTimerOut");
    QCOMPARE(!Fakes::CallsOf({"getConvertKyvInfoBimProj"}).isEmpty(), isOpen);
}

void TestBimProjCheck::dialogDoesNotOpenForARefusedProject()
{
    StartedConvert home;
    QVERIFY(home.start());
    StartedConvert::addLocal("p", "BIM", "1", 2);
    QVERIFY(!StartedConvert::convert().checkServiceConvert("p"));
    QCOMPARE(home.boxes, QStringList("提示: " + differs));
    QCOMPARE(Fakes::CallsOf({"getConvertKyvInfoBimProj"}), QStringList());
}

void TestBimProjCheck::dialogDoesNotOpenForAnEmptyGuid()
{
    StartedConvert home;
    QVERIFY(home.start());
    QVERIFY(!StartedConvert::convert().checkServiceConvert(""));
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_MAIN(TestBimProjCheck)
#include "test_bimprojcheck.moc"
