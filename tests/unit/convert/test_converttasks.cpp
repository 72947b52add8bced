// SPDX-License-Identifier: MIT
// Tasks on this machine: new ones, what the queue tells of them, and their end.
#include "convertsuite.h"

using namespace TorvoEditor;

class TestConvertTasks : public QObject
{
    Q_OBJECT

private slots:
    void newModelIsQueuedAndShown();
    void nameIsThatOfTheFileWithoutItsEnding_data();
    void nameIsThatOfTheFileWithoutItsEnding();
    void updateTakesTheOldRowAway();
    void updateSendsTheOldModelsId();
    void taskPassesAllStatesAndBecomesAJob();
    void failedRepackagingPassesItsStateAndEndsAsAFailedUpload();
    void failedUploadStaysUntilItIsDeleted();
    void positionsOfWaitingTasksAreShown();
    void taskOfAnotherProjectGoesOnUnseen();
    void endOfATaskOfAnotherProjectBringsNoRefresh();
    void deletedTaskLeavesQueueAndList();
    void deletedJobIsDeletedOnTheServer();
    void jobThatTheServerKeepsIsShownAgain();
    void deletingAllTakesTasksAndJobsOfTheProject();
    void switchedOffFeatureHearsNothingOfTheQueue();
};

namespace
{

/// The local id of the task in this row.
QString AliasOf(StartedConvert& home, int row)
{
    return home.row(row).guid();
}

void StopSendingAt(Gate& gate)
{
    Fakes::ChangeConversions([&gate](Fakes::KyvConversions& server) {
        server.upload = [&gate](const QString&, const QString&) {
            gate.pass();
            return true;
        };
    });
}

} // namespace

void TestConvertTasks::newModelIsQueuedAndShown()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m"});
    StartedConvert::fire("curBimProjTimer");
    QSignalSpy inserted(&home.rows(), &QAbstractItemModel::rowsInserted);
    StartedConvert::convert().addKyvModel(home.uploads.missingArchive(), 0);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(home.shown(), QStringList({"model m 0", "missing 2"}));
    QCOMPARE(home.row(1).pointText(), QString("kyv解包中"));
    QCOMPARE(home.row(1).sort(), 0);
    QVERIFY(!QUuid::fromString(AliasOf(home, 1)).isNull());
    QVERIFY(!AliasOf(home, 1).contains('{'));
    QVERIFY(StartedConvert::convert().hasUploadingProj());
}

void TestConvertTasks::nameIsThatOfTheFileWithoutItsEnding_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "/no/where/house.kyv"
                           << "house";
    QTest::newRow("drive") << "D:/模型/塔楼.kyv"
                           << "塔楼";
    QTest::newRow("two dots") << "/house.v2.kyv"
                              << "house.v2";
    QTest::newRow("no slash") << "house.kyv"
                              << "house";
    QTest::newRow("another ending") << "/house.model"
                                    << "house.m";
}

void TestConvertTasks::nameIsThatOfTheFileWithoutItsEnding()
{
    QFETCH(QString, path);
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::convert().addKyvModel(path, 0);
    QTEST(home.row(0).name(), "name");
}

void TestConvertTasks::updateTakesTheOldRowAway()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1", "m2"});
    StartedConvert::fire("curBimProjTimer");
    const QPointer<CKyvConvertData> old = &home.row(0);
    QSignalSpy removed(&home.rows(), &QAbstractItemModel::rowsRemoved);
    Fakes::ForgetCalls();
    StartedConvert::convert().updateKyvModel(home.uploads.missingArchive(), "m1", 0);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(home.shown(), QStringList({"model m2 0", "missing 2"}));
    QCOMPARE(Fakes::Calls(), QStringList());
    QTRY_VERIFY(old.isNull());
}

void TestConvertTasks::updateSendsTheOldModelsId()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setModels("bim", {"m1"});
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::convert().updateKyvModel(home.uploads.archive("house.kyv"), "m1", 0);
    QTRY_COMPARE(Fakes::SavedJobs().size(), 1);
    const auto job = Fakes::SavedJobs().first();
    QCOMPARE(job.value("oldModelId"), QJsonValue("m1"));
    QCOMPARE(job.value("projectId"), QJsonValue("bim"));
    QCOMPARE(job.value("name"), QJsonValue("house"));
    QCOMPARE(job.value("option"), QJsonValue("3"));
}

void TestConvertTasks::taskPassesAllStatesAndBecomesAJob()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Gate sending;
    StopSendingAt(sending);
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 1);
    QStringList states{QString::number(home.row(0).state())};
    connect(&home.row(0), &CKyvConvertData::stateChanged, this,
            [&] { states.append(QString::number(home.row(0).state())); });
    QVERIFY(sending.waitForWorker());
    QTRY_COMPARE(states, QStringList({"2", "3", "4"}));
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 5)});
    sending.open();
    QTRY_COMPARE(home.shown(), QStringList("job j 5"));
    QVERIFY(!StartedConvert::convert().hasUploadingProj());
}

void TestConvertTasks::failedRepackagingPassesItsStateAndEndsAsAFailedUpload()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::SetZipScript({[](const QString&, const QString&) { return false; }, {}});
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 1);
    QStringList states{QString::number(home.row(0).state())};
    connect(&home.row(0), &CKyvConvertData::stateChanged, this,
            [&] { states.append(QString::number(home.row(0).state())); });
    QTRY_COMPARE(home.shown(), QStringList("house 8"));
    QCOMPARE(states, QStringList({"2", "7", "4"})); // the last state comes with a new row
}

void TestConvertTasks::failedUploadStaysUntilItIsDeleted()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.acceptsJobs = false; });
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 1);
    QTRY_COMPARE(home.shown(), QStringList("house 8"));
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.shown(), QStringList("house 8"));
    QVERIFY(StartedConvert::convert().hasUploadingProj());
    StartedConvert::convert().delKyvModel(AliasOf(home, 0));
    QCOMPARE(home.shown(), QStringList());
    QVERIFY(!StartedConvert::convert().hasUploadingProj());
}

void TestConvertTasks::positionsOfWaitingTasksAreShown()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Gate unpacking;
    Fakes::SetZipScript({[&](const QString& archive, const QString& folder) {
                             unpacking.pass();
                             return Fakes::UnpackSample(archive, folder);
                         },
                         {}});
    Gate sending;
    StopSendingAt(sending);
    StartedConvert::convert().addKyvModel(home.uploads.archive("a.kyv"), 1);
    QVERIFY(unpacking.waitForWorker());
    StartedConvert::convert().addKyvModel(home.uploads.archive("b.kyv"), 1);
    StartedConvert::convert().addKyvModel(home.uploads.archive("c.kyv"), 1);
    QCOMPARE(home.shown(), QStringList({"a 2", "b 1", "c 1"}));
    QCOMPARE(home.row(0).sort(), 0);
    QCOMPARE(home.row(1).sort(), 1);
    QCOMPARE(home.row(2).sort(), 2);
    unpacking.open(2);
    QTRY_COMPARE(home.shown(), QStringList({"a 4", "b 3", "c 2"}));
    QCOMPARE(home.row(0).sort(), 0);
    QCOMPARE(home.row(1).sort(), 1);
    QCOMPARE(home.row(2).sort(), 0);
    unpacking.open(1);
    sending.open(3);
    QTRY_COMPARE(Fakes::SavedJobs().size(), 3);
}

void TestConvertTasks::taskOfAnotherProjectGoesOnUnseen()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Gate sending;
    StopSendingAt(sending);
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 1);
    const auto alias = AliasOf(home, 0);
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("other"));
    QVERIFY(sending.waitForWorker());
    QTRY_COMPARE(Fakes::CallsOf({"uploadKyv"}).size(), 1);
    QCOMPARE(home.shown(), QStringList());
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    QCOMPARE(home.shown(), QStringList("house 4"));
    QCOMPARE(AliasOf(home, 0), alias);
    sending.open();
    QTRY_COMPARE(home.shown(), QStringList());
}

void TestConvertTasks::endOfATaskOfAnotherProjectBringsNoRefresh()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    Gate sending;
    StopSendingAt(sending);
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 1);
    QVERIFY(sending.waitForWorker());
    StartedConvert::convert().clearCurBimProj();
    QVERIFY(StartedConvert::convert().checkServiceConvert("other"));
    Fakes::ForgetCalls();
    sending.open();
    QTRY_VERIFY(!StartedConvert::convert().hasUploadingProj());
    QCOMPARE(Fakes::Calls(), QStringList("kyvSave(house)"));
}

void TestConvertTasks::deletedTaskLeavesQueueAndList()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::convert().addKyvModel(home.uploads.missingArchive(), 0); // holds the stage
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 0);
    Fakes::ForgetCalls();
    StartedConvert::convert().delKyvModel(AliasOf(home, 0));
    QCOMPARE(Fakes::CallsOf({"delKyvConvert"}), QStringList());
    QVERIFY(Fakes::Calls().contains("getConvertKyvInfoBimProj(bim)"));
    QCOMPARE(home.rows().getCount(), 1);
    QTRY_COMPARE(Fakes::SavedJobs().size(), 1); // the stage is free
}

void TestConvertTasks::deletedJobIsDeletedOnTheServer()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j1", "3"), StartedConvert::job("j2", "6", 1)});
    StartedConvert::fire("curBimProjTimer");
    StartedConvert::convert().delKyvModel("j2");
    QCOMPARE(Fakes::CallsOf({"delKyvConvert"}), QStringList("delKyvConvert(j2)"));
    QCOMPARE(home.shown(), QStringList("job j1 6"));
}

void TestConvertTasks::jobThatTheServerKeepsIsShownAgain()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    StartedConvert::setJobs("bim", {StartedConvert::job("j", "6", 1)});
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.deletesJobs = false; });
    StartedConvert::convert().delKyvModel("j");
    QCOMPARE(home.shown(), QStringList("job j 5"));
    QCOMPARE(home.boxes, QStringList());
}

void TestConvertTasks::deletingAllTakesTasksAndJobsOfTheProject()
{
    StartedConvert home;
    QVERIFY(home.startOpened());
    QVERIFY(StartedConvert::convert().checkServiceConvert("other"));
    StartedConvert::convert().addKyvModel(home.uploads.missingArchive(), 0);
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    StartedConvert::setModels("bim", {"m"});
    StartedConvert::setJobs("bim", {StartedConvert::job("j1", "3"), StartedConvert::job("j2", "4")});
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 0);
    StartedConvert::fire("curBimProjTimer");
    QCOMPARE(home.rows().getCount(), 4);
    StartedConvert::convert().delAllKyvModel();
    QCOMPARE(Fakes::CallsOf({"delKyvConvert"}), QStringList({"delKyvConvert(j1)", "delKyvConvert(j2)"}));
    QCOMPARE(home.shown(), QStringList("model m 0"));
    QVERIFY(StartedConvert::convert().hasUploadingProj()); // the other project's
}

void TestConvertTasks::switchedOffFeatureHearsNothingOfTheQueue()
{
    StartedConvert home;
    StartedConvert::setSwitch("{}");
    StartedConvert::addBims({"bim"});
    QVERIFY(home.start());
    QVERIFY(StartedConvert::convert().checkServiceConvert("bim"));
    StartedConvert::convert().addKyvModel(home.uploads.archive("house.kyv"), 0);
    QTRY_COMPARE(Fakes::SavedJobs().size(), 1);
    QCOMPARE(home.shown(), QStringList("house 1"));
}

QTEST_MAIN(TestConvertTasks)
#include "test_converttasks.moc"
