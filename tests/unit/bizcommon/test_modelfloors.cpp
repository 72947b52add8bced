// SPDX-License-Identifier: MIT
#include "bizcommon/modelfloors.h"
#include "floorsuite.h"

#include <memory>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace BIZCOMMON::FLOORINFO;
using Suite = FloorSurroundings;

namespace
{

QByteArray Floors(const QList<QPair<QString, double>>& floors)
{
    QJsonArray array;
    for (const auto& [name, elevation] : floors)
        array.append(QJsonObject{{"name", name}, {"elevation", elevation}});
    return QJsonDocument(array).toJson();
}

} // namespace

/// What comes in the folders of models has been made by anybody.
class TestModelFloors : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void missingFileIsNoFloorsWithoutAWord();
    void badFileIsNoFloorsWithALineInTheLog_data();
    void badFileIsNoFloorsWithALineInTheLog();
    void entryThatIsNoFloorIsLeftOut_data();
    void entryThatIsNoFloorIsLeftOut();
    void leftOutFloorsAreTold();
    void floorWithoutAnElevationStandsAtZero();
    void floorsOfOneHeightKeepTheirOrder();
    void lowerOfTwoFloorsOfOneNameStays();
    void longNameIsCut();
    void namesThatAreEqualOnceCutAreOneFloor();
    void blanksAndLineBreaksInNamesAreOneBlank();
    void tenThousandFloorsAreRead();
    void moreThanTenThousandFloorsAreCutOff();
    void hugeFileIsNoFloors();
    void keyThatClimbsOutOfTheFolderIsRefused();
    void unionOfManyFloorsIsQuick();

private:
    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const auto& floor : ReadModelFloors(m_suite->dataDir(), Suite::first))
            names.append(floor.name);
        return names;
    }

    std::unique_ptr<Suite> m_suite;
    std::unique_ptr<Fakes::LogBook> m_log;
};

void TestModelFloors::init()
{
    m_suite.reset();
    m_suite = std::make_unique<Suite>();
    m_log.reset();
    m_log = std::make_unique<Fakes::LogBook>();
}

void TestModelFloors::missingFileIsNoFloorsWithoutAWord()
{
    QCOMPARE(names(), QStringList());
    QCOMPARE(m_log->take(), QStringList());
}

void TestModelFloors::badFileIsNoFloorsWithALineInTheLog_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no JSON") << QByteArray("1F");
    QTest::newRow("cut short") << QByteArray(R"([{"name": "1F", "elev)");
    QTest::newRow("object at the top") << QByteArray(R"({"name": "1F", "elevation": 0})");
    QTest::newRow("deeper than anything is") << QByteArray(100'000, '[');
}

void TestModelFloors::badFileIsNoFloorsWithALineInTheLog()
{
    QFETCH(QByteArray, bytes);
    m_suite->convert(Suite::first, bytes);
    QCOMPARE(names(), QStringList());
    QCOMPARE(m_log->linesWith("the floors in").size(), 1);
    QCOMPARE(m_log->take().size(), 1);
}

void TestModelFloors::entryThatIsNoFloorIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("text") << QByteArray(R"("2F")");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("list") << QByteArray(R"([{"name": "2F"}])");
    QTest::newRow("no name") << QByteArray(R"({"elevation": 3})");
    QTest::newRow("name is a number") << QByteArray(R"({"name": 2, "elevation": 3})");
    QTest::newRow("empty name") << QByteArray(R"({"name": "", "elevation": 3})");
    QTest::newRow("name of blanks") << QByteArray(R"({"name": " \t\n ", "elevation": 3})");
}

void TestModelFloors::entryThatIsNoFloorIsLeftOut()
{
    QFETCH(QByteArray, entry);
    m_suite->convert(Suite::first, R"([{"name": "1F", "elevation": 0}, )" + entry + "]");
    QCOMPARE(names(), QStringList("1F"));
}

void TestModelFloors::leftOutFloorsAreTold()
{
    m_suite->convert(Suite::first, R"([{"name": "1F", "elevation": 0}, 5, 6])");
    QCOMPARE(names(), QStringList("1F"));
    const auto lines = m_log->take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith("warning: of 3 floors in"), qPrintable(lines.first()));
    QVERIFY2(lines.first().endsWith("1 are used"), qPrintable(lines.first()));
}

void TestModelFloors::floorWithoutAnElevationStandsAtZero()
{
    m_suite->convert(Suite::first, R"([{"name": "up", "elevation": 1}, {"name": "none"},
        {"name": "text", "elevation": "9"}, {"name": "down", "elevation": -1}])");
    QCOMPARE(names(), QStringList({"down", "none", "text", "up"}));
}

void TestModelFloors::floorsOfOneHeightKeepTheirOrder()
{
    m_suite->convert(Suite::first, Floors({{"b", 1}, {"a", 1}, {"c", 1}, {"low", 0}}));
    QCOMPARE(names(), QStringList({"low", "b", "a", "c"}));
}

void TestModelFloors::lowerOfTwoFloorsOfOneNameStays()
{
    m_suite->convert(Suite::first, Floors({{"a", 5}, {"b", 3}, {"a", 1}}));
    QCOMPARE(names(), QStringList({"a", "b"}));
}

void TestModelFloors::longNameIsCut()
{
    m_suite->convert(Suite::first, Floors({{QString(10'000, QChar(u'层')), 0}, {"1F", 1}}));
    QCOMPARE(names(), QStringList({QString(256, QChar(u'层')), "1F"}));
}

void TestModelFloors::namesThatAreEqualOnceCutAreOneFloor()
{
    m_suite->convert(Suite::first,
                     Floors({{QString(10'000, 'x') + 'a', 0}, {QString(10'000, 'x') + 'b', 1}}));
    QCOMPARE(names(), QStringList(QString(256, 'x')));
}

void TestModelFloors::blanksAndLineBreaksInNamesAreOneBlank()
{
    m_suite->convert(Suite::first, Floors({{" 1F\n\t 大堂 ", 0}}));
    QCOMPARE(names(), QStringList("1F 大堂"));
}

void TestModelFloors::tenThousandFloorsAreRead()
{
    QList<QPair<QString, double>> floors;
    for (int index = 9'999; index >= 0; --index)
        floors.append({QString::number(index), index * 3.0});
    m_suite->convert(Suite::first, Floors(floors));
    const auto read = names();
    QCOMPARE(read.size(), 10'000);
    QCOMPARE(read.first(), QString("0"));
    QCOMPARE(read.last(), QString("9999"));
    QCOMPARE(m_log->take(), QStringList());
}

void TestModelFloors::moreThanTenThousandFloorsAreCutOff()
{
    QList<QPair<QString, double>> floors;
    for (int index = 0; index < 10'005; ++index)
        floors.append({QString::number(index), index * 3.0});
    m_suite->convert(Suite::first, Floors(floors));
    QCOMPARE(names().size(), 10'000);
    QCOMPARE(m_log->linesWith("of 10005 floors").size(), 1);
}

void TestModelFloors::hugeFileIsNoFloors()
{
    m_suite->convert(Suite::first, "[]");
    QVERIFY(QFile::resize(m_suite->file(Suite::first), 10LL * 1024 * 1024 * 1024));
    QCOMPARE(names(), QStringList());
    QCOMPARE(m_log->linesWith("it is larger than 16777216 bytes").size(), 1);
}

void TestModelFloors::keyThatClimbsOutOfTheFolderIsRefused()
{
    m_suite->convert(Suite::first, Floors({{"1F", 0}}));
    const auto climbing = QString("%1/../proj_%1").arg(Suite::first);
    QVERIFY(QFile::exists(m_suite->file(climbing)));
    QVERIFY(ReadModelFloors(m_suite->dataDir(), climbing).empty());
}

void TestModelFloors::unionOfManyFloorsIsQuick()
{
    std::vector<ModelFloors> models;
    for (int model = 0; model < 10; ++model) {
        models.push_back({QString::number(model), {}});
        for (int floor = 0; floor < 10'000; ++floor)
            models.back().floors.push_back({QString::number(floor + 5'000 * model), floor * 3.0});
    }
    const auto united = UnionOf(models);
    QCOMPARE(united.size(), 55'000);
    QCOMPARE(united.first().floorName, QString("0"));
}

QTEST_GUILESS_MAIN(TestModelFloors)
#include "test_modelfloors.moc"
