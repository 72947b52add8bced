// SPDX-License-Identifier: MIT
#include "conversionclient.h"

#include "kyvconvert/archive.h"
#include "models.h"
#include "smartdb/data/projectfile.h"

#include <csignal>
#include <memory>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
constexpr int patience = 120000;

// Converters that do what a test wants; $1 is the archive, $2 the folder. "$here" is a folder of the test's.
const QByteArray isSlow = "echo '{\"percent\": 40}'\nexec sleep 600\n";
const QByteArray killsItsWorker = "kill -9 $PPID\nexec sleep 600\n";
const QByteArray diesOnce =
    "if [ ! -e $here/again ]; then touch $here/again; kill -9 $$; fi\nexec $converter \"$@\"\n";
const QByteArray killsItsWorkerOnce =
    "if [ ! -e $here/again ]; then touch $here/again; kill -9 $PPID; exit 1; fi\nexec $converter \"$@\"\n";
const QByteArray refuses = "echo '{\"error\": \"no model for you\", \"code\": 3}'\nexit 3\n";

} // namespace

/// Archives on their way through the real server, its workers and the converter.
class TestWorker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void archiveBecomesAModelOfTheProject();
    void newModelTakesThePlaceOfTheOldOne();
    void jobsAreDoneInTheirOrder();
    void damagedArchiveFailsWithReasonAndDate();
    void refusalOfTheConverterIsTheReason();
    void runningJobTellsHowFarItIs();
    void projectOfARunningJobIsBeingConverted();
    void deletedJobEndsItsConversion();
    void conversionThatIsKilledIsBegunAgain();
    void jobOfAKilledWorkerIsBegunAgain();
    void jobThatLosesItsWorkerAgainAndAgainFails();
    void limitsReachTheConverter();
    void workersEndWithAKilledServer();
    void jobOfAStoppedServerIsDoneByTheNext();
    void nothingIsLeftOfAJob();

private:
    void start(const QByteArray& converter = {}, const QStringList& options = {});
    [[nodiscard]] QByteArray archive(const char* name) const;
    /// What the converter of a test has written down, as a process.
    [[nodiscard]] pid_t process(const char* file) const;
    [[nodiscard]] static bool isRunning(pid_t process) { return ::kill(process, 0) == 0; }

    QTemporaryDir m_project;
    std::unique_ptr<QTemporaryDir> m_here;
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<ConversionClient> m_client;
};

void TestWorker::initTestCase()
{
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(ZRSmartDB::ProjectFolder(m_project.path().toStdString(), guid), head);
}

void TestWorker::init()
{
    m_here = std::make_unique<QTemporaryDir>();
}

void TestWorker::cleanup()
{
    m_client.reset();
    m_server.reset();
}

void TestWorker::start(const QByteArray& converter, const QStringList& options)
{
    QStringList all{"--workers", "1", "--job-lease-seconds", "6"};
    if (!converter.isEmpty()) {
        QFile script(m_here->filePath("converter"));
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/bash\nhere=" + m_here->path().toUtf8() +
                     "\nconverter=" TORVO_CONVERTER
                     "\necho \"$@\" >$here/arguments\necho $PPID >$here/worker\n"
                     "echo $$ >$here/pid.new\nmv $here/pid.new $here/pid\n" +
                     converter);
        script.close();
        QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        all += {"--converter", script.fileName()};
    }
    m_server = std::make_unique<RealServer>(TORVO_SERVER, all + options);
    m_server->publish(guid, "BIM", ZRSmartDB::ProjectFolder(m_project.path().toStdString(), guid));
    m_client = std::make_unique<ConversionClient>(*m_server, guid);
}

QByteArray TestWorker::archive(const char* name) const
{
    kyvconvert::SourceModel source;
    source.model = House();
    source.floors = {{"一层", 0.0}, {"二层", 3.25}};
    const auto file = m_here->filePath("a.kyv");
    if (!kyvconvert::WriteArchive(source, name, file.toStdString()).empty())
        qFatal("the test cannot make an archive");
    QFile packed(file);
    return packed.open(QIODevice::ReadOnly) ? packed.readAll() : QByteArray();
}

pid_t TestWorker::process(const char* file) const
{
    const auto name = m_here->filePath(file);
    if (!QTest::qWaitFor([&] { return QFile::exists(m_here->filePath("pid")) && QFile::exists(name); },
                         patience))
        return -1;
    QFile written(name);
    return written.open(QIODevice::ReadOnly) ? static_cast<pid_t>(written.readAll().trimmed().toInt()) : -1;
}

void TestWorker::archiveBecomesAModelOfTheProject()
{
    start();
    const auto before = m_client->head();
    const auto job = m_client->order(archive("房子"), "住宅楼");
    QVERIFY(!job.empty());
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    const auto model = m_client->models().first().toObject();
    QCOMPARE(model.value("name").toString(), QStringLiteral("住宅楼"));
    QVERIFY(m_client->jobs().isEmpty());
    QVERIFY(m_client->failures().isEmpty());
    QCOMPARE(m_client->percent(job), 0.0);
    QCOMPARE(m_client->status(), QStringLiteral("1"));

    const auto files = "/projects/" + model.value("id").toString().toStdString() + "/files/";
    QCOMPARE(m_client->get(files + "model.json").value("triangles").toInt(), 3);
    QCOMPARE(m_client->get(files + "model.json").value("name").toString(), QStringLiteral("住宅楼"));
    QVERIFY(m_client->send("GET", files + "model.glb").body.starts_with("glTF"));
    QVERIFY(m_client->send("GET", files + "floors.json").body.find("二层") != std::string::npos);

    QVERIFY(m_client->head() != before);
    const auto folder = ZRSmartDB::ProjectFolder(m_here->path().toStdString(), guid);
    QVERIFY(QDir().mkpath(QString::fromStdString(folder.string())));
    QFile database(QString::fromStdString(ZRSmartDB::DatabaseIn(folder).string()));
    QVERIFY(database.open(QIODevice::WriteOnly));
    database.write(
        QByteArray::fromStdString(m_client->send("GET", "/projects/" + guid + "/files/project.db").body));
    database.close();
    const auto models = ZRSmartDB::ProjectFile(folder).readModels();
    QCOMPARE(models.size(), std::size_t(1));
    QCOMPARE(QString::fromStdString(models.front().guid), model.value("id").toString());
    QCOMPARE(models.front().type, std::string("MODEL"));
}

void TestWorker::newModelTakesThePlaceOfTheOldOne()
{
    start();
    (void)m_client->order(archive("a"), "first");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    (void)m_client->order(archive("b"), "second");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 2, patience);
    const auto old = m_client->models().first().toObject().value("id").toString().toStdString();
    (void)m_client->order(archive("c"), "third", old);
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().last().toObject().value("name").toString(),
                              QStringLiteral("third"), patience);
    QCOMPARE(m_client->models().size(), 2);
    QCOMPARE(m_client->models().first().toObject().value("name").toString(), QStringLiteral("second"));
    QCOMPARE(m_client->send("GET", "/projects/" + old).status, 404U);
}

void TestWorker::jobsAreDoneInTheirOrder()
{
    start();
    for (const char* name : {"1", "2", "3"})
        (void)m_client->order(archive(name), name);
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 3, patience);
    QStringList names;
    for (const auto& model : m_client->models())
        names += model.toObject().value("name").toString();
    QCOMPARE(names, QStringList({"1", "2", "3"}));
}

void TestWorker::damagedArchiveFailsWithReasonAndDate()
{
    start();
    const auto before = m_client->head();
    const auto job = m_client->order("PK and nothing else", "broken");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, patience);
    const auto failure = m_client->failures().first().toObject();
    QCOMPARE(failure.value("id").toString().toStdString(), job);
    QCOMPARE(failure.value("name").toString(), QStringLiteral("broken"));
    QVERIFY(failure.value("reason").toString().contains("cannot be read"));
    const auto date = QDateTime::fromString(failure.value("updateDate").toString(), "yyyy-MM-dd hh:mm:ss");
    QVERIFY(qAbs(date.secsTo(QDateTime::currentDateTime())) < 120);
    QCOMPARE(m_client->jobs().size(), 1);
    QCOMPARE(m_client->jobs().first().toObject().value("status").toString(), QStringLiteral("4"));
    QCOMPARE(m_client->head(), before);
    QCOMPARE(m_client->status(), QStringLiteral("1"));
    QCOMPARE(m_client->send("DELETE", "/conversions/" + job).status, 204U);
    QVERIFY(m_client->jobs().isEmpty());
    QCOMPARE(m_client->failures().size(), 1);
}

void TestWorker::refusalOfTheConverterIsTheReason()
{
    start(refuses);
    (void)m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, patience);
    QCOMPARE(m_client->failures().first().toObject().value("reason").toString(),
             QStringLiteral("no model for you"));
}

void TestWorker::runningJobTellsHowFarItIs()
{
    start(isSlow);
    const auto job = m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->percent(job), 39.0, patience);
    const auto running = m_client->jobs().first().toObject();
    QCOMPARE(running.value("status").toString(), QStringLiteral("3"));
    QCOMPARE(running.value("sort").toInt(), 0);
    const auto waiting = m_client->order(archive("b"), "b");
    QCOMPARE(m_client->percent(waiting), 0.0);
    QCOMPARE(m_client->jobs().last().toObject().value("status").toString(), QStringLiteral("6"));
    QCOMPARE(m_client->jobs().last().toObject().value("sort").toInt(), 1);
}

void TestWorker::projectOfARunningJobIsBeingConverted()
{
    start(isSlow);
    QCOMPARE(m_client->status(), QStringLiteral("1"));
    const auto job = m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->status(), QStringLiteral("3"), patience);
    QCOMPARE(m_client->send("DELETE", "/conversions/" + job).status, 204U);
    QCOMPARE(m_client->status(), QStringLiteral("1"));
}

void TestWorker::deletedJobEndsItsConversion()
{
    start(isSlow);
    const auto job = m_client->order(archive("a"), "a");
    const auto converter = process("pid");
    QVERIFY(converter > 0 && isRunning(converter));
    QCOMPARE(m_client->send("DELETE", "/conversions/" + job).status, 204U);
    QVERIFY(m_client->jobs().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(converter), patience);
    QVERIFY(m_client->failures().isEmpty());
    QCOMPARE(m_client->send("DELETE", "/conversions/" + job).status, 404U);
}

void TestWorker::conversionThatIsKilledIsBegunAgain()
{
    start(diesOnce);
    (void)m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QVERIFY(QFile::exists(m_here->filePath("again")));
    QVERIFY(m_client->failures().isEmpty());
}

void TestWorker::jobOfAKilledWorkerIsBegunAgain()
{
    start(killsItsWorkerOnce);
    (void)m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    QVERIFY(QFile::exists(m_here->filePath("again")));
    QVERIFY(m_client->failures().isEmpty());
}

void TestWorker::jobThatLosesItsWorkerAgainAndAgainFails()
{
    start("echo x >>$here/times\n" + killsItsWorker);
    (void)m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, 2 * patience);
    QVERIFY(m_client->failures().first().toObject().value("reason").toString().contains("again and again"));
    QFile times(m_here->filePath("times"));
    QVERIFY(times.open(QIODevice::ReadOnly));
    QCOMPARE(times.readAll(), QByteArray("x\nx\nx\n"));
    QCOMPARE(m_client->status(), QStringLiteral("1"));
}

void TestWorker::limitsReachTheConverter()
{
    start(refuses, {"--job-seconds", "7", "--job-memory", "99"});
    (void)m_client->order(archive("a"), "--help");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->failures().size(), 1, patience);
    QFile written(m_here->filePath("arguments"));
    QVERIFY(written.open(QIODevice::ReadOnly));
    const auto arguments = written.readAll();
    for (const char* argument : {" --time=7 ", " --memory=99 ", " --mode=3 ", " --name=--help "})
        QVERIFY2(arguments.contains(argument), arguments.constData());
}

void TestWorker::workersEndWithAKilledServer()
{
    start(isSlow);
    (void)m_client->order(archive("a"), "a");
    const auto converter = process("pid");
    const auto worker = process("worker");
    QVERIFY(converter > 0 && worker > 0 && isRunning(converter) && isRunning(worker));
    m_server->kill();
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(converter), patience);
    QTRY_VERIFY_WITH_TIMEOUT(!isRunning(worker), patience);
}

void TestWorker::jobOfAStoppedServerIsDoneByTheNext()
{
    start("if [ ! -e $here/again ]; then exec sleep 600; fi\nexec $converter \"$@\"\n");
    (void)m_client->order(archive("a"), "a");
    QVERIFY(process("pid") > 0);
    m_server->kill();
    QFile again(m_here->filePath("again"));
    QVERIFY(again.open(QIODevice::WriteOnly));
    m_server->start();
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
}

void TestWorker::nothingIsLeftOfAJob()
{
    start();
    (void)m_client->order(archive("a"), "a");
    QTRY_COMPARE_WITH_TIMEOUT(m_client->models().size(), 1, patience);
    const QDir data(m_server->folder());
    const auto files = [&](const char* name) {
        return QDir(data.filePath(name)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    };
    QTRY_COMPARE(files("archives"), QStringList());
    QTRY_COMPARE(files("work"), QStringList());
}

QTEST_GUILESS_MAIN(TestWorker)
#include "test_worker.moc"
