// SPDX-License-Identifier: MIT
#include "convert/floortempmodel.h"
#include "floorlist.h"

#include <memory>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

/// What is done to the rows and to what is matched to them.
class TestFloorEdits : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void rowIsAddedOnTopWithoutACurrentRow();
    void rowIsAddedBehindTheCurrentRow();
    void rowIsAddedAtTheEndBehindTheLast();
    void addedRowIsNotSelectedAndTheCurrentStays();
    void rowOfATakenNameIsNotAdded();
    void namesDifferByCase();
    void rowIsAddedOnTopWhenTheCurrentOneIsStale();

    void currentRowIsRenamed();
    void ownNameIsNoChange();
    void takenNameIsRefused();
    void nothingIsRenamedWithoutACurrentRow();

    void itemIsAddedToTheCurrentRow();
    void itemIsAddedTwice();
    void noItemIsAddedWithoutACurrentRow();
    void itemIsRemovedFromTheCurrentRow();
    void removalOfAnUnknownItemIsTold();
    void noItemIsRemovedWithoutACurrentRow();
    void itemIsRemovedFromTheFirstRowThatHasIt();
    void removalOfAnItemThatNoRowHasIsNotTold();

    void rowsAreGivenWithTheirItems();
    void selectedRowsAreGivenInTheirOrder();
    void rowsAreReplacedByAReset();
    void replacedRowsAreNotSelected();
    void currentNumberOutlivesTheReplacement();
    void currentNumberMayGoStale();
    void replacedRowsAreDeleted();
    void rowsGoWithTheModel();

    void selectedRowsAreRemovedFromTheBottomUpOneByOne();
    void removalLeavesNoCurrentRow();
    void removalOfNothingLeavesNoCurrentRowEither();
    void removedRowsAreDeleted();
    void thousandsOfRowsAreRemovedFromThousands();

    void currentRowMovesUp();
    void currentRowMovesDown();
    void moveIsAReset();
    void firstRowDoesNotMoveUp();
    void lastRowDoesNotMoveDown();
    void nothingMovesWithoutACurrentRow();
    void matchedFloorsAreToldAfterAMove();

private:
    void fill(const QStringList& names);

    std::unique_ptr<CFloorTempModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestFloorEdits::init()
{
    m_tester.reset();
    m_model = std::make_unique<CFloorTempModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
}

void TestFloorEdits::fill(const QStringList& names)
{
    CFloorTempModel::Rows rows;
    for (const auto& name : names)
        rows.emplace_back(name, FloorItems());
    m_model->setRows(rows);
}

void TestFloorEdits::rowIsAddedOnTopWithoutACurrentRow()
{
    fill({"a", "b"});
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    QVERIFY(m_model->addFloor("new"));
    QCOMPARE(ListOf(*m_model), QStringList({"new", "a", "b"}));
    QCOMPARE(inserted.count(), 1);
}

void TestFloorEdits::rowIsAddedBehindTheCurrentRow()
{
    fill({"a", "b"});
    m_model->clearAndSelected(0);
    QVERIFY(m_model->addFloor("new"));
    QCOMPARE(ListOf(*m_model), QStringList({"a*", "new", "b"}));
}

void TestFloorEdits::rowIsAddedAtTheEndBehindTheLast()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    QVERIFY(m_model->addFloor("new"));
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b*", "new"}));
}

void TestFloorEdits::addedRowIsNotSelectedAndTheCurrentStays()
{
    fill({"a"});
    m_model->clearAndSelected(0);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(m_model->addFloor("new"));
    QVERIFY(m_model->renameCurFloor("still"));
    QCOMPARE(ListOf(*m_model), QStringList({"still*", "new"}));
    QCOMPARE(changed.count(), 0);
}

void TestFloorEdits::rowOfATakenNameIsNotAdded()
{
    fill({"a", "b"});
    QVERIFY(!m_model->addFloor("b"));
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b"}));
    QVERIFY(m_model->hasFloor("b"));
    QVERIFY(!m_model->hasFloor("c"));
}

void TestFloorEdits::namesDifferByCase()
{
    fill({"b1"});
    QVERIFY(!m_model->hasFloor("B1"));
    QVERIFY(m_model->addFloor("B1"));
}

void TestFloorEdits::rowIsAddedOnTopWhenTheCurrentOneIsStale()
{
    fill({"a", "b", "c"});
    m_model->clearAndSelected(2);
    fill({"x", "y"});
    QVERIFY(m_model->addFloor("new"));
    QCOMPARE(ListOf(*m_model), QStringList({"new", "x", "y"}));
}

void TestFloorEdits::currentRowIsRenamed()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    QVERIFY(m_model->renameCurFloor("c"));
    QCOMPARE(ListOf(*m_model), QStringList({"a", "c*"}));
}

void TestFloorEdits::ownNameIsNoChange()
{
    fill({"a"});
    m_model->clearAndSelected(0);
    QSignalSpy renamed(&RowAt(*m_model, 0), &CFloorTempData::floorNameChanged);
    QVERIFY(m_model->renameCurFloor("a"));
    QCOMPARE(renamed.count(), 0);
}

void TestFloorEdits::takenNameIsRefused()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    QVERIFY(!m_model->renameCurFloor("a"));
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b*"}));
}

void TestFloorEdits::nothingIsRenamedWithoutACurrentRow()
{
    fill({"a"});
    QVERIFY(!m_model->renameCurFloor("a"));
    QVERIFY(!m_model->renameCurFloor("b"));
}

void TestFloorEdits::itemIsAddedToTheCurrentRow()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(m_model->addCurItem("m", "M", "1"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(MatchedOf(*m_model), QStringList("m M 1"));
    QVERIFY(RowAt(*m_model, 0).childFloors().isEmpty());
}

void TestFloorEdits::itemIsAddedTwice()
{
    fill({"a"});
    m_model->clearAndSelected(0);
    QVERIFY(m_model->addCurItem("m", "M", "1"));
    QVERIFY(m_model->addCurItem("m", "M", "1"));
    QCOMPARE(MatchedOf(*m_model), QStringList({"m M 1", "m M 1"}));
}

void TestFloorEdits::noItemIsAddedWithoutACurrentRow()
{
    fill({"a"});
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(!m_model->addCurItem("m", "M", "1"));
    QCOMPARE(changed.count(), 0);
    QVERIFY(RowAt(*m_model, 0).childFloors().isEmpty());
}

void TestFloorEdits::itemIsRemovedFromTheCurrentRow()
{
    m_model->setRows({{"a", {{"m", {{"m", "M", "1"}, {"m", "M", "2"}}}}}});
    m_model->clearAndSelected(0);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(m_model->removeCurItem("m", "1"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(MatchedOf(*m_model), QStringList("m M 2"));
    QVERIFY(m_model->removeCurItem("m", "2"));
    QVERIFY(!RowAt(*m_model, 0).childFloors().contains("m"));
}

void TestFloorEdits::removalOfAnUnknownItemIsTold()
{
    fill({"a"});
    m_model->clearAndSelected(0);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(m_model->removeCurItem("m", "1"));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!RowAt(*m_model, 0).childFloors().contains("m"));
}

void TestFloorEdits::noItemIsRemovedWithoutACurrentRow()
{
    m_model->setRows({{"a", {{"m", {{"m", "M", "1"}}}}}});
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    QVERIFY(!m_model->removeCurItem("m", "1"));
    QCOMPARE(changed.count(), 0);
    QVERIFY(RowAt(*m_model, 0).childFloors().contains("m"));
}

void TestFloorEdits::itemIsRemovedFromTheFirstRowThatHasIt()
{
    const FloorItems items = {{"m", {{"m", "M", "1"}}}};
    m_model->setRows({{"a", {{"m", {{"m", "M", "2"}}}}}, {"b", items}, {"c", items}});
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->removeItem("m", "1");
    QCOMPARE(changed.count(), 1);
    QVERIFY(RowAt(*m_model, 0).childFloors().contains("m"));
    QVERIFY(!RowAt(*m_model, 1).childFloors().contains("m"));
    QVERIFY(RowAt(*m_model, 2).childFloors().contains("m"));
}

void TestFloorEdits::removalOfAnItemThatNoRowHasIsNotTold()
{
    m_model->setRows({{"a", {{"m", {{"m", "M", "2"}}}}}});
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->removeItem("m", "1");
    m_model->removeItem("n", "2");
    QCOMPARE(changed.count(), 0);
    QVERIFY(RowAt(*m_model, 0).childFloors().contains("m"));
}

void TestFloorEdits::rowsAreGivenWithTheirItems()
{
    m_model->setRows({{"a", {{"m", {{"m", "M", "1"}}}}}, {"b", {}}});
    CFloorTempModel::Rows rows = {{"was here", {}}};
    m_model->getRows(rows);
    QCOMPARE(rows.size(), std::size_t(2));
    QCOMPARE(rows[0].first, QString("a"));
    QCOMPARE(rows[0].second.value("m").first().floorName, QString("1"));
    QCOMPARE(rows[1].first, QString("b"));
    QVERIFY(rows[1].second.isEmpty());
}

void TestFloorEdits::selectedRowsAreGivenInTheirOrder()
{
    fill({"a", "b", "c"});
    m_model->ctrlSelected(2);
    m_model->ctrlSelected(0);
    CFloorTempModel::Rows rows;
    m_model->getSelectedRows(rows);
    QCOMPARE(rows.size(), std::size_t(2));
    QCOMPARE(rows[0].first, QString("a"));
    QCOMPARE(rows[1].first, QString("c"));
}

void TestFloorEdits::rowsAreReplacedByAReset()
{
    fill({"a"});
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    bool isAfterTheReset = false;
    connect(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged, this,
            [&] { isAfterTheReset = resets.count() == 1; });
    fill({"b", "c"});
    QCOMPARE(ListOf(*m_model), QStringList({"b", "c"}));
    QCOMPARE(resets.count(), 1);
    QCOMPARE(changed.count(), 1);
    QVERIFY(isAfterTheReset);
}

void TestFloorEdits::replacedRowsAreNotSelected()
{
    fill({"a", "b"});
    m_model->regionSelected(0, 1);
    fill({"a", "b"});
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b"}));
}

void TestFloorEdits::currentNumberOutlivesTheReplacement()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    m_model->setRows({{"x", {}}, {"y", {{"m", {{"m", "M", "1"}}}}}});
    QCOMPARE(ListOf(*m_model), QStringList({"x", "y"}));
    QCOMPARE(MatchedOf(*m_model), QStringList("m M 1"));
    QVERIFY(m_model->renameCurFloor("z"));
    QCOMPARE(ListOf(*m_model), QStringList({"x", "z"}));
}

void TestFloorEdits::currentNumberMayGoStale()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    fill({"x"});
    QVERIFY(m_model->curMatchedFloors().isEmpty());
    QVERIFY(!m_model->renameCurFloor("z"));
    QVERIFY(!m_model->addCurItem("m", "M", "1"));
    QVERIFY(!m_model->removeCurItem("m", "1"));
    m_model->moveCurUp();
    m_model->moveCurDown();
    QCOMPARE(ListOf(*m_model), QStringList("x"));
}

void TestFloorEdits::replacedRowsAreDeleted()
{
    fill({"a"});
    const QPointer<CFloorTempData> row = &RowAt(*m_model, 0);
    fill({"a"});
    QVERIFY(row.isNull());
}

void TestFloorEdits::rowsGoWithTheModel()
{
    fill({"a"});
    const QPointer<CFloorTempData> row = &RowAt(*m_model, 0);
    m_tester.reset();
    m_model.reset();
    QVERIFY(row.isNull());
}

void TestFloorEdits::selectedRowsAreRemovedFromTheBottomUpOneByOne()
{
    fill({"a", "b", "c", "d", "e"});
    for (const int index : {0, 3, 4})
        m_model->ctrlSelected(index);
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    m_model->removeSelectedRows();
    QCOMPARE(ListOf(*m_model), QStringList({"b", "c"}));
    QList<int> places;
    for (const auto& arguments : removed) {
        QCOMPARE(arguments.at(1), arguments.at(2));
        places.append(arguments.at(1).toInt());
    }
    QCOMPARE(places, QList<int>({4, 3, 0}));
}

void TestFloorEdits::removalLeavesNoCurrentRow()
{
    fill({"a", "b"});
    m_model->clearAndSelected(0);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->removeSelectedRows();
    QCOMPARE(changed.count(), 1);
    QVERIFY(!m_model->renameCurFloor("x"));
}

void TestFloorEdits::removalOfNothingLeavesNoCurrentRowEither()
{
    fill({"a"});
    m_model->clearAndSelected(0);
    fill({});
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->removeSelectedRows();
    QCOMPARE(changed.count(), 1);
    fill({"b"});
    QVERIFY(!m_model->renameCurFloor("x"));
}

void TestFloorEdits::removedRowsAreDeleted()
{
    fill({"a", "b"});
    const QPointer<CFloorTempData> row = &RowAt(*m_model, 0);
    m_model->clearAndSelected(0);
    m_model->removeSelectedRows();
    QVERIFY(row.isNull());
}

void TestFloorEdits::thousandsOfRowsAreRemovedFromThousands()
{
    m_tester.reset(); // it looks at every row after each change
    CFloorTempModel::Rows rows;
    for (int index = 0; index < 10'000; ++index)
        rows.emplace_back(QString::number(index), FloorItems());
    m_model->setRows(rows);
    for (int index = 0; index < 10'000; index += 10)
        m_model->ctrlSelected(index);
    int count = 10'000;
    connect(m_model.get(), &QAbstractItemModel::rowsRemoved, this,
            [&] { QCOMPARE(m_model->rowCount(), --count); });
    m_model->removeSelectedRows();
    QCOMPARE(m_model->rowCount(), 9'000);
    QCOMPARE(RowAt(*m_model, 0).floorName(), QString("1"));
    QCOMPARE(RowAt(*m_model, 9).floorName(), QString("11"));
    QCOMPARE(RowAt(*m_model, 8'999).floorName(), QString("9999"));
}

void TestFloorEdits::currentRowMovesUp()
{
    fill({"a", "b", "c"});
    m_model->clearAndSelected(2);
    m_model->moveCurUp();
    QCOMPARE(ListOf(*m_model), QStringList({"a", "c*", "b"}));
    m_model->moveCurUp();
    QCOMPARE(ListOf(*m_model), QStringList({"c*", "a", "b"}));
}

void TestFloorEdits::currentRowMovesDown()
{
    fill({"a", "b", "c"});
    m_model->clearAndSelected(0);
    m_model->moveCurDown();
    m_model->moveCurDown();
    QCOMPARE(ListOf(*m_model), QStringList({"b", "c", "a*"}));
}

void TestFloorEdits::moveIsAReset()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    const auto* row = &RowAt(*m_model, 1);
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy moves(m_model.get(), &QAbstractItemModel::rowsMoved);
    m_model->moveCurUp();
    QCOMPARE(resets.count(), 1);
    QCOMPARE(moves.count(), 0);
    QVERIFY(&RowAt(*m_model, 0) == row);
}

void TestFloorEdits::firstRowDoesNotMoveUp()
{
    fill({"a", "b"});
    m_model->clearAndSelected(0);
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    m_model->moveCurUp();
    QCOMPARE(resets.count(), 0);
    QCOMPARE(ListOf(*m_model), QStringList({"a*", "b"}));
}

void TestFloorEdits::lastRowDoesNotMoveDown()
{
    fill({"a", "b"});
    m_model->clearAndSelected(1);
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    m_model->moveCurDown();
    QCOMPARE(resets.count(), 0);
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b*"}));
}

void TestFloorEdits::nothingMovesWithoutACurrentRow()
{
    fill({"a", "b"});
    m_model->ctrlSelected(1);
    QSignalSpy resets(m_model.get(), &QAbstractItemModel::modelReset);
    m_model->moveCurUp();
    m_model->moveCurDown();
    QCOMPARE(resets.count(), 0);
    QCOMPARE(ListOf(*m_model), QStringList({"a", "b*"}));
}

void TestFloorEdits::matchedFloorsAreToldAfterAMove()
{
    m_model->setRows({{"a", {}}, {"b", {{"m", {{"m", "M", "1"}}}}}});
    m_model->clearAndSelected(1);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->moveCurUp();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(MatchedOf(*m_model), QStringList("m M 1"));
}

QTEST_GUILESS_MAIN(TestFloorEdits)
#include "test_flooredits.moc"
