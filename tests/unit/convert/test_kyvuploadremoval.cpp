// SPDX-License-Identifier: MIT
// Tasks that are taken out of the queue of archives, running or not.
#include "queuesuite.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;

class TestKyvUploadRemoval : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void waitingTaskIsRemoved();
    void removalOfTheRunningTaskWaitsForItsEndAndStartsTheNext();
    void removalOfTheSendingTaskWaitsForItsEndAndStartsTheNext();
    void removalOfAnUnknownTaskTellsThatPositionsMoved();
    void endOfARemovedTaskIsToldAndChangesNothing();
    void endOfAnUnknownUploadIsToldAndChangesNothing();
    void tasksOfAProjectAreRemovedFromBothLists();
    void removalOfAProjectLeavesTheRunningTaskOfAnother();

private:
    std::unique_ptr<UploadSurroundings> around;
};

void TestKyvUploadRemoval::init()
{
    around = std::make_unique<UploadSurroundings>();
}

void TestKyvUploadRemoval::waitingTaskIsRemoved()
{
    Gate unpacking;
    StopUnpackingAt(unpacking);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("b"));
    queue.addTask(around->task("c"));
    const Told told(queue);
    queue.removeTask("b");
    QCOMPARE(told.lines, QStringList("moved 11"));
    QCOMPARE(Repackaging(queue), QStringList({"a", "c"}));
    unpacking.open(2);
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList({"kyvSave(a)", "kyvSave(c)"}));
}

void TestKyvUploadRemoval::removalOfTheRunningTaskWaitsForItsEndAndStartsTheNext()
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
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("b"));
    const Told told(queue);
    unpacking.open(2);
    queue.removeTask("a");
    QVERIFY(hasEnded);
    QCOMPARE(told.lines, QStringList({"unpacking b", "moved 11"}));
    QCOMPARE(Repackaging(queue), QStringList("b"));
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList("kyvSave(b)"));
    QVERIFY(told.events().contains("unpacked a"));
    QCOMPARE(Fakes::CallsOf({"unZip"}), QStringList({"unZip(a.kyv)", "unZip(b.kyv)"}));
}

void TestKyvUploadRemoval::removalOfTheSendingTaskWaitsForItsEndAndStartsTheNext()
{
    std::atomic<bool> hasEnded = false;
    Gate sending;
    Fakes::ChangeConversions([&](Fakes::KyvConversions& server) {
        server.upload = [&](const QString&, const QString&) {
            sending.pass();
            QThread::msleep(200);
            hasEnded = true;
            return true;
        };
    });
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QTRY_COMPARE(Uploading(queue), QStringList("a"));
    QVERIFY(sending.waitForWorker());
    queue.addTask(around->task("b"));
    QTRY_COMPARE(Uploading(queue), QStringList({"a", "b"}));
    const Told told(queue);
    sending.open(2);
    queue.removeTask("a");
    QVERIFY(hasEnded);
    QCOMPARE(told.lines, QStringList({"sending b", "moved 11"}));
    QTRY_COMPARE(told.events(), QStringList({"sending b", "sent a as job of a", "sent b as job of b"}));
    QCOMPARE(Uploading(queue), QStringList());
}

void TestKyvUploadRemoval::removalOfAnUnknownTaskTellsThatPositionsMoved()
{
    CKyvUploadMgr queue;
    const Told told(queue);
    queue.removeTask("unknown");
    QCOMPARE(told.lines, QStringList("moved 11"));
}

void TestKyvUploadRemoval::endOfARemovedTaskIsToldAndChangesNothing()
{
    Gate unpacking;
    StopUnpackingAt(unpacking);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QVERIFY(unpacking.waitForWorker());
    const Told told(queue);
    queue.OnRepackageFinished("removed", false);
    QCOMPARE(told.lines, QStringList("not unpacked removed"));
    QCOMPARE(Repackaging(queue), QStringList("a"));
    QCOMPARE(Uploading(queue), QStringList());
    unpacking.open();
}

void TestKyvUploadRemoval::endOfAnUnknownUploadIsToldAndChangesNothing()
{
    Gate sending;
    StopSendingAt(sending);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a"));
    QTRY_COMPARE(Uploading(queue), QStringList("a"));
    QVERIFY(sending.waitForWorker());
    const Told told(queue);
    queue.OnUploadFinished("removed", "7", true);
    QCOMPARE(told.lines, QStringList("sent removed as 7"));
    QCOMPARE(Uploading(queue), QStringList("a"));
    sending.open();
}

void TestKyvUploadRemoval::tasksOfAProjectAreRemovedFromBothLists()
{
    Gate sending;
    StopSendingAt(sending);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a", "one"));
    QTRY_COMPARE(Uploading(queue), QStringList("a"));
    QVERIFY(sending.waitForWorker());
    queue.addTask(around->task("b", "two"));
    QTRY_COMPARE(Uploading(queue), QStringList({"a", "b"}));
    Gate unpacking;
    StopUnpackingAt(unpacking);
    queue.addTask(around->task("c", "one"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("d", "two"));
    queue.addTask(around->task("e", "one"));
    const Told told(queue);
    sending.open(4);
    unpacking.open(4);
    queue.removeBimProjTasks("one");
    QCOMPARE(Repackaging(queue), QStringList("d"));
    QCOMPARE(Uploading(queue), QStringList("b"));
    QCOMPARE(told.lines, QStringList({"unpacking d", "sending b", "moved 11"}));
    QTRY_COMPARE(Repackaging(queue) + Uploading(queue), QStringList());
    QCOMPARE(Fakes::CallsOf({"kyvSave"}), QStringList({"kyvSave(a)", "kyvSave(b)", "kyvSave(d)"}));
}

void TestKyvUploadRemoval::removalOfAProjectLeavesTheRunningTaskOfAnother()
{
    Gate unpacking;
    StopUnpackingAt(unpacking);
    CKyvUploadMgr queue;
    queue.addTask(around->task("a", "one"));
    QVERIFY(unpacking.waitForWorker());
    queue.addTask(around->task("b", "two"));
    const Told told(queue);
    queue.removeBimProjTasks("two"); // would wait for ever if it waited for the task of the other project
    QCOMPARE(told.lines, QStringList("moved 11"));
    QCOMPARE(Repackaging(queue), QStringList("a"));
    unpacking.open();
    QTRY_COMPARE(Fakes::CallsOf({"kyvSave"}), QStringList("kyvSave(a)"));
}

QTEST_GUILESS_MAIN(TestKyvUploadRemoval)
#include "test_kyvuploadremoval.moc"
