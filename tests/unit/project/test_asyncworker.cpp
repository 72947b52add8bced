// SPDX-License-Identifier: MIT
#include "project/asyncworker.h"

#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/demodownloadworker.h"
#include "project/projectmgr.h"

#include <memory>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestAsyncWorker : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void downloadSucceedsWithAnEmptyReason();
    void failureCarriesTheLibrarysReason();
    void jobRunsItsOperation_data();
    void jobRunsItsOperation();
    void endOfAnUploadArrivesOnTheThreadOfTheReceiver();
    void unknownJobReportsAFailure_data();
    void unknownJobReportsAFailure();
    void resultArrivesOnTheThreadOfTheReceiver();
    void operationRunsOnAThreadOfItsOwn();
    void workerFreesItself();
    void withoutAManagerThereIsNoSignal();
    void workerForClonesHasItsSignal();

private:
    /// Runs a job to its end and gives the arguments of its one signal.
    static QList<QVariant> run(int jobType, const QString& guid);

    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
};

void TestAsyncWorker::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
}

void TestAsyncWorker::cleanup()
{
    m_around.reset();
    m_log.reset();
}

QList<QVariant> TestAsyncWorker::run(int jobType, const QString& guid)
{
    auto* worker = new CAsyncWorker(jobType, guid);
    QSignalSpy finished(worker, &CAsyncWorker::singSyncFinish);
    QSignalSpy destroyed(worker, &QObject::destroyed);
    worker->start(QThread::InheritPriority);
    if (!QTest::qWaitFor([&] { return finished.count() == 1 && destroyed.count() == 1; }))
        return {};
    return finished.first();
}

void TestAsyncWorker::downloadSucceedsWithAnEmptyReason()
{
    SmartDB::instance().lastError = "an older reason";
    SmartDB::instance().addOnServer("a", "A", "CIM");
    QCOMPARE(run(CAsyncWorker::Download, "a"), QList<QVariant>({"a", true, ""}));
}

void TestAsyncWorker::failureCarriesTheLibrarysReason()
{
    SmartDB::instance().lastError = R"({"code": 40014})";
    QCOMPARE(run(CAsyncWorker::Download, "unknown"),
             QList<QVariant>({"unknown", false, R"({"code": 40014})"}));
}

void TestAsyncWorker::jobRunsItsOperation_data()
{
    QTest::addColumn<int>("jobType");
    QTest::addColumn<QString>("call");
    QTest::newRow("0 downloads") << 0 << "DownLoadProj(a)";
    QTest::newRow("1 uploads") << 1 << "UploadProj(a,plain)";
    QTest::newRow("2 uploads by force") << 2 << "UploadProj(a,force)";
    QTest::newRow("3 updates") << 3 << "UpdateProj(a)";
    QTest::newRow("4 upgrades") << 4 << "Upgrade(a)";
}

void TestAsyncWorker::jobRunsItsOperation()
{
    QFETCH(int, jobType);
    QFETCH(QString, call);
    auto& stored = SmartDB::instance().add("a", "A", "CIM");
    stored.needsUpgrade = true;
    stored.state = 1;
    QCOMPARE(run(jobType, "a"), QList<QVariant>({"a", true, ""}));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj", "UploadProj", "UpdateProj", "Upgrade"}), QStringList(call));
}

void TestAsyncWorker::endOfAnUploadArrivesOnTheThreadOfTheReceiver()
{
    SmartDB::instance().add("a", "A", "CIM");
    auto* projects = CHomeApp::instance().GetMgr<CProjectMgr>();
    QThread* emittedOn = nullptr;
    QThread* arrivedOn = nullptr;
    const QObject receiver;
    connect(
        projects, &CProjectMgr::afterUpload, &receiver, [&] { emittedOn = QThread::currentThread(); },
        Qt::DirectConnection);
    connect(projects, &CProjectMgr::afterUpload, &receiver, [&] { arrivedOn = QThread::currentThread(); });
    QCOMPARE(run(CAsyncWorker::Upload, "a"), QList<QVariant>({"a", true, ""}));
    QTRY_COMPARE(arrivedOn, thread());
    QVERIFY(emittedOn != nullptr && emittedOn != thread());
}

void TestAsyncWorker::unknownJobReportsAFailure_data()
{
    QTest::addColumn<int>("jobType");
    QTest::newRow("5") << 5;
    QTest::newRow("-1") << -1;
}

void TestAsyncWorker::unknownJobReportsAFailure()
{
    QFETCH(int, jobType);
    SmartDB::instance().lastError = "whatever";
    Fakes::ForgetCalls();
    QCOMPARE(run(jobType, "a"), QList<QVariant>({"a", false, "whatever"}));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestAsyncWorker::resultArrivesOnTheThreadOfTheReceiver()
{
    auto* worker = new CAsyncWorker(9, "a");
    QThread* arrivedOn = nullptr;
    connect(worker, &CAsyncWorker::singSyncFinish, this, [&] { arrivedOn = QThread::currentThread(); });
    worker->start(QThread::InheritPriority);
    QTRY_COMPARE(arrivedOn, thread());
}

void TestAsyncWorker::operationRunsOnAThreadOfItsOwn()
{
    auto* worker = new CAsyncWorker(9, "a");
    QThread* emittedOn = nullptr;
    connect(
        worker, &CAsyncWorker::singSyncFinish, this, [&] { emittedOn = QThread::currentThread(); },
        Qt::DirectConnection);
    QSignalSpy destroyed(worker, &QObject::destroyed);
    worker->start(QThread::InheritPriority);
    QTRY_COMPARE(destroyed.count(), 1);
    QCOMPARE(emittedOn, worker);
}

void TestAsyncWorker::workerFreesItself()
{
    const QPointer<CAsyncWorker> worker = new CAsyncWorker(9, "a");
    worker->start(QThread::InheritPriority);
    QTRY_VERIFY(worker.isNull());
}

void TestAsyncWorker::withoutAManagerThereIsNoSignal()
{
    CHomeApp::instance().UnInit();
    auto* worker = new CAsyncWorker(CAsyncWorker::Download, "a");
    QSignalSpy finished(worker, &CAsyncWorker::singSyncFinish);
    QSignalSpy destroyed(worker, &QObject::destroyed);
    worker->start(QThread::InheritPriority);
    QTRY_COMPARE(destroyed.count(), 1);
    QCOMPARE(finished.count(), 0);
}

void TestAsyncWorker::workerForClonesHasItsSignal()
{
    CDemoDownLoadWorker worker;
    QSignalSpy finished(&worker, &CDemoDownLoadWorker::singSyncFinish);
    emit worker.singSyncFinish("demo", "clone", true, {});
    QCOMPARE(finished.count(), 1);
}

QTEST_GUILESS_MAIN(TestAsyncWorker)
#include "test_asyncworker.moc"
