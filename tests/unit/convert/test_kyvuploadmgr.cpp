// SPDX-License-Identifier: MIT
#include "queuesuite.h"

#include <memory>
#include <mutex>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

class TestKyvUploadMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void taskGoesThroughBothStages();
    void taskStaysFirstWhileItRuns();
    void secondTaskIsRepackagedWhileTheFirstIsSent();
    void tasksGoThroughInTheOrderOfTheQueue();
    void manyTasksAtOnceAllArrive();
    void stagesRunOnThreadsOfTheirOwn();
    void failedRepackagingFailsForGoodInTheSecondStage();
    void missingArchiveStopsTheStageWithoutAWord();
    void nextTaskSendsTheTaskOfAMissingArchiveAgain();
    void removalOfTheTaskOfAMissingArchiveFreesTheStage();
    void taskThatIsSentTwiceRunsTwiceAndMovesOnce();
    void everyChangeOfPositionsIsTold();
    void folderOfTheWorkFoldersIsMadeAtTheStart();
    void destructionWaitsForTheRunningTaskAndEmptiesTheFolder();

private:
    std::unique_ptr<UploadSurroundings> around;
};

void TestKyvUploadMgr::init()
{
    around = std::make_unique<UploadSurroundings>();
}

void TestKyvUploadMgr::taskGoesThroughBothStages()
{
    CKyvUploadMgr queue;
    const Told told(queue);
    auto task = around->task("a");
    task.updateGuid = "old";
    queue.addTask(task);
    QTRY_COMPARE(told.events(),
                 QStringList({"unpacking a", "unpacked a", "sending a", "sent a as job of a"}));
    QCOMPARE(Repackaging(queue) + Uploading(queue), QStringList());
    QCOMPARE(Fakes::SavedJobs().first().value("oldModelId"), QJsonValue("old"));
    QCOMPARE(Fakes::SavedJobs().first().value("path"), QJsonValue("bim/a/a.kyv"));
}

void TestKyvUploadMgr::taskStaysFirstWhileItRuns()
{
    Gate unpacking;
    Gate sending;
    StopUnpackingAt(unpacking);
    StopSendingAt(sending);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("b"));
    QCOMPARE(Repackaging(queue), QStringList({"a", "b"}));
    unpacking.open(2);
    QVERIFY(sending.waitForWorker());
    QTRY_COMPARE(Uploading(queue), QStringList({"a", "b"}));
    sending.open(2);
    QTRY_COMPARE(Uploading(queue), QStringList());
}

void TestKyvUploadMgr::secondTaskIsRepackagedWhileTheFirstIsSent()
{
    Gate sending;
    StopSendingAt(sending);
    CKyvUploadMgr queue;
    const Told told(queue);
    queue.addTask(around->task("a"));
    QVERIFY(sending.waitForWorker());
    queue.addTask(around->task("b"));
    QTRY_COMPARE(told.events(),
                 QStringList({"unpacking a", "unpacked a", "sending a", "unpacking b", "unpacked b"}));
    QCOMPARE(Uploading(queue), QStringList({"a", "b"}));
    sending.open(2);
    QTRY_COMPARE(told.events().mid(5),
                 QStringList({"sent a as job of a", "sending b", "sent b as job of b"}));
}

void TestKyvUploadMgr::tasksGoThroughInTheOrderOfTheQueue()
{
    Gate unpacking;
    StopUnpackingAt(unpacking);
    CKyvUploadMgr queue;
    queue.addTask(around->task("c"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("a"));
    queue.addTask(around->task("b"));
    unpacking.open(3);
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList({"kyvSave(c)", "kyvSave(a)", "kyvSave(b)"}));
    QCOMPARE(Fakes::CallsOf({"unZip"}), QStringList({"unZip(c.kyv)", "unZip(a.kyv)", "unZip(b.kyv)"}));
}

void TestKyvUploadMgr::manyTasksAtOnceAllArrive()
{
    QSet<QString> expected;
    CKyvUploadMgr queue;
    for (int number = 0; number < 40; ++number) {
        const auto name = QString::number(number);
        expected.insert(name);
        queue.addTask(around->task(name));
    }
    QTRY_COMPARE_WITH_TIMEOUT(Repackaging(queue) + Uploading(queue), QStringList(), 60000);
    QSet<QString> arrived;
    for (const auto& job : Fakes::SavedJobs())
        arrived.insert(job.value("name").toString());
    // The first one may run twice, and then disturb its own upload; no other.
    expected.remove("0");
    arrived.remove("0");
    QCOMPARE(arrived, expected);
}

void TestKyvUploadMgr::stagesRunOnThreadsOfTheirOwn()
{
    std::mutex mutex;
    QSet<QThread*> threads{QThread::currentThread()};
    const auto here = [&] {
        const std::lock_guard lock(mutex);
        threads.insert(QThread::currentThread());
    };
    Fakes::SetZipScript({[&](const QString& archive, const QString& folder) {
                             here();
                             return Fakes::UnpackSample(archive, folder);
                         },
                         [&](const QString& folder, const QString& archive) {
                             here();
                             return Fakes::PackNames(folder, archive);
                         }});
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        server.upload = [&](const QString&, const QString&) {
            here();
            return true;
        };
    });
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}).size(), 1);
    const std::lock_guard lock(mutex);
    QCOMPARE(threads.size(), 3);
}

void TestKyvUploadMgr::failedRepackagingFailsForGoodInTheSecondStage()
{
    Fakes::SetZipScript({[](const QString&, const QString&) { return false; }, {}});
    CKyvUploadMgr queue;
    const Told told(queue);
    queue.addTask(around->task("a"));
    QTRY_COMPARE(told.events(), QStringList({"unpacking a", "not unpacked a", "sending a", "not sent a"}));
    QCOMPARE(Fakes::CallsOf({"uploadKyv"}), QStringList());
    QCOMPARE(Repackaging(queue) + Uploading(queue), QStringList());
}

void TestKyvUploadMgr::missingArchiveStopsTheStageWithoutAWord()
{
    CKyvUploadMgr queue;
    const Told told(queue);
    queue.addTask({"bim", "a", {}, around->missingArchive(), 1});
    QTest::qWait(300); // nothing is what has to come
    QCOMPARE(told.events(), QStringList("unpacking a"));
    QCOMPARE(Repackaging(queue), QStringList("a"));
}

void TestKyvUploadMgr::nextTaskSendsTheTaskOfAMissingArchiveAgain()
{
    CKyvUploadMgr queue;
    const Told told(queue);
    const auto path = around->missingArchive();
    queue.addTask({"bim", "a", {}, path, 1});
    QTest::qWait(300); // the worker looks for the archive in this time
    QCOMPARE(around->archive(QFileInfo(path).fileName()), path);
    queue.addTask(around->task("b"));
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList({"kyvSave(missing)", "kyvSave(b)"}));
    QCOMPARE(told.events().mid(0, 2), QStringList({"unpacking a", "unpacking a"}));
}

void TestKyvUploadMgr::removalOfTheTaskOfAMissingArchiveFreesTheStage()
{
    CKyvUploadMgr queue;
    queue.addTask({"bim", "a", {}, around->missingArchive(), 1});
    queue.addTask(around->task("b"));
    QTest::qWait(300);
    QCOMPARE(Repackaging(queue), QStringList({"a", "b"}));
    queue.removeTask("a");
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList("kyvSave(b)"));
}

/// The worker is held between two tasks, so that it cannot notice that it has been sent one.
void TestKyvUploadMgr::taskThatIsSentTwiceRunsTwiceAndMovesOnce()
{
    std::unique_ptr<QObject> onThread;
    Fakes::SetZipScript({[&](const QString& archive, const QString& folder) {
                             if (!onThread)
                                 onThread = std::make_unique<QObject>();
                             return Fakes::UnpackSample(archive, folder);
                         },
                         {}});
    CKyvUploadMgr queue;
    queue.addTask(around->task("first"));
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList("kyvSave(first)"));
    Gate sending; // the first run's upload would remove the folder under the second run
    StopSendingAt(sending);
    Gate hold;
    QMetaObject::invokeMethod(
        onThread.get(), [&] { hold.pass(); }, Qt::QueuedConnection);
    QVERIFY(hold.waitForWorker());

    const Told told(queue);
    queue.addTask(around->task("a"));
    queue.addTask(around->task("b"));
    QCOMPARE(told.events(), QStringList({"unpacking a", "unpacking a"}));
    hold.open();
    QTRY_COMPARE(told.events().filter("unpacked"), QStringList({"unpacked a", "unpacked a", "unpacked b"}));
    QCOMPARE(Uploading(queue), QStringList({"a", "b"}));
    sending.open(3);
    QTRY_COMPARE(Repackaging(queue) + Uploading(queue), QStringList());
    QCOMPARE(Fakes::CallsOf({"unZip"}),
             QStringList({"unZip(first.kyv)", "unZip(a.kyv)", "unZip(a.kyv)", "unZip(b.kyv)"}));
    QVERIFY(told.events().contains("sent b as job of b"));
}

void TestKyvUploadMgr::everyChangeOfPositionsIsTold()
{
    CKyvUploadMgr queue;
    const Told told(queue);
    queue.addTask(around->task("a"));
    QTRY_COMPARE(told.lines, QStringList({"moved 10", "unpacking a", "unpacked a", "moved 11", "sending a",
                                          "sent a as job of a", "moved 01"}));
}

void TestKyvUploadMgr::folderOfTheWorkFoldersIsMadeAtTheStart()
{
    QVERIFY(!QFileInfo::exists(KyvUploadFolder()));
    const CKyvUploadMgr queue;
    QVERIFY(QFileInfo(KyvUploadFolder()).isDir());
}

void TestKyvUploadMgr::destructionWaitsForTheRunningTaskAndEmptiesTheFolder()
{
    std::atomic<bool> hasEnded = false;
    Gate unpacking;
    Fakes::SetZipScript({[&](const QString& archive, const QString& folder) {
                             unpacking.pass();
                             QThread::msleep(200);
                             hasEnded = true;
                             return Fakes::UnpackSample(archive, folder);
                         },
                         {}});
    {
        CKyvUploadMgr queue;
        queue.addTask(around->task("a"));
        QVERIFY(unpacking.waitForWorker());
        WriteWorkFile("other", "left.txt", "left");
        unpacking.open();
    }
    QVERIFY(hasEnded);
    QVERIFY(QFileInfo(KyvUploadFolder()).isDir());
    QVERIFY(QDir(KyvUploadFolder()).isEmpty());
}

QTEST_GUILESS_MAIN(TestKyvUploadMgr)
#include "test_kyvuploadmgr.moc"
