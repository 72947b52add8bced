// SPDX-License-Identifier: MIT
#include "convert/kyvuploadworker.h"

#include "uploadsuite.h"

#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

namespace
{

QList<QVariantList> EndOf(CKyvUploadWorker& worker, int convertType = 1, const QString& updateGuid = {})
{
    QSignalSpy ends(&worker, &CKyvUploadWorker::sigUploadFinished);
    worker.OnStartUpload("bim", "alias", updateGuid, convertType);
    return ends;
}

const QList<QVariantList> failure{{"alias", "", false}};

} // namespace

class TestKyvUploadWorker : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void archiveIsSentAndItsJobRegistered();
    void modeOfTheTaskIsTheModeOfTheJob_data();
    void modeOfTheTaskIsTheModeOfTheJob();
    void jobOfAnUpdateNamesTheOldModel();
    void nameLosesFourCharactersWhateverTheyAre();
    void withoutAWorkFolderItFails();
    void withoutAnArchiveItFails();
    void withTwoArchivesItFails();
    void archiveThatIsNotSentIsAFailure();
    void refusedJobIsAFailure();
    void idOfARefusedJobIsTold();
    void workFolderGoesWhateverTheOutcome_data();
    void workFolderGoesWhateverTheOutcome();
    void workerIsFreeWhenItTellsTheEnd();

private:
    std::unique_ptr<UploadSurroundings> around;
};

void TestKyvUploadWorker::init()
{
    around = std::make_unique<UploadSurroundings>();
}

void TestKyvUploadWorker::archiveIsSentAndItsJobRegistered()
{
    QString sentTo;
    QString sentFrom;
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        server.upload = [&](const QString& filePath, const QString& remotePath) {
            sentFrom = filePath;
            sentTo = remotePath;
            return true;
        };
    });
    WriteWorkFile("alias", "别墅.kyv", "bytes");
    WriteWorkFile("alias", "ballast.txt", "ballast");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker, 0), (QList<QVariantList>{{"alias", "job of 别墅", true}}));
    QCOMPARE(Fakes::Calls(), QStringList({"uploadKyv(bim,别墅.kyv)", "kyvSave(别墅)"}));
    QCOMPARE(sentTo, QString("bim/alias/别墅.kyv"));
    QCOMPARE(sentFrom, KyvWorkFolder("alias") + "/别墅.kyv");
    QCOMPARE(Fakes::SavedJobs(), (QList<QJsonObject>{{{"projectId", "bim"},
                                                      {"path", "bim/alias/别墅.kyv"},
                                                      {"name", "别墅"},
                                                      {"md5", "md5 of bytes"},
                                                      {"oldModelId", ""},
                                                      {"status", 6},
                                                      {"origin", "1"},
                                                      {"type", "1"},
                                                      {"option", "3"}}}));
}

void TestKyvUploadWorker::modeOfTheTaskIsTheModeOfTheJob_data()
{
    QTest::addColumn<int>("convertType");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QJsonValue>("option");
    const QJsonValue none(QJsonValue::Undefined);
    QTest::newRow("levels, performance first") << 0 << "1" << QJsonValue("3");
    QTest::newRow("levels, quality first") << 1 << "1" << QJsonValue("1");
    QTest::newRow("static") << 2 << "2" << none;
    QTest::newRow("beyond") << 3 << "2" << none;
    QTest::newRow("below") << -1 << "2" << none;
}

void TestKyvUploadWorker::modeOfTheTaskIsTheModeOfTheJob()
{
    QFETCH(int, convertType);
    WriteWorkFile("alias", "house.kyv", "bytes");
    CKyvUploadWorker worker;
    EndOf(worker, convertType);
    QCOMPARE(Fakes::SavedJobs().size(), 1);
    const auto job = Fakes::SavedJobs().first();
    QTEST(job.value("type").toString(), "type");
    QTEST(job.value("option"), "option");
}

void TestKyvUploadWorker::jobOfAnUpdateNamesTheOldModel()
{
    WriteWorkFile("alias", "house.kyv", "bytes");
    CKyvUploadWorker worker;
    EndOf(worker, 1, "old-model");
    QCOMPARE(Fakes::SavedJobs().first().value("oldModelId"), QJsonValue("old-model"));
}

void TestKyvUploadWorker::nameLosesFourCharactersWhateverTheyAre()
{
    WriteWorkFile("alias", "house.v2.KYV", "bytes");
    CKyvUploadWorker worker;
    EndOf(worker);
    QCOMPARE(Fakes::SavedJobs().first().value("name"), QJsonValue("house.v2"));
}

void TestKyvUploadWorker::withoutAWorkFolderItFails()
{
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), failure);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestKyvUploadWorker::withoutAnArchiveItFails()
{
    WriteWorkFile("alias", "house.zrg", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), failure);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestKyvUploadWorker::withTwoArchivesItFails()
{
    WriteWorkFile("alias", "house.kyv", "bytes");
    WriteWorkFile("alias", "inner.kyv", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), failure);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestKyvUploadWorker::archiveThatIsNotSentIsAFailure()
{
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) {
        server.upload = [](const QString&, const QString&) { return false; };
    });
    WriteWorkFile("alias", "house.kyv", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), failure);
    QCOMPARE(Fakes::Calls(), QStringList("uploadKyv(bim,house.kyv)"));
}

void TestKyvUploadWorker::refusedJobIsAFailure()
{
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) { server.acceptsJobs = false; });
    WriteWorkFile("alias", "house.kyv", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), failure);
    QCOMPARE(Fakes::Calls(), QStringList({"uploadKyv(bim,house.kyv)", "kyvSave(house)"}));
}

void TestKyvUploadWorker::idOfARefusedJobIsTold()
{
    Fakes::ChangeConversions([](Fakes::KyvConversions& server) {
        server.acceptsJobs = false;
        server.givesIdOfRefusedJob = true;
    });
    WriteWorkFile("alias", "house.kyv", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker), (QList<QVariantList>{{"alias", "job of house", false}}));
}

void TestKyvUploadWorker::workFolderGoesWhateverTheOutcome_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("isSent");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("done") << QStringList("a.kyv") << true << true;
    QTest::newRow("no archive") << QStringList("a.zrg") << true << true;
    QTest::newRow("two archives") << QStringList({"a.kyv", "b.kyv"}) << true << true;
    QTest::newRow("not sent") << QStringList("a.kyv") << false << true;
    QTest::newRow("refused") << QStringList("a.kyv") << true << false;
}

void TestKyvUploadWorker::workFolderGoesWhateverTheOutcome()
{
    QFETCH(QStringList, files);
    QFETCH(bool, isSent);
    QFETCH(bool, isAccepted);
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        server.upload = [=](const QString&, const QString&) { return isSent; };
        server.acceptsJobs = isAccepted;
    });
    for (const auto& file : files)
        WriteWorkFile("alias", file, "bytes");
    WriteWorkFile("other", "other.kyv", "bytes");
    CKyvUploadWorker worker;
    QCOMPARE(EndOf(worker).size(), 1);
    QVERIFY(!QFileInfo::exists(KyvWorkFolder("alias")));
    QVERIFY(QFileInfo::exists(KyvWorkFolder("other") + "/other.kyv"));
}

void TestKyvUploadWorker::workerIsFreeWhenItTellsTheEnd()
{
    CKyvUploadWorker worker;
    QList<bool> running;
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        server.upload = [&](const QString&, const QString&) {
            running.append(worker.isRunning());
            return true;
        };
    });
    connect(&worker, &CKyvUploadWorker::sigUploadFinished, this, [&] { running.append(worker.isRunning()); });
    WriteWorkFile("alias", "house.kyv", "bytes");
    EndOf(worker);
    QCOMPARE(running, (QList<bool>{true, false}));
}

QTEST_GUILESS_MAIN(TestKyvUploadWorker)
#include "test_kyvuploadworker.moc"
