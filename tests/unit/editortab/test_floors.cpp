// SPDX-License-Identifier: MIT
#include "editortab/document/floors.h"

#include "editortab/window/floorlist.h"
#include "models.h"
#include "projects.h"

#include <QListView>
#include <QSignalSpy>
#include <QTest>

using BIZCOMMON::FLOORINFO::ModelFloor;
using editortab::Document;
using editortab::FloorList;
using editortab::FloorsOfNodes;

namespace
{

const std::vector<ModelFloor> storeys = {{"一层", 0.0}, {"二层", 3.0}};

/// A triangle a metre high, standing at this height, for each of the nodes.
gltf::Model AtHeights(const std::vector<float>& heights)
{
    gltf::Model model;
    for (float height : heights) {
        model.nodes.push_back({"part", -1});
        AddTriangle(model, static_cast<std::uint32_t>(model.nodes.size()) - 1, {0, height, 0}, 1);
    }
    return model;
}

QStringList NamesOf(const FloorList& list)
{
    QStringList names;
    for (int row = 0; row < list.rowCount(); ++row)
        names += list.data(list.index(row, 0)).toString();
    return names;
}

} // namespace

/// The floors of what is shown, and what stands on them.
class TestFloors : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QDir(DataFolder()).removeRecursively(); }

    void nodesBelowANamedStoreyStandOnIt();
    void typeTellsAStoreyWithoutChildren();
    void storeyOutweighsHeight();
    void heightDecidesWhereNoStoreyIsTold_data();
    void heightDecidesWhereNoStoreyIsTold();
    void modelWithoutFloorsStandsOnNone();
    void nodeWithoutASurfaceStandsOnNone();

    void floorsOfTheModelsAreListedFromTheTopDown();
    void storedFloorsComeBeforeThoseOfTheModels();
    void floorsOfAProjectWithoutAnyAreNone();
    void floorsOfSeveralBuildingsAreToldApart();
    void hiddenFloorHidesItsNodesAlone();
    void floorOfSeveralOfTheModelHidesAllOfThem();
    void floorThatAnotherOneShowsIsNotHidden();
    void hiddenFloorStaysHiddenWhenTheListIsReadAnew();
    void listSaysWhatIsHidden();
    void spaceHidesAndShowsTheCurrentFloor();
};

/// A building with a model of two floors.
void TestFloors::init()
{
    QVERIFY(QDir(DataFolder()).removeRecursively());
    Create(house, "房子", "BIM", 121.5, 31.25, 4);
    Create(walls, "墙", "MODEL", 0, 0, 0);
    ZRSmartDB::ProjectChange change;
    change.putModels = {{walls, "墙", "MODEL", {}}};
    ProjectFile(FolderOf(house)).write(change);
    WriteFloors(walls, R"([{"name": "一层", "elevation": 0}, {"name": "二层", "elevation": 3}])");
}

void TestFloors::nodesBelowANamedStoreyStandOnIt()
{
    // The house, its lower storey with a wall, its upper one with a wall and a pane.
    QCOMPARE(FloorsOfNodes(House(), storeys), (std::vector<int>{-1, 0, 0, 1, 1, 1}));
}

void TestFloors::typeTellsAStoreyWithoutChildren()
{
    auto model = AtHeights({9});
    model.nodes[0].name = "一层";
    QCOMPARE(FloorsOfNodes(model, storeys), std::vector<int>{1});
    model.nodes[0].type = "IfcBuildingStorey";
    QCOMPARE(FloorsOfNodes(model, storeys), std::vector<int>{0});
}

void TestFloors::storeyOutweighsHeight()
{
    auto house = House();
    for (auto& vertex : house.vertices)
        vertex.position[1] += 100;
    QCOMPARE(FloorsOfNodes(house, storeys), (std::vector<int>{-1, 0, 0, 1, 1, 1}));
}

void TestFloors::heightDecidesWhereNoStoreyIsTold_data()
{
    QTest::addColumn<float>("low");
    QTest::addColumn<int>("floor");
    QTest::newRow("below all") << -8.0F << 0;
    QTest::newRow("on the lower") << 0.0F << 0;
    QTest::newRow("just below the upper") << 2.4F << 0;
    QTest::newRow("with its middle at the upper") << 2.5F << 1;
    QTest::newRow("above all") << 90.0F << 1;
}

void TestFloors::heightDecidesWhereNoStoreyIsTold()
{
    QFETCH(float, low);
    QFETCH(int, floor);
    QCOMPARE(FloorsOfNodes(AtHeights({low}), storeys), std::vector<int>{floor});
}

void TestFloors::modelWithoutFloorsStandsOnNone()
{
    QCOMPARE(FloorsOfNodes(AtHeights({0, 5}), {}), (std::vector<int>{-1, -1}));
}

void TestFloors::nodeWithoutASurfaceStandsOnNone()
{
    auto model = AtHeights({0});
    model.nodes.push_back({"empty", -1});
    QCOMPARE(FloorsOfNodes(model, storeys), (std::vector<int>{0, -1}));
}

void TestFloors::floorsOfTheModelsAreListedFromTheTopDown()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QCOMPARE(NamesOf(list), QStringList({"二层", "一层"}));
}

void TestFloors::storedFloorsComeBeforeThoseOfTheModels()
{
    BIZCOMMON::FLOORINFO::CFloorInfo info(QString::fromStdString(house), DataFolder());
    info.SaveFloors({{"F1", {{QString::fromStdString(walls), {"一层"}}}}, {"F2", {}}});
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QCOMPARE(NamesOf(list), QStringList({"F2", "F1"}));
}

void TestFloors::floorsOfAProjectWithoutAnyAreNone()
{
    WriteFloors(walls, "[]");
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QCOMPARE(list.rowCount(), 0);
}

void TestFloors::floorsOfSeveralBuildingsAreToldApart()
{
    Create(scene, "外滩", "CIM", 121.5, 31.25, 4);
    Create(tower, "塔", "BIM", 121.5, 31.25, 4);
    ZRSmartDB::ProjectChange change;
    change.putModels = {{walls, "墙", "MODEL", {}}};
    ProjectFile(FolderOf(tower)).write(change);
    Document document(Start(scene, {QString::fromStdString(house), QString::fromStdString(tower)}));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QCOMPARE(NamesOf(list), QStringList({"房子　二层", "房子　一层", "塔　二层", "塔　一层"}));
}

void TestFloors::hiddenFloorHidesItsNodesAlone()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QCOMPARE(list.hiddenNodes(document, 0, House()), std::vector<bool>(6));
    QSignalSpy changed(&list, &FloorList::visibilityChanged);
    QVERIFY(list.setData(list.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(list.hiddenNodes(document, 0, House()),
             (std::vector<bool>{false, false, false, true, true, true}));
    QVERIFY(list.setData(list.index(0, 0), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(list.hiddenNodes(document, 0, House()), std::vector<bool>(6));
}

void TestFloors::floorOfSeveralOfTheModelHidesAllOfThem()
{
    BIZCOMMON::FLOORINFO::CFloorInfo info(QString::fromStdString(house), DataFolder());
    info.SaveFloors({{"F1", {{QString::fromStdString(walls), {"一层", "二层"}}}}});
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QVERIFY(list.setData(list.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(list.hiddenNodes(document, 0, House()),
             (std::vector<bool>{false, true, true, true, true, true}));
}

void TestFloors::floorThatAnotherOneShowsIsNotHidden()
{
    const auto guid = QString::fromStdString(walls);
    BIZCOMMON::FLOORINFO::CFloorInfo info(QString::fromStdString(house), DataFolder());
    info.SaveFloors({{"F1", {{guid, {"一层"}}}}, {"F2", {{guid, {"一层", "二层"}}}}});
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QVERIFY(list.setData(list.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(list.hiddenNodes(document, 0, House()),
             (std::vector<bool>{false, false, false, true, true, true}));
}

void TestFloors::hiddenFloorStaysHiddenWhenTheListIsReadAnew()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QVERIFY(list.setData(list.index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    list.setDocument(document);
    QCOMPARE(list.data(list.index(0, 0), Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QCOMPARE(list.data(list.index(1, 0), Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
}

void TestFloors::listSaysWhatIsHidden()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    list.setDocument(document);
    QVERIFY(list.setData(list.index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(list.data(list.index(0, 0), Qt::AccessibleTextRole).toString(), QStringLiteral("二层，显示"));
    QCOMPARE(list.data(list.index(1, 0), Qt::AccessibleTextRole).toString(), QStringLiteral("一层，隐藏"));
}

void TestFloors::spaceHidesAndShowsTheCurrentFloor()
{
    Document document(Start(house));
    QCOMPARE(document.open(), QString());
    FloorList list;
    QListView view;
    view.setModel(&list);
    list.setDocument(document);
    view.setCurrentIndex(list.index(0, 0));
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Space);
    QCOMPARE(list.data(list.index(1, 0), Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QTest::keyClick(&view, Qt::Key_Space);
    QCOMPARE(list.data(list.index(1, 0), Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

QTEST_MAIN(TestFloors)
#include "test_floors.moc"
