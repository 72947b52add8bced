// SPDX-License-Identifier: MIT
#include "floorsuite.h"

#include <memory>

#include <QTest>

using Fakes::TextsOf;
using Suite = FloorSurroundings;

class TestFloorInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void projectWithoutModelsHasNoFloors();
    void projectThatIsNotHereHasNoFloors();
    void defaultFloorsAreTheUnionByElevation();
    void floorsOfOneNameAreMatched();
    void lowestElevationOfANameCounts();
    void resetFloorsAreComputedAnew();
    void storedFloorsDoNotChangeTheDefaultOnes();
    void floorsOfEachModelAreGivenLowestFirst();
    void modelWithoutFloorsIsThereWithNone();
    void savedFloorsAreThereForTheNext();
    void emptyListIsStoredAsNone();
    void updateOfTheFileIsSeenWithoutLoading();
    void addedModelsFloorsAreThere();
    void addedModelLeavesWhatIsMatched();
    void removedModelsFloorsGoAndOthersStay();
    void floorsOfAReplacedModelGoOverByName();
    void floorsOfAReplacedModelJoinThoseOfTheNewOne();
    void changeOfModelsWithNothingStoredStoresNothing();
    void changeOfAnotherModelWritesNothing();
    void guidInCapitalsIsTheSameProject();

private:
    std::unique_ptr<Suite> m_suite;
};

void TestFloorInfo::init()
{
    m_suite.reset();
    m_suite = std::make_unique<Suite>();
}

void TestFloorInfo::projectWithoutModelsHasNoFloors()
{
    auto floors = m_suite->floors();
    floors.LoadFloors({Suite::bim});
    QVERIFY(floors.GetFloors().isEmpty());
    QVERIFY(floors.GetDefaultFloors().isEmpty());
    QVERIFY(floors.GetResetFloors().isEmpty());
    QVERIFY(floors.GetProjFloors().isEmpty());
}

void TestFloorInfo::projectThatIsNotHereHasNoFloors()
{
    BIZCOMMON::FLOORINFO::CFloorInfo floors(Suite::second, m_suite->dataDir());
    floors.LoadFloors({Suite::second});
    QVERIFY(floors.GetFloors().isEmpty());
    QVERIFY(floors.GetDefaultFloors().isEmpty());
    QVERIFY(floors.GetProjFloors().isEmpty());
}

void TestFloorInfo::defaultFloorsAreTheUnionByElevation()
{
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}, {"name": "3F", "elevation": 6.6}])");
    m_suite->import(Suite::second, R"([{"name": "B1", "elevation": -3}, {"name": "2F", "elevation": 3.3}])");
    QCOMPARE(TextsOf(m_suite->floors().GetDefaultFloors()),
             QStringList({QString("B1 %1:B1").arg(Suite::second), QString("1F %1:1F").arg(Suite::first),
                          QString("2F %1:2F").arg(Suite::second), QString("3F %1:3F").arg(Suite::first)}));
}

void TestFloorInfo::floorsOfOneNameAreMatched()
{
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    m_suite->import(Suite::second, R"([{"name": "1F", "elevation": 0.2}, {"name": "1f", "elevation": 1}])");
    QCOMPARE(TextsOf(m_suite->floors().GetDefaultFloors()),
             QStringList({QString("1F %1:1F %2:1F").arg(Suite::first, Suite::second),
                          QString("1f %1:1f").arg(Suite::second)}));
}

void TestFloorInfo::lowestElevationOfANameCounts()
{
    m_suite->import(Suite::first, R"([{"name": "a", "elevation": 9}, {"name": "b", "elevation": 5}])");
    m_suite->import(Suite::second, R"([{"name": "a", "elevation": 1}])");
    const auto floors = m_suite->floors().GetDefaultFloors();
    QCOMPARE(floors.size(), 2);
    QCOMPARE(floors.first().floorName, QString("a"));
}

void TestFloorInfo::resetFloorsAreComputedAnew()
{
    auto floors = m_suite->floors();
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    QCOMPARE(TextsOf(floors.GetResetFloors()), QStringList(QString("1F %1:1F").arg(Suite::first)));
    m_suite->import(Suite::second, R"([{"name": "2F", "elevation": 3}])");
    QCOMPARE(TextsOf(floors.GetResetFloors()),
             QStringList({QString("1F %1:1F").arg(Suite::first), QString("2F %1:2F").arg(Suite::second)}));
    QCOMPARE(TextsOf(floors.GetResetFloors()), TextsOf(floors.GetDefaultFloors()));
}

void TestFloorInfo::storedFloorsDoNotChangeTheDefaultOnes()
{
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    auto floors = m_suite->floors();
    floors.SaveFloors({{"Roof", {}}});
    QCOMPARE(TextsOf(floors.GetDefaultFloors()), QStringList(QString("1F %1:1F").arg(Suite::first)));
    QCOMPARE(TextsOf(floors.GetResetFloors()), QStringList(QString("1F %1:1F").arg(Suite::first)));
}

void TestFloorInfo::floorsOfEachModelAreGivenLowestFirst()
{
    m_suite->import(Suite::first, R"([{"name": "2F", "elevation": 3}, {"name": "1F", "elevation": 0}])");
    m_suite->import(Suite::second, R"([{"name": "1F", "elevation": 0}])");
    QCOMPARE(m_suite->floors().GetProjFloors(),
             (QMap<QString, QStringList>{{Suite::first, {"1F", "2F"}}, {Suite::second, {"1F"}}}));
}

void TestFloorInfo::modelWithoutFloorsIsThereWithNone()
{
    m_suite->import(Suite::first, {});
    m_suite->import(Suite::second, "[]");
    QCOMPARE(m_suite->floors().GetProjFloors(),
             (QMap<QString, QStringList>{{Suite::first, {}}, {Suite::second, {}}}));
}

void TestFloorInfo::savedFloorsAreThereForTheNext()
{
    m_suite->floors().SaveFloors({{"一层", {{"a", {"1F", "夹层"}}, {"b", {"x"}}}}, {"二层", {}}});
    auto floors = m_suite->floors();
    floors.LoadFloors({Suite::bim});
    QCOMPARE(TextsOf(floors.GetFloors()), QStringList({"一层 a:1F,夹层 b:x", "二层"}));
}

void TestFloorInfo::emptyListIsStoredAsNone()
{
    auto floors = m_suite->floors();
    floors.SaveFloors({{"1F", {}}});
    floors.SaveFloors({});
    QVERIFY(floors.GetFloors().isEmpty());
}

void TestFloorInfo::updateOfTheFileIsSeenWithoutLoading()
{
    auto floors = m_suite->floors();
    floors.LoadFloors({Suite::bim});
    m_suite->floors().SaveFloors({{"1F", {}}});
    QCOMPARE(TextsOf(floors.GetFloors()), QStringList("1F"));
}

void TestFloorInfo::addedModelsFloorsAreThere()
{
    auto floors = m_suite->floors();
    floors.LoadFloors({Suite::bim});
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    floors.AddKyvProj(Suite::first);
    QCOMPARE(floors.GetProjFloors().value(Suite::first), QStringList("1F"));
    QCOMPARE(TextsOf(floors.GetDefaultFloors()), QStringList(QString("1F %1:1F").arg(Suite::first)));
}

void TestFloorInfo::addedModelLeavesWhatIsMatched()
{
    auto floors = m_suite->floors();
    floors.SaveFloors({{"1F", {{"other", {"a"}}}}});
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    floors.AddKyvProj(Suite::first);
    QCOMPARE(TextsOf(floors.GetFloors()), QStringList("1F other:a"));
}

void TestFloorInfo::removedModelsFloorsGoAndOthersStay()
{
    auto floors = m_suite->floors();
    floors.SaveFloors({{"1F", {{"a", {"x"}}, {"b", {"y"}}}}, {"2F", {{"a", {"z"}}}}});
    floors.RemoveKyvProj("a");
    QCOMPARE(TextsOf(m_suite->floors().GetFloors()), QStringList({"1F b:y", "2F"}));
}

void TestFloorInfo::floorsOfAReplacedModelGoOverByName()
{
    auto floors = m_suite->floors();
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}, {"name": "gone", "elevation": 9}])");
    floors.SaveFloors(
        {{"一层", {{Suite::first, {"1F", "gone"}}, {"other", {"y"}}}}, {"顶层", {{Suite::first, {"gone"}}}}});
    m_suite->convert(Suite::second, R"([{"name": "1F", "elevation": 0}, {"name": "new", "elevation": 3}])");
    QVERIFY(Suite::models().UpdateModelProj(Suite::key(Suite::first), Suite::key(Suite::second),
                                            m_suite->dataDir().toStdWString()));
    floors.UpdateKyvProj(Suite::first, Suite::second);
    QCOMPARE(TextsOf(m_suite->floors().GetFloors()),
             QStringList({QString("一层 %1:1F other:y").arg(Suite::second), "顶层"}));
}

void TestFloorInfo::floorsOfAReplacedModelJoinThoseOfTheNewOne()
{
    auto floors = m_suite->floors();
    m_suite->convert(Suite::second, R"([{"name": "1F", "elevation": 0}, {"name": "2F", "elevation": 3}])");
    floors.SaveFloors({{"一层", {{"old", {"1F"}}, {Suite::second, {"2F"}}}}});
    floors.UpdateKyvProj("old", Suite::second);
    QCOMPARE(TextsOf(floors.GetFloors()), QStringList(QString("一层 %1:2F,1F").arg(Suite::second)));
}

void TestFloorInfo::changeOfModelsWithNothingStoredStoresNothing()
{
    auto floors = m_suite->floors();
    floors.AddKyvProj("a");
    floors.UpdateKyvProj("a", "b");
    floors.RemoveKyvProj("b");
    QVERIFY(!QFile::exists(m_suite->file(Suite::bim)));
}

void TestFloorInfo::changeOfAnotherModelWritesNothing()
{
    auto floors = m_suite->floors();
    floors.SaveFloors({{"1F", {{"a", {"x"}}}}});
    const auto before = QFileInfo(m_suite->file(Suite::bim)).lastModified();
    QFile file(m_suite->file(Suite::bim));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(before.addDays(-1), QFileDevice::FileModificationTime));
    file.close();
    floors.RemoveKyvProj("b");
    floors.UpdateKyvProj("b", "c");
    QCOMPARE(QFileInfo(m_suite->file(Suite::bim)).lastModified(), before.addDays(-1));
}

void TestFloorInfo::guidInCapitalsIsTheSameProject()
{
    m_suite->import(Suite::first, R"([{"name": "1F", "elevation": 0}])");
    m_suite->floors().SaveFloors({{"1F", {}}});
    BIZCOMMON::FLOORINFO::CFloorInfo floors(QString(Suite::bim).toUpper(), m_suite->dataDir());
    QCOMPARE(TextsOf(floors.GetFloors()), QStringList("1F"));
    QCOMPARE(floors.GetProjFloors().value(Suite::first), QStringList("1F"));
}

QTEST_GUILESS_MAIN(TestFloorInfo)
#include "test_floorinfo.moc"
