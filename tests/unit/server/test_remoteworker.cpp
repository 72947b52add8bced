// SPDX-License-Identifier: MIT
#include "conversionclient.h"
#include "cuttingproxy.h"

#include "kyvconvert/archive.h"
#include "models.h"
#include "smartdb/data/projectfile.h"

#include <csignal>
#include <memory>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
constexpr int patience = 120000;

// Converters that do what a test wants. "$here" is a folder of the test's; "begun" tells the test that the
// converter is where it wants it.
const QByteArray converts = "exec $converter \"$@\"\n";
const QByteArray waitsUntilItMay =
    "begun\nwhile [ ! -e $here/may ]; do sleep 0.1; done\nexec $converter \"$@\"\n";
const QByteArray isSlowOnce =
    "if [ ! -e $here/again ]; then touch $here/again; begun; exec sleep 600; fi\nexec $converter \"$@\"\n";
const QByteArray refuses = "echo '{\"error\": \"no model for you\", \"code\": 3}'\nexit 3\n";

} // namespace

/// A worker in a process of its own that shares nothing with the server but its address and a key.
class TestRemoteWorker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void archiveBecomesAModelOfTheProject();
    void archiveOfSeveralPortionsArrivesWhole();
    void damagedArchiveFailsWithTheReasonOfTheConverter();
    void refusalOfTheConverterIsTheReason();
    void runningJobTellsHowFarItIs();
    void workerWithAWrongKeyEnds();
    void workerWithoutAKeyEnds();
    void secondWorkerOnAFolderEnds();
    void jobOfAKilledWorkerIsDoneByAnother();
    void workerThatIsToEndGivesItsJobBack();
    void deletedJobEndsItsConversion();
    void jobOutlivesABriefInterruption();
    void jobOutlivesANewStartOfTheServer();
    void workerThatIsCutOffLosesItsJobAndTakesItAgain();
    void lostAnswersCostNothing_data();
    void lostAnswersCostNothing();
    void workerWaitsForAServerThatIsNotThereYet();
    void nothingIsLeftOfAJob();

private:
    void serve(const QStringList& options = {});
    [[nodiscard]] std::unique_ptr<BoundProcess> startWorker(const QByteArray& converter = converts,
                                                            const std::string& address = {},
                                                            const QString& folder = "worker");
    [[nodiscard]] QByteArray archive(std::size_t triangles = 3) const;
    void allow() const;
    /// The converter that a worker runs for the test.
    [[nodiscard]] pid_t converter() const;
    [[nodiscard]] QString status() const
    {
        return m_client->jobs().first().toObject().value("status").toString();
    }

    QTemporaryDir m_project;
    std::unique_ptr<QTemporaryDir> m_here;
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<ConversionClient> m_client;
};

void TestRemoteWorker::initTestCase()
{
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(ZRSmartDB::ProjectFolder(m_project.path().toStdString(), guid), head);
}

void TestRemoteWorker::init()
{
    m_here = std::make_unique<QTemporaryDir>();
}

void TestRemoteWorker::cleanup()
{
    m_client.reset();
    m_server.reset();
}

void TestRemoteWorker::serve(const QStringList& options)
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER, QStringList{"--workers", "0"} + options);
    m_server->publish(guid, "BIM", ZRSmartDB::ProjectFolder(m_project.path().toStdString(), guid));
    m_client = std::make_unique<ConversionClient>(*m_server, guid);
    QProcess key;
    key.start(TORVO_SERVER, {"worker-key", "--data", m_server->folder()});
    QVERIFY(key.waitForFinished() && key.exitCode() == 0);
    QFile file(m_here->filePath("key"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(key.readAllStandardOutput()) > 60);
}

std::unique_ptr<BoundProcess> TestRemoteWorker::startWorker(const QByteArray& converter,
                                                            const std::string& address, const QString& folder)
{
    QFile script(m_here->filePath("converter"));
    // Not while another worker runs it.
    if (!script.exists()) {
        if (!script.open(QIODevice::WriteOnly))
            qFatal("the test cannot write its converter");
        script.write("#!/bin/bash\nhere=" + m_here->path().toUtf8() +
                     "\nconverter=" TORVO_CONVERTER "\necho '{\"percent\": 40}'\n"
                     "begun() { echo $$ >$here/pid.new; mv $here/pid.new $here/pid; }\n" +
                     converter);
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    auto worker = std::make_unique<BoundProcess>();
    worker->start(TORVO_SERVER, {"worker", "--server",
                                 QString::fromStdString(address.empty() ? m_server->address() : address),
                                 "--key-file", m_here->filePath("key"), "--data", m_here->filePath(folder),
                                 "--converter", script.fileName()});
    return worker;
}

QByteArray TestRemoteWorker::archive(std::size_t triangles) const
{
    kyvconvert::SourceModel source;
    source.model = House();
    for (std::size_t i = 3; i < triangles; ++i)
        AddTriangle(source.model, 1, {float(i % 97), float(i % 89), float(i % 83)}, 0.5F + float(i % 71));
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    const auto file = m_here->filePath("a.kyv");
    if (!kyvconvert::WriteArchive(source, "a", file.toStdString()).empty())
        qFatal("the test cannot make an archive");
    QFile packed(file);
    return packed.open(QIODevice::ReadOnly) ? packed.readAll() : QByteArray();
}

void TestRemoteWorker::allow() const
{
    QFile may(m_here->filePath("may"));
    QVERIFY(may.open(QIODevice::WriteOnly));
}

pid_t TestRemoteWorker::converter() const
{
    QFile written(m_here->filePath("pid"));
    if (!QTest::qWaitFor([&] { return written.exists(); }, patience) || !written.open(QIODevice::ReadOnly))
        return -1;
    return static_cast<pid_t>(written.readAll().trimmed().toInt());
}

void TestRemoteWorker::archiveBecomesAModelOfTheProject()
{
    serve();
    const auto worker = startWorker();
    const auto before = m_client->head();
    (void)m_client->order(archive(), "住宅楼");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    const auto model = m_client->models().first().toObject();
    QCOMPARE(model.value("name").toString(), QStringLiteral("住宅楼"));
    QVERIFY(m_client->jobs().isEmpty() && m_client->failures().isEmpty());
    QVERIFY(m_client->head() != before);
    const auto files = "/projects/" + model.value("id").toString().toStdString() + "/files/";
    QCOMPARE(m_client->get(files + "model.json").value("triangles").toInt(), 3);
    QVERIFY(m_client->send("GET", files + "model.glb").body.starts_with("glTF"));
}

void TestRemoteWorker::archiveOfSeveralPortionsArrivesWhole()
{
    serve();
    const auto worker = startWorker();
    constexpr std::size_t many = 60000;
    const auto large = archive(many);
    QVERIFY(large.size() > 2 << 20);
    (void)m_client->order(large, "large");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    const auto files =
        "/projects/" + m_client->models().first().toObject().value("id").toString().toStdString() + "/files/";
    QVERIFY(m_client->get(files + "model.json").value("triangles").toInt() > 20000);
    QVERIFY(m_client->send("GET", files + "model.glb").body.size() > std::size_t{2} << 20U);
}

void TestRemoteWorker::damagedArchiveFailsWithTheReasonOfTheConverter()
{
    serve();
    const auto worker = startWorker();
    (void)m_client->order("PK and nothing else", "broken");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, patience);
    QVERIFY(m_client->failures().first().toObject().value("reason").toString().contains("cannot be read"));
}

void TestRemoteWorker::refusalOfTheConverterIsTheReason()
{
    serve();
    const auto worker = startWorker(refuses);
    (void)m_client->order(archive(), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, patience);
    QCOMPARE(m_client->failures().first().toObject().value("reason").toString(),
             QStringLiteral("no model for you"));
}

void TestRemoteWorker::runningJobTellsHowFarItIs()
{
    serve();
    const auto worker = startWorker(waitsUntilItMay);
    const auto job = m_client->order(archive(), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->percent(job), 39.0, patience);
    QCOMPARE(status(), QStringLiteral("3"));
    QCOMPARE(m_client->status(), QStringLiteral("3"));
    allow();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::workerWithAWrongKeyEnds()
{
    serve();
    QFile key(m_here->filePath("key"));
    QVERIFY(key.open(QIODevice::WriteOnly) && key.write("wrong") == 5 && key.flush());
    const auto worker = startWorker();
    QVERIFY(worker->waitForFinished(patience));
    QCOMPARE(worker->exitCode(), 1);
    QVERIFY(worker->readAllStandardError().contains("key"));
}

void TestRemoteWorker::workerWithoutAKeyEnds()
{
    serve();
    QVERIFY(QFile::remove(m_here->filePath("key")));
    const auto worker = startWorker();
    QVERIFY(worker->waitForFinished(patience));
    QCOMPARE(worker->exitCode(), 1);
    QVERIFY(worker->readAllStandardError().contains("no key"));
}

void TestRemoteWorker::secondWorkerOnAFolderEnds()
{
    serve();
    const auto first = startWorker(waitsUntilItMay);
    (void)m_client->order(archive(), "a");
    QVERIFY(converter() > 0);
    const auto second = startWorker(waitsUntilItMay);
    QVERIFY(second->waitForFinished(patience));
    QCOMPARE(second->exitCode(), 1);
    QVERIFY(second->readAllStandardError().contains("another worker"));
    allow();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::jobOfAKilledWorkerIsDoneByAnother()
{
    serve({"--job-lease-seconds", "6"});
    const auto first = startWorker(isSlowOnce);
    (void)m_client->order(archive(), "a");
    const auto running = converter();
    QVERIFY(running > 0);
    first->kill();
    QVERIFY(first->waitForFinished(patience));
    // The converter does not outlive its worker.
    QTRY_VERIFY_WITH_TIMEOUT(::kill(running, 0) != 0, patience);
    const auto second = startWorker(isSlowOnce);
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QVERIFY(m_client->failures().isEmpty());
}

void TestRemoteWorker::workerThatIsToEndGivesItsJobBack()
{
    constexpr int longerThanThisTest = 3600;
    serve({"--job-lease-seconds", QString::number(longerThanThisTest)});
    const auto first = startWorker(isSlowOnce);
    (void)m_client->order(archive(), "a");
    QVERIFY(converter() > 0);
    first->terminate();
    QVERIFY(first->waitForFinished(patience));
    QCOMPARE(first->exitCode(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(status(), QStringLiteral("6"), patience);
    const auto second = startWorker(isSlowOnce, {}, "other");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::deletedJobEndsItsConversion()
{
    serve();
    const auto worker = startWorker(isSlowOnce);
    const auto job = m_client->order(archive(), "a");
    const auto running = converter();
    QVERIFY(running > 0);
    QCOMPARE(m_client->send("DELETE", "/conversions/" + job).status, 204U);
    QTRY_VERIFY_WITH_TIMEOUT(::kill(running, 0) != 0, patience);
    (void)m_client->order(archive(), "b");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QCOMPARE(m_client->models().first().toObject().value("name").toString(), QStringLiteral("b"));
}

void TestRemoteWorker::jobOutlivesABriefInterruption()
{
    serve({"--job-lease-seconds", "60"});
    CuttingProxy proxy(QUrl(QString::fromStdString(m_server->address())).port());
    const auto worker = startWorker(waitsUntilItMay, proxy.address());
    (void)m_client->order(archive(), "a");
    const auto running = converter();
    QVERIFY(running > 0);
    proxy.cutAfter(1, true);
    QTest::qWait(3000);
    proxy.passAll();
    QVERIFY(::kill(running, 0) == 0);
    allow();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::jobOutlivesANewStartOfTheServer()
{
    serve({"--job-lease-seconds", "60"});
    const auto worker = startWorker(waitsUntilItMay);
    (void)m_client->order(archive(), "a");
    const auto running = converter();
    QVERIFY(running > 0);
    m_server->kill();
    allow();
    QTRY_VERIFY_WITH_TIMEOUT(::kill(running, 0) != 0, patience);
    m_server->start();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::workerThatIsCutOffLosesItsJobAndTakesItAgain()
{
    serve({"--job-lease-seconds", "6"});
    CuttingProxy proxy(QUrl(QString::fromStdString(m_server->address())).port());
    const auto worker = startWorker(isSlowOnce, proxy.address());
    (void)m_client->order(archive(), "a");
    const auto running = converter();
    QVERIFY(running > 0);
    proxy.cutAfter(1, true);
    QTRY_COMPARE_WITH_TIMEOUT(status(), QStringLiteral("6"), patience);
    QTRY_VERIFY_WITH_TIMEOUT(::kill(running, 0) != 0, patience);
    proxy.passAll();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QVERIFY(m_client->failures().isEmpty());
}

void TestRemoteWorker::lostAnswersCostNothing_data()
{
    QTest::addColumn<QString>("request");
    QTest::newRow("archive") << "/archive/0";
    QTest::newRow("bytes of a file") << "/model/0/model.glb";
    QTest::newRow("the end of the job") << "/publish";
}

void TestRemoteWorker::lostAnswersCostNothing()
{
    QFETCH(QString, request);
    serve({"--job-lease-seconds", "60"});
    CuttingProxy proxy(QUrl(QString::fromStdString(m_server->address())).port());
    proxy.loseAnswersTo(request.toStdString(), 1, false);
    const auto worker = startWorker(converts, proxy.address());
    (void)m_client->order(archive(), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QVERIFY(proxy.waitForLoss(std::chrono::milliseconds(0)));
    (void)m_client->order(archive(), "b");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 2, patience);
    QVERIFY(m_client->failures().isEmpty());
}

void TestRemoteWorker::workerWaitsForAServerThatIsNotThereYet()
{
    serve();
    m_server->kill();
    const auto worker = startWorker();
    QVERIFY(!worker->waitForFinished(3000));
    m_server->start();
    (void)m_client->order(archive(), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestRemoteWorker::nothingIsLeftOfAJob()
{
    serve();
    const auto worker = startWorker();
    (void)m_client->order(archive(), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    const auto files = [](const QString& folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    };
    QTRY_COMPARE(files(m_server->folder() + "/archives"), QStringList());
    QTRY_COMPARE(files(m_server->folder() + "/models"), QStringList());
    QTRY_COMPARE(files(m_here->filePath("worker/work")), QStringList());
}

QTEST_GUILESS_MAIN(TestRemoteWorker)
#include "test_remoteworker.moc"
