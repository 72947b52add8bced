// SPDX-License-Identifier: MIT
#include "convert/serviceconvertmgr.h"

#include "fakes/logbook.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

namespace
{

QString SwitchFile()
{
    return QCoreApplication::applicationDirPath() + "/WebConvert.json";
}

CServiceConvertMgr::TKyvConvertInfo Job(int state, int sort, const QString& id = "id")
{
    CServiceConvertMgr::TKyvConvertInfo job;
    job.id = id;
    job.state = state;
    job.sort = sort;
    return job;
}

} // namespace

class TestServiceConvertMgr : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QFile::remove(SwitchFile()); }

    void switchFollowsTheFile_data();
    void switchFollowsTheFile();
    void withoutAFileItIsOff();
    void missingFileIsLogged();
    void switchReadAnewIsTold();
    void nothingIsOnItsWayAtFirst();
    void projectWithATaskHoldsOne();
    void positionsAreThoseOfTheWaitingJobs();
    void waitingJobWithoutAPlaceIsLeftOutAndLogged();
};

void TestServiceConvertMgr::switchFollowsTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isVisible");
    QTest::newRow("on") << QByteArray(R"({"using": "1"})") << true;
    QTest::newRow("off") << QByteArray(R"({"using": "0"})") << false;
    QTest::newRow("a number") << QByteArray(R"({"using": 1})") << false;
    QTest::newRow("a truth") << QByteArray(R"({"using": true})") << false;
    QTest::newRow("a longer text") << QByteArray(R"({"using": "1 "})") << false;
    QTest::newRow("a list") << QByteArray(R"({"using": ["1"]})") << false;
    QTest::newRow("nothing") << QByteArray(R"({"using": null})") << false;
    QTest::newRow("another key") << QByteArray(R"({"Using": "1"})") << false;
    QTest::newRow("a list of it") << QByteArray(R"([{"using": "1"}])") << false;
    QTest::newRow("beside others") << QByteArray(R"({"a": 2, "using": "1"})") << true;
    QTest::newRow("an empty file") << QByteArray() << false;
    QTest::newRow("without the key") << QByteArray("{}") << false;
    QTest::newRow("no JSON") << QByteArray("1") << false;
}

void TestServiceConvertMgr::switchFollowsTheFile()
{
    QFETCH(QByteArray, bytes);
    QFile file(SwitchFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    const CServiceConvertMgr convert;
    QTEST(convert.property("isVisible").toBool(), "isVisible");
}

void TestServiceConvertMgr::withoutAFileItIsOff()
{
    const CServiceConvertMgr convert;
    QVERIFY(!convert.isVisible());
}

void TestServiceConvertMgr::missingFileIsLogged()
{
    Fakes::LogBook log;
    const CServiceConvertMgr convert;
    const auto lines = log.linesWith("open file ");
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().contains(SwitchFile()) && lines.first().contains("failed:"));
}

void TestServiceConvertMgr::switchReadAnewIsTold()
{
    CServiceConvertMgr convert;
    QSignalSpy told(&convert, &CServiceConvertMgr::isVisibleChanged);
    QVERIFY(QMetaObject::invokeMethod(&convert, "LoadConfig"));
    QCOMPARE(told.count(), 0);
    QFile file(SwitchFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(R"({"using": "1"})") > 0);
    file.close();
    QVERIFY(QMetaObject::invokeMethod(&convert, "LoadConfig"));
    QCOMPARE(told.count(), 1);
    QVERIFY(convert.isVisible());
}

void TestServiceConvertMgr::nothingIsOnItsWayAtFirst()
{
    const CServiceConvertMgr convert;
    QMap<QString, QList<int>> positions;
    convert.GetConvertInfo(positions);
    QVERIFY(positions.isEmpty());
    QVERIFY(!convert.hasUploadingProj());
}

void TestServiceConvertMgr::projectWithATaskHoldsOne()
{
    QVERIFY(!HoldsTask({{"a", {}}}));
    QVERIFY(HoldsTask({{"a", {}}, {"b", {Job(0, -1)}}}));
}

void TestServiceConvertMgr::positionsAreThoseOfTheWaitingJobs()
{
    QMap<QString, QList<int>> positions;
    AddQueuePositions({{"a", {Job(5, 3), Job(6, 9), Job(5, 0)}}, {"b", {Job(6, -1)}}}, positions);
    QCOMPARE(positions, (QMap<QString, QList<int>>{{"a", {3, 0, 0}}, {"b", {0}}}));
}

void TestServiceConvertMgr::waitingJobWithoutAPlaceIsLeftOutAndLogged()
{
    Fakes::LogBook log;
    QMap<QString, QList<int>> positions;
    AddQueuePositions({{"a", {Job(5, -1, "7")}}}, positions);
    QVERIFY(positions.isEmpty());
    QCOMPARE(log.take(),
             QStringList("debug: CServiceConvertMgr::GetConvertInfo kyv convert failed guid: \"7\""));
}

QTEST_GUILESS_MAIN(TestServiceConvertMgr)
#include "test_serviceconvertmgr.moc"
