// SPDX-License-Identifier: MIT
// The list of a project as the server tells it: models, jobs, failures, progress, and when it is read.
#include "convertsuite.h"

using namespace TorvoEditor;

class TestConvertList : public QObject
{
    Q_OBJECT

private slots:
    void listIsModelsThenJobsThenTasks();
    void jobWithAnUnknownStatusWaits();
    void modelUnderReplacementIsHiddenOnEveryRefresh();
    void modelThatATaskReplacesIsHiddenOnEveryRefresh();
    void jobsStayWhenTheyCannotBeRead();
    void rowsStayWhenTheModelsCannotBeRead();
    void failuresAreReadWhateverElseFails();
    void failuresAreToldOnceAndUnderTheirNames();
    void failuresThatCannotBeReadAreNone();
    void lastJobInConversionIsFollowed();
    void progressIsAHundredthOfThePercentage();
    void jobThatHasEndedBringsARefresh();
    void zeroAfterZeroBringsNone();
    void progressThatCannotBeReadChangesNothing();
    void progressOfAJobWithoutARowChangesNothing();
    void progressIsNotAskedForWithoutAJobInConversion();
    void followedJobStaysUntilTheDialogCloses();
    void timersRunFromTheirMomentOn();
    void timersOfTheProjectFindNothingToDoWithoutOne();
    void timerOfTheProjectRefreshes();
    void timerOfTheProgressAsksAgain();
    void timerOfAllProjectsScans();
    void scanAsksForEveryProjectThatMayBeConverted();
    void scanPutsPositionsOnTheCards();
    void scanFollowsAJobOfAnotherProject();
    void closingRefreshesOnceMoreAndForgetsTheProject();
    void rowsStayWhenTheDialogCloses();
    void otherProjectStartsWithItsOwnRows();
    void withoutTheSwitchNothingIsAsked();
};

void TestConvertList::listIsModelsThenJobsThenTasks()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1", "m2"});
    StartedConvert::setJobs("bim", {StartedConvert::job("j1", "3"), StartedConvert::job("j2", "6", 4),
                                    StartedConvert::job("j3", "4")});
    StartedConvert::convert().addKyvModel(home.uploads.missingArchive(), 0);
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    QCOMPARE(home.shown(),
             QStringList({"model m1 0", "model m2 0", "job j1 6", "job j2 5", "job j3 9", "missing 2"}));
    QCOMPARE(home.row(0).guid(), QString("m1"));
    QCOMPARE(home.row(0).sort(), -1);
    QCOMPARE(home.row(3).guid(), QString("j2"));
    QCOMPARE(home.row(3).sort(), 4);
    QCOMPARE(home.row(3).pointText(), QString("kyv服务器转换排队中,"));
}

void TestConvertList::jobWithAnUnknownStatusWaits()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "77", 2)});
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.shown(), QStringList("job j 5"));
    QCOMPARE(home.row(0).sort(), 2);
}

void TestConvertList::modelUnderReplacementIsHiddenOnEveryRefresh()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1", "m2"});
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 1, "m1")});
    for (int round = 0; round < 2; ++round) {
        StartedConvert::fire("curBimProjTimer");
        QCOMPARE(home.shown(), QStringList({"model m2 0", "job j 5"}));
    }
}

void TestConvertList::modelThatATaskReplacesIsHiddenOnEveryRefresh()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1", "m2"});
    StartedConvert::convert().updateKyvModel(home.uploads.missingArchive(), "m1", 0);
    for (int round = 0; round < 2; ++round) {
        StartedConvert::fire("curBimProjTimer");
        QCOMPARE(home.shown(), QStringList({"model m2 0", "missing 2"}));
    }
}

void TestConvertList::jobsStayWhenTheyCannotBeRead()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 3)});
    StartedConvert::fire("curBimProjTimer");
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.jobs.clear(); });
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.shown(), QStringList("job j 5"));
    QMap<QString, QList<int>> positions;
    StartedConvert::convert().GetConvertInfo(positions);
    QCOMPARE(positions, (QMap<QString, QList<int>>{{"bim", {3}}}));
}

void TestConvertList::rowsStayWhenTheModelsCannotBeRead()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1"});
    StartedConvert::fire("curBimProjTimer");
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.models.clear(); });
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 3)});
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.shown(), QStringList("model m1 0"));
}

void TestConvertList::failuresAreReadWhateverElseFails()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) {
        server.jobs.clear();
        server.failures["bim"] = {QJsonObject{{"name", "n"}, {"id", "i"}, {"updateDate", "d"}}};
    });
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(StartedConvert::convert().failedArray().size(), 1);
}

void TestConvertList::failuresAreToldOnceAndUnderTheirNames()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) {
        server.failures["bim"] = {QJsonObject{{"name", "塔楼"}, {"id", "7"}, {"updateDate", "2026-01-02"}},
                                  QJsonObject{{"name", "b"}, {"id", "8"}, {"updateDate", "e"}}};
    });
    QSignalSpy told(&StartedConvert::convert(), &CServiceConvertMgr::failedArrayChanged);
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(told.count(), 1);
    QCOMPARE(StartedConvert::convert().property("failedArray").toJsonArray(),
             (QJsonArray{QJsonObject{{"name", "塔楼"}, {"guid", "7"}, {"faildDate", "2026-01-02"}},
                         QJsonObject{{"name", "b"}, {"guid", "8"}, {"faildDate", "e"}}}));
}

void TestConvertList::failuresThatCannotBeReadAreNone()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) {
        server.failures["bim"] = {QJsonObject{{"name", "n"}, {"id", "i"}, {"updateDate", "d"}}};
    });
    StartedConvert::fire("curBimProjTimer");
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.failures.clear(); });
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(StartedConvert::convert().failedArray(), QJsonArray());
}

void TestConvertList::lastJobInConversionIsFollowed()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j1", "3"), StartedConvert::job("j2", "3"),
                                    StartedConvert::job("j3", "6", 1)});
    StartedConvert::setPercent("j1", 10);
    StartedConvert::setPercent("j2", 20);
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.row(0).process(), 0.0);
    QCOMPARE(home.row(1).process(), 0.2);
    QCOMPARE(home.row(2).process(), 0.0);
}

void TestConvertList::progressIsAHundredthOfThePercentage()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::setPercent("j", 12.5);
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.row(0).process(), 0.125);
    StartedConvert::setPercent("j", 100);
    StartedConvert::fire("processTimer");
    QCOMPARE(home.row(0).process(), 1.0);
}

void TestConvertList::jobThatHasEndedBringsARefresh()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::setPercent("j", 99);
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::setPercent("j", 0);
    StartedConvert::setJobs("bim", {});
    StartedConvert::setModels("bim", {"m"});
    StartedConvert::fire("processTimer");
    QCOMPARE(home.shown(), QStringList("model m 0"));
}

void TestConvertList::zeroAfterZeroBringsNone()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::setPercent("j", 0);
    StartedConvert::fire("curBimProjTimer");
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList("getKyvConvertProcess(j)"));
}

void TestConvertList::progressThatCannotBeReadChangesNothing()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::setPercent("j", 50);
    StartedConvert::fire("curBimProjTimer");
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.percents.clear(); });
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    QCOMPARE(home.row(0).process(), 0.5);
    QCOMPARE(Fakes::Calls(), QStringList("getKyvConvertProcess(j)"));
}

void TestConvertList::progressOfAJobWithoutARowChangesNothing()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::setPercent("j", 50);
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::setJobs("bim", {});
    StartedConvert::fire("curBimProjTimer");
    Fakes::ForgetCalls();
    StartedConvert::setPercent("j", 0);
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList("getKyvConvertProcess(j)"));
}

void TestConvertList::progressIsNotAskedForWithoutAJobInConversion()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 1)});
    Fakes::ForgetCalls();
    StartedConvert::fire("curBimProjTimer");
    QMetaObject::invokeMethod(&StartedConvert::convert(), "OnProcessTimerOut");
    QCOMPARE(Fakes::CallsOf({"getKyvConvertProcess"}), QStringList());
    QVERIFY(!StartedConvert::timer("processTimer").isActive());
}

void TestConvertList::followedJobStaysUntilTheDialogCloses()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::setJobs("bim", {});
    StartedConvert::fire("curBimProjTimer");
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList("getKyvConvertProcess(j)"));
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestConvertList::timersRunFromTheirMomentOn()
{
    StartedConvert home;
    StartedConvert::addBims({"bim"});
    QVERIFY(home.start());
    QVERIFY(StartedConvert::timer("convertTimer").isActive());
    QCOMPARE(StartedConvert::timer("convertTimer").interval(), 180000);
    QVERIFY(!StartedConvert::timer("curBimProjTimer").isActive());
    QVERIFY(!StartedConvert::timer("processTimer").isActive());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    QVERIFY(StartedConvert::timer("curBimProjTimer").isActive());
    QCOMPARE(StartedConvert::timer("curBimProjTimer").interval(), 30000);
    QVERIFY(StartedConvert::timer("processTimer").isActive());
    QCOMPARE(StartedConvert::timer("processTimer").interval(), 3000);
    for (const char* name : {"convertTimer", "curBimProjTimer", "processTimer"})
        QVERIFY(!StartedConvert::timer(name).isSingleShot());
}

void TestConvertList::timersOfTheProjectFindNothingToDoWithoutOne()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::timer("curBimProjTimer").isActive());
    QVERIFY(StartedConvert::timer("processTimer").isActive());
    Fakes::ForgetCalls();
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestConvertList::timerOfTheProjectRefreshes()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::ForgetCalls();
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(Fakes::Calls(), QStringList({"getConvertKyvInfoBimProj(bim)", "getKyvInfoByBimProj(bim)",
                                          "getConvertFailedList(bim)"}));
}

void TestConvertList::timerOfTheProgressAsksAgain()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "3")});
    StartedConvert::fire("curBimProjTimer");
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList({"getKyvConvertProcess(j)", "getKyvConvertProcess(j)"}));
}

void TestConvertList::timerOfAllProjectsScans()
{
    StartedConvert home;
    StartedConvert::addBims({"bim", "other"});
    QVERIFY(home.start());
    Fakes::ForgetCalls();
    StartedConvert::fire("convertTimer");
    QCOMPARE(Fakes::CallsOf({"getConvertKyvInfoBimProj"}),
             QStringList({"getConvertKyvInfoBimProj(bim)", "getConvertKyvInfoBimProj(other)"}));
}

void TestConvertList::scanAsksForEveryProjectThatMayBeConverted()
{
    StartedConvert home;
    StartedConvert::writeLocalList({"bim", "scene", "changed"});
    StartedConvert::addLocal("bim", "BIM");
    StartedConvert::addLocal("scene", "CIM");
    StartedConvert::addLocal("changed", "BIM", "1", 2);
    QVERIFY(home.start());
    Fakes::ForgetCalls();
    StartedConvert::fire("convertTimer");
    QCOMPARE(Fakes::CallsOf({"getConvertKyvInfoBimProj"}), QStringList("getConvertKyvInfoBimProj(bim)"));
    QCOMPARE(home.boxes, QStringList());
}

void TestConvertList::scanPutsPositionsOnTheCards()
{
    StartedConvert home;
    StartedConvert::addBims({"bim", "other"});
    StartedConvert::setJobs("other", {StartedConvert::job("j1", "6", 7), StartedConvert::job("j2", "6", 3)});
    QVERIFY(home.start()); // a scan is a part of it
    QCOMPARE(home.card("other").tipText(), QString("共有2个文件转化中,\n你的第一个文件排在第3位."));
    QCOMPARE(home.card("bim").tipText(), QString());
    StartedConvert::setJobs("other", {});
    StartedConvert::fire("convertTimer");
    QCOMPARE(home.card("other").tipText(), QString());
}

void TestConvertList::scanFollowsAJobOfAnotherProject()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("other", {StartedConvert::job("elsewhere", "3")});
    StartedConvert::fire("convertTimer");
    Fakes::ForgetCalls();
    StartedConvert::fire("processTimer");
    QCOMPARE(Fakes::Calls(), QStringList("getKyvConvertProcess(elsewhere)"));
}

void TestConvertList::closingRefreshesOnceMoreAndForgetsTheProject()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 2)});
    Fakes::ForgetCalls();
    StartedConvert::convert().clearCurBimProj();
    QCOMPARE(Fakes::CallsOf({"getConvertKyvInfoBimProj"}), QStringList("getConvertKyvInfoBimProj(bim)"));
    QCOMPARE(home.card("bim").tipText(), QString("共有1个文件转化中,\n你的第一个文件排在第2位."));
    QVERIFY(Fakes::Calls().indexOf("getConvertFailedList(bim)") <
            Fakes::Calls().indexOf(QRegExp("GetStatusByProjId\\(.*")));
    Fakes::ForgetCalls();
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestConvertList::rowsStayWhenTheDialogCloses()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m"});
    StartedConvert::convert().clearCurBimProj();
    QCOMPARE(home.shown(), QStringList("model m 0"));
    StartedConvert::setModels("bim", {});
    StartedConvert::convert().clearCurBimProj();
    QCOMPARE(home.shown(), QStringList("model m 0"));
}

void TestConvertList::otherProjectStartsWithItsOwnRows()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m"});
    StartedConvert::setModels("other", {"o"});
    StartedConvert::convert().addKyvModel(home.uploads.missingArchive(), 0);
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("other"));
    QCOMPARE(home.shown(), QStringList("model o 0"));
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    QCOMPARE(home.shown(), QStringList({"model m 0", "missing 2"}));
}

void TestConvertList::withoutTheSwitchNothingIsAsked()
{
    StartedConvert home;
    StartedConvert::setSwitch(R"({"using": 1})");
    StartedConvert::addBims({"bim"});
    Fakes::ForgetCalls();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
    QCOMPARE(Fakes::CallsOf({"getConvertKyvInfoBimProj"}), QStringList());
    for (const char* name : {"convertTimer", "curBimProjTimer", "processTimer"})
        QVERIFY(!StartedConvert::timer(name).isActive());
}

QTEST_MAIN(TestConvertList)
#include "test_convertlist.moc"
