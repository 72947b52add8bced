// SPDX-License-Identifier: MIT
#include "convert/floortempdata.h"

#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

class TestFloorTempData : public QObject
{
    Q_OBJECT

private slots:
    void newRowIsEmptyAndNotSelected();
    void nameIsAProperty();
    void selectionIsAProperty();
    void settingWhatIsThereTellsNothing();
    void itemsAreKeptByModelInTheirOrder();
    void firstItemOfTheNameIsRemoved();
    void lastItemOfAModelTakesItsEntryAlong();
    void unknownItemIsNotRemoved();
    void matchedFloorsAreNeverTold();
};

void TestFloorTempData::newRowIsEmptyAndNotSelected()
{
    const CFloorTempData row;
    QCOMPARE(row.floorName(), QString());
    QVERIFY(!row.isSelected());
    QVERIFY(row.childFloors().isEmpty());
}

void TestFloorTempData::nameIsAProperty()
{
    CFloorTempData row;
    QSignalSpy changed(&row, &CFloorTempData::floorNameChanged);
    QVERIFY(row.setProperty("floorName", "1F"));
    QCOMPARE(row.property("floorName").toString(), QString("1F"));
    QCOMPARE(changed.count(), 1);
}

void TestFloorTempData::selectionIsAProperty()
{
    CFloorTempData row;
    QSignalSpy changed(&row, &CFloorTempData::isSelectedChanged);
    QVERIFY(row.setProperty("isSelected", true));
    QVERIFY(row.property("isSelected").toBool());
    QCOMPARE(changed.count(), 1);
}

void TestFloorTempData::settingWhatIsThereTellsNothing()
{
    CFloorTempData row("1F");
    QSignalSpy renamed(&row, &CFloorTempData::floorNameChanged);
    QSignalSpy selected(&row, &CFloorTempData::isSelectedChanged);
    row.setFloorName("1F");
    row.setIsSelected(false);
    QCOMPARE(renamed.count(), 0);
    QCOMPARE(selected.count(), 0);
}

void TestFloorTempData::itemsAreKeptByModelInTheirOrder()
{
    CFloorTempData row;
    row.addItem({"b", "B", "2"});
    row.addItem({"a", "A", "3"});
    row.addItem({"b", "B", "1"});
    QCOMPARE(row.childFloors().keys(), QStringList({"a", "b"}));
    QCOMPARE(row.childFloors().value("b").at(0).floorName, QString("2"));
    QCOMPARE(row.childFloors().value("b").at(1).floorName, QString("1"));
}

void TestFloorTempData::firstItemOfTheNameIsRemoved()
{
    CFloorTempData row;
    row.addItem({"a", "first", "1"});
    row.addItem({"a", "second", "1"});
    QVERIFY(row.removeItem("a", "1"));
    QCOMPARE(row.childFloors().value("a").size(), 1);
    QCOMPARE(row.childFloors().value("a").first().projName, QString("second"));
}

void TestFloorTempData::lastItemOfAModelTakesItsEntryAlong()
{
    CFloorTempData row;
    row.addItem({"a", "A", "1"});
    row.addItem({"b", "B", "1"});
    QVERIFY(row.removeItem("a", "1"));
    QCOMPARE(row.childFloors().keys(), QStringList("b"));
}

void TestFloorTempData::unknownItemIsNotRemoved()
{
    CFloorTempData row;
    row.addItem({"a", "A", "1"});
    QVERIFY(!row.removeItem("a", "2"));
    QVERIFY(!row.removeItem("b", "1"));
    QCOMPARE(row.childFloors().keys(), QStringList("a"));
}

void TestFloorTempData::matchedFloorsAreNeverTold()
{
    CFloorTempData row;
    QSignalSpy changed(&row, &CFloorTempData::childFloorsChanged);
    QVERIFY(changed.isValid());
    row.addItem({"a", "A", "1"});
    QVERIFY(row.removeItem("a", "1"));
    QCOMPARE(changed.count(), 0);
}

QTEST_APPLESS_MAIN(TestFloorTempData)
#include "test_floortempdata.moc"
