// SPDX-License-Identifier: MIT
#include "ball.h"
#include "building.h"
#include "gltf/modelwriter.h"

#include <csignal>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace
{

/// A reader of IFC files that does what a test wants of it.
const QByteArray hangs = "for (;;) {}\n";
const QByteArray dies = "process.kill(process.pid, 'SIGSEGV');\n";
const QByteArray isSlow = "setTimeout(() => {}, 600000);\n";
const QByteArray devours = "const all = [];\nfor (;;) all.push(Buffer.alloc(16 << 20, 1));\n";

} // namespace

/// Conversions that do not end by themselves.
class TestJob : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readerThatDiesIsAFailedConversion();
    void conversionThatTakesTooLongIsEnded();
    void conversionThatTakesTooMuchMemoryIsEnded();
    void cancelledConversionLeavesNothing();
    void conversionThatDiesIsTold();
    void readerEndsWithAKilledConversion();
    void limitsThatAreKeptChangeNothing();

private:
    void start(const QStringList& arguments);
    void useReader(const QByteArray& script);
    /// Waits for the reader to run; gives its process.
    [[nodiscard]] qint64 readerProcess();
    [[nodiscard]] QStringList left() const;
    [[nodiscard]] QJsonObject lastLine();

    std::unique_ptr<QTemporaryDir> m_folder;
    QProcess m_converter;
};

void TestJob::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QFile file(m_folder->filePath("a.ifc"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(building) == building.size());
}

void TestJob::cleanup()
{
    if (m_converter.state() != QProcess::NotRunning) {
        m_converter.kill();
        m_converter.waitForFinished();
    }
}

void TestJob::useReader(const QByteArray& script)
{
    QVERIFY(QDir(m_folder->path()).mkdir("readers"));
    QFile file(m_folder->filePath("readers/ifcreader.mjs"));
    // Its number stands in a file, so that the test can look after it.
    const QByteArray sayWho = "import fs from 'node:fs';\nfs.writeFileSync('" +
                              m_folder->filePath("readers/pid.new").toUtf8() + "', String(process.pid));\n" +
                              "fs.renameSync('" + m_folder->filePath("readers/pid.new").toUtf8() + "', '" +
                              m_folder->filePath("readers/pid").toUtf8() + "');\n";
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(sayWho + script) > 0);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TORVO_READERS", m_folder->filePath("readers"));
    m_converter.setProcessEnvironment(environment);
}

void TestJob::start(const QStringList& arguments)
{
    m_converter.start(QStringLiteral(TORVO_CONVERTER),
                      QStringList(arguments) << m_folder->filePath("a.ifc") << m_folder->filePath("model"));
    QVERIFY(m_converter.waitForStarted());
}

qint64 TestJob::readerProcess()
{
    QFile file(m_folder->filePath("readers/pid"));
    if (!QTest::qWaitFor([&] { return file.exists(); }, 30000) || !file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().toLongLong();
}

QStringList TestJob::left() const
{
    auto all = QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    all.removeAll("a.ifc");
    all.removeAll("readers");
    return all;
}

QJsonObject TestJob::lastLine()
{
    return QJsonDocument::fromJson(m_converter.readAllStandardOutput().trimmed().split('\n').last()).object();
}

void TestJob::readerThatDiesIsAFailedConversion()
{
    useReader(dies);
    start({});
    QVERIFY(m_converter.waitForFinished(60000));
    QCOMPARE(m_converter.exitCode(), 3);
    QVERIFY(lastLine().value("error").toString().contains("ended before its time"));
    QCOMPARE(left(), QStringList());
}

void TestJob::conversionThatTakesTooLongIsEnded()
{
    useReader(hangs);
    start({"--time", "2"});
    const auto reader = readerProcess();
    QVERIFY(reader > 0);
    QVERIFY(m_converter.waitForFinished(60000));
    QCOMPARE(m_converter.exitCode(), 7);
    QVERIFY(lastLine().value("error").toString().contains("longer"));
    QCOMPARE(left(), QStringList());
    QTRY_VERIFY(::kill(static_cast<pid_t>(reader), 0) != 0);
}

void TestJob::conversionThatTakesTooMuchMemoryIsEnded()
{
    useReader(devours);
    start({"--memory", "400"});
    QVERIFY(m_converter.waitForFinished(60000));
    QCOMPARE(m_converter.exitCode(), 6);
    QVERIFY(lastLine().value("error").toString().contains("memory"));
    QCOMPARE(left(), QStringList());
}

void TestJob::cancelledConversionLeavesNothing()
{
    useReader(isSlow);
    start({});
    const auto reader = readerProcess();
    QVERIFY(reader > 0);
    m_converter.terminate();
    QVERIFY(m_converter.waitForFinished(60000));
    QCOMPARE(m_converter.exitCode(), 8);
    QCOMPARE(left(), QStringList());
    QTRY_VERIFY(::kill(static_cast<pid_t>(reader), 0) != 0);
}

void TestJob::conversionThatDiesIsTold()
{
    // The reader's parent is the conversion itself. A sanitizer would catch SIGSEGV and end it in order.
    useReader("process.kill(process.ppid, 'SIGABRT');\nsetTimeout(() => {}, 600000);\n");
    start({});
    QVERIFY(m_converter.waitForFinished(60000));
    QCOMPARE(m_converter.exitCode(), 5);
    QVERIFY(lastLine().value("error").toString().contains("crashed"));
    QCOMPARE(left(), QStringList());
}

void TestJob::readerEndsWithAKilledConversion()
{
    useReader(isSlow);
    start({});
    const auto reader = readerProcess();
    QVERIFY(reader > 0);
    m_converter.kill();
    QVERIFY(m_converter.waitForFinished(60000));
    QTRY_VERIFY(::kill(static_cast<pid_t>(reader), 0) != 0);
}

void TestJob::limitsThatAreKeptChangeNothing()
{
    m_converter.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    start({"--memory", "4000", "--time", "100"});
    QVERIFY(m_converter.waitForFinished(100000));
    QCOMPARE(m_converter.exitCode(), 0);
    QCOMPARE(left(), QStringList{"model"});
}

QTEST_GUILESS_MAIN(TestJob)
#include "test_job.moc"
