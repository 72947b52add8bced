// SPDX-License-Identifier: MIT
#include "bizcommon/floorfile.h"
#include "floorsuite.h"

#include <sys/stat.h>

#include <memory>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using BIZCOMMON::FLOORINFO::FloorFile;
using Fakes::TextsOf;
using Suite = FloorSurroundings;

class TestFloorFile : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void fileHoldsWhatTheDocumentationTells();
    void missingFileIsEmptyWithoutAWord();
    void badFileReadsAsNothingWithALineInTheLog_data();
    void badFileReadsAsNothingWithALineInTheLog();
    void readingABadFileLeavesIt();
    void badFileIsKeptAsideWhenFloorsAreStored();
    void hugeFileReadsAsNothing();
    void pipeInPlaceOfTheFileDoesNotStopTheProgram();
    void everyCutOfTheFileReadsAsNothingOrAsBefore();
    void unknownKeysAreLeftAlone();
    void nothingIsWrittenWithoutTheProjectsFolder();
    void keyThatClimbsOutOfTheFolderIsRefused();
    void failureToWriteLeavesTheEarlierFile();
    void noTemporaryFileStays();

private:
    [[nodiscard]] FloorFile file() const { return {Suite::bim, m_suite->dataDir()}; }
    [[nodiscard]] QString path() const { return m_suite->file(Suite::bim); }

    std::unique_ptr<Suite> m_suite;
    std::unique_ptr<Fakes::LogBook> m_log;
};

void TestFloorFile::init()
{
    m_suite.reset();
    m_suite = std::make_unique<Suite>();
    m_log.reset();
    m_log = std::make_unique<Fakes::LogBook>();
}

void TestFloorFile::fileHoldsWhatTheDocumentationTells()
{
    file().write({{"一层", {{"a", {"1F", "夹层"}}}}, {"二层", {}}});
    const auto written = QJsonDocument::fromJson(Suite::read(path()));
    const auto expected = QJsonDocument::fromJson(QByteArray(R"({
        "version": 1,
        "bim_proj": "11111111-2c3d-4e5f-8a9b-0c1d2e3f4001",
        "floor_list": [
            {"floor_name": "一层", "mapping": {"a": ["1F", "夹层"]}},
            {"floor_name": "二层", "mapping": {}}
        ]})"));
    QVERIFY(!expected.isNull());
    QCOMPARE(written, expected);
}

void TestFloorFile::missingFileIsEmptyWithoutAWord()
{
    QVERIFY(file().read().isEmpty());
    QCOMPARE(m_log->take(), QStringList());
}

void TestFloorFile::badFileReadsAsNothingWithALineInTheLog_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("floors");
    QTest::newRow("cut short") << QByteArray(R"({"version": 1, "floor_list": [{"floor_na)");
    QTest::newRow("list at the top") << QByteArray("[]");
    QTest::newRow("no version") << QByteArray(R"({"floor_list": []})");
    QTest::newRow("of a later program") << QByteArray(R"({"version": 2, "floor_list": []})");
    QTest::newRow("no list") << QByteArray(R"({"version": 1})");
    QTest::newRow("list is a text") << QByteArray(R"({"version": 1, "floor_list": "1F"})");
    QTest::newRow("floor is a text") << QByteArray(R"({"version": 1, "floor_list": ["1F"]})");
    QTest::newRow("floor without a name") << QByteArray(R"({"version": 1, "floor_list": [{"mapping": {}}]})");
    QTest::newRow("floor without a mapping")
        << QByteArray(R"({"version": 1, "floor_list": [{"floor_name": "1F"}]})");
    QTest::newRow("mapping to a text")
        << QByteArray(R"({"version": 1, "floor_list": [{"floor_name": "1F", "mapping": {"a": "x"}}]})");
    QTest::newRow("mapping to numbers")
        << QByteArray(R"({"version": 1, "floor_list": [{"floor_name": "1F", "mapping": {"a": [1]}}]})");
    QTest::newRow("deeper than anything is") << QByteArray(100'000, '[');
    QTest::newRow("bytes of another file") << QByteArray("glTF\0\2\0\0\xff\xfe", 10);
}

void TestFloorFile::badFileReadsAsNothingWithALineInTheLog()
{
    QFETCH(QByteArray, bytes);
    m_suite->write(path(), bytes);
    QVERIFY(file().read().isEmpty());
    const auto lines = m_log->take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith("warning: the floors in"), qPrintable(lines.first()));
    QVERIFY2(lines.first().contains(path()), qPrintable(lines.first()));
}

void TestFloorFile::readingABadFileLeavesIt()
{
    m_suite->write(path(), "floors");
    QVERIFY(file().read().isEmpty());
    QCOMPARE(Suite::read(path()), QByteArray("floors"));
    QVERIFY(!QFile::exists(path() + ".damaged"));
}

void TestFloorFile::badFileIsKeptAsideWhenFloorsAreStored()
{
    m_suite->write(path(), "floors");
    file().write({{"1F", {}}});
    QCOMPARE(TextsOf(file().read()), QStringList("1F"));
    QCOMPARE(Suite::read(path() + ".damaged"), QByteArray("floors"));
    QCOMPARE(m_log->linesWith("is kept as").size(), 1);
}

void TestFloorFile::hugeFileReadsAsNothing()
{
    file().write({{"1F", {}}});
    QVERIFY(QFile::resize(path(), 10LL * 1024 * 1024 * 1024));
    QVERIFY(file().read().isEmpty());
    QCOMPARE(m_log->linesWith("it is larger than 67108864 bytes").size(), 1);
}

void TestFloorFile::pipeInPlaceOfTheFileDoesNotStopTheProgram()
{
    QCOMPARE(mkfifo(path().toUtf8().constData(), 0600), 0);
    QVERIFY(file().read().isEmpty());
    QCOMPARE(m_log->linesWith("it is no file").size(), 1);
}

void TestFloorFile::everyCutOfTheFileReadsAsNothingOrAsBefore()
{
    file().write({{"一层", {{"a", {"1F", "夹层"}}}}, {"二层", {}}});
    const auto whole = Suite::read(path());
    QVERIFY(whole.size() > 100);
    for (int size = 0; size < whole.size(); ++size) {
        m_suite->write(path(), whole.left(size));
        const auto floors = file().read();
        // Without the line's end alone nothing is missing.
        QVERIFY2(floors.isEmpty() == (size < whole.size() - 1), qPrintable(QString::number(size)));
    }
}

void TestFloorFile::unknownKeysAreLeftAlone()
{
    m_suite->write(path(), R"({"version": 1, "comp_list": 5, "floor_list":
        [{"id": 7, "floor_name": "1F", "isMatched": true, "mapping": {"a": ["x"], "b": []}}]})");
    QCOMPARE(TextsOf(file().read()), QStringList("1F a:x"));
    QCOMPARE(m_log->take(), QStringList());
}

void TestFloorFile::nothingIsWrittenWithoutTheProjectsFolder()
{
    FloorFile(Suite::second, m_suite->dataDir()).write({{"1F", {}}});
    QVERIFY(!QFile::exists(m_suite->file(Suite::second, {})));
    QCOMPARE(m_log->linesWith("cannot be written").size(), 1);
}

void TestFloorFile::keyThatClimbsOutOfTheFolderIsRefused()
{
    const FloorFile climbing("x/../../stolen", m_suite->dataDir() + "/data");
    QDir().mkpath(m_suite->dataDir() + "/data/proj_x");
    QDir().mkpath(m_suite->dataDir() + "/stolen");
    climbing.write({{"1F", {}}});
    QVERIFY(climbing.read().isEmpty());
    QVERIFY(QDir(m_suite->dataDir() + "/stolen").isEmpty());
    QCOMPARE(m_log->linesWith("no floors can be stored").size(), 1);
}

void TestFloorFile::failureToWriteLeavesTheEarlierFile()
{
    file().write({{"1F", {}}});
    // Nobody can write a file where a folder is, root neither.
    QVERIFY(QDir().mkdir(path() + ".tmp"));
    file().write({{"2F", {}}});
    QCOMPARE(TextsOf(file().read()), QStringList("1F"));
    QCOMPARE(m_log->linesWith("cannot be written").size(), 1);
}

void TestFloorFile::noTemporaryFileStays()
{
    file().write({{"1F", {}}});
    QVERIFY(QFile::exists(path()));
    QVERIFY(!QFile::exists(path() + ".tmp"));
}

QTEST_GUILESS_MAIN(TestFloorFile)
#include "test_floorfile.moc"
