// SPDX-License-Identifier: MIT
#include "convert/floortempmodel.h"

#include "floorlist.h"

#include <memory>

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;

/// The rows and their two selections.
class TestFloorTempModel : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void rowsAreGivenUnderTheirRole();
    void screensDoNotTakeARowAway();
    void noRowIsCurrentAtFirst();

    void plainClickSelectsOneRowAndMakesItCurrent();
    void plainClickOutsideTheListDoesNothing_data();
    void plainClickOutsideTheListDoesNothing();
    void controlClickChangesOneRowAndLeavesTheOthers();
    void controlClickLeavesNoCurrentRow();
    void controlClickOnTheOnlySelectedRowLeavesNothing();
    void controlClickOutsideTheListDoesNothing();
    void shiftClickSelectsARegionAlone();
    void shiftClickTakesItsEndsInEitherOrder();
    void shiftClickOnOneRowSelectsIt();
    void shiftClickOutsideTheListKeepsTheSelection_data();
    void shiftClickOutsideTheListKeepsTheSelection();
    void emptyListIgnoresAllClicks();
    void selectionIsToldOnlyWhereItChanges();

    void changeOfTheCurrentRowIsTold();
    void sameCurrentRowIsNotTold();
    void matchedFloorsComeByModelThenInTheirOrder();
    void matchedFloorsAreEmptyAfterControlAndShift();

private:
    void fill(int count);

    std::unique_ptr<CFloorTempModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestFloorTempModel::init()
{
    m_tester.reset();
    m_model = std::make_unique<CFloorTempModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(m_model.get());
}

void TestFloorTempModel::fill(int count)
{
    CFloorTempModel::Rows rows;
    for (int row = 0; row < count; ++row)
        rows.emplace_back(QString::number(row), FloorItems());
    m_model->setRows(rows);
}

void TestFloorTempModel::rowsAreGivenUnderTheirRole()
{
    fill(2);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->rowCount(m_model->index(0)), 0);
    QCOMPARE(m_model->roleNames(), (QHash<int, QByteArray>{{256, "listData"}}));
    QCOMPARE(RowAt(*m_model, 1).floorName(), QString("1"));
    QVERIFY(!m_model->data(m_model->index(0), Qt::DisplayRole).isValid());
    QVERIFY(!m_model->data(QModelIndex(), 256).isValid());
    QVERIFY(!m_model->data(m_model->index(2), 256).isValid());
}

void TestFloorTempModel::screensDoNotTakeARowAway()
{
    fill(1);
    QCOMPARE(QQmlEngine::objectOwnership(&RowAt(*m_model, 0)), QQmlEngine::CppOwnership);
    QQmlEngine engine;
    const QPointer<CFloorTempData> row = &RowAt(*m_model, 0);
    engine.globalObject().setProperty("model", engine.newQObject(m_model.get()));
    QQmlEngine::setObjectOwnership(m_model.get(), QQmlEngine::CppOwnership);
    QCOMPARE(engine.evaluate("model.data(model.index(0, 0), 256).floorName").toString(), QString("0"));
    engine.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!row.isNull());
}

void TestFloorTempModel::noRowIsCurrentAtFirst()
{
    m_model->setRows({{"1F", {{"a", {{"a", "A", "x"}}}}}});
    QVERIFY(m_model->curMatchedFloors().isEmpty());
    QVERIFY(!m_model->renameCurFloor("2F"));
}

void TestFloorTempModel::plainClickSelectsOneRowAndMakesItCurrent()
{
    fill(3);
    m_model->ctrlSelected(0);
    m_model->clearAndSelected(1);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1*", "2"}));
    QVERIFY(m_model->renameCurFloor("one"));
    QCOMPARE(ListOf(*m_model), QStringList({"0", "one*", "2"}));
}

void TestFloorTempModel::plainClickOutsideTheListDoesNothing_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("before") << -1;
    QTest::newRow("behind") << 3;
}

void TestFloorTempModel::plainClickOutsideTheListDoesNothing()
{
    QFETCH(int, index);
    fill(3);
    m_model->clearAndSelected(1);
    m_model->clearAndSelected(index);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1*", "2"}));
    QVERIFY(m_model->renameCurFloor("one"));
}

void TestFloorTempModel::controlClickChangesOneRowAndLeavesTheOthers()
{
    fill(4);
    m_model->clearAndSelected(1);
    m_model->ctrlSelected(3);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1*", "2", "3*"}));
    m_model->ctrlSelected(1);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1", "2", "3*"}));
}

void TestFloorTempModel::controlClickLeavesNoCurrentRow()
{
    fill(2);
    m_model->clearAndSelected(0);
    m_model->ctrlSelected(1);
    QVERIFY(!m_model->renameCurFloor("x"));
}

void TestFloorTempModel::controlClickOnTheOnlySelectedRowLeavesNothing()
{
    fill(2);
    m_model->clearAndSelected(0);
    m_model->ctrlSelected(0);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1"}));
    QVERIFY(!m_model->renameCurFloor("x"));
}

void TestFloorTempModel::controlClickOutsideTheListDoesNothing()
{
    fill(2);
    m_model->clearAndSelected(0);
    m_model->ctrlSelected(2);
    m_model->ctrlSelected(-1);
    QCOMPARE(ListOf(*m_model), QStringList({"0*", "1"}));
    QVERIFY(m_model->renameCurFloor("x"));
}

void TestFloorTempModel::shiftClickSelectsARegionAlone()
{
    fill(5);
    m_model->clearAndSelected(0);
    m_model->regionSelected(1, 3);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1*", "2*", "3*", "4"}));
    QVERIFY(!m_model->renameCurFloor("x"));
}

void TestFloorTempModel::shiftClickTakesItsEndsInEitherOrder()
{
    fill(7);
    m_model->regionSelected(5, 2);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1", "2*", "3*", "4*", "5*", "6"}));
}

void TestFloorTempModel::shiftClickOnOneRowSelectsIt()
{
    fill(3);
    m_model->regionSelected(1, 1);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1*", "2"}));
}

void TestFloorTempModel::shiftClickOutsideTheListKeepsTheSelection_data()
{
    QTest::addColumn<int>("begin");
    QTest::addColumn<int>("end");
    QTest::newRow("end is the row count") << 1 << 3;
    QTest::newRow("begin is the row count") << 3 << 1;
    QTest::newRow("begin below") << -1 << 1;
    QTest::newRow("end below") << 1 << -1;
}

void TestFloorTempModel::shiftClickOutsideTheListKeepsTheSelection()
{
    QFETCH(int, begin);
    QFETCH(int, end);
    fill(3);
    m_model->clearAndSelected(2);
    m_model->regionSelected(begin, end);
    QCOMPARE(ListOf(*m_model), QStringList({"0", "1", "2*"}));
    QVERIFY(m_model->renameCurFloor("x"));
}

void TestFloorTempModel::emptyListIgnoresAllClicks()
{
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->clearAndSelected(0);
    m_model->ctrlSelected(0);
    m_model->regionSelected(0, 0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_model->rowCount(), 0);
}

void TestFloorTempModel::selectionIsToldOnlyWhereItChanges()
{
    fill(3);
    m_model->clearAndSelected(1);
    QSignalSpy first(&RowAt(*m_model, 0), &CFloorTempData::isSelectedChanged);
    QSignalSpy second(&RowAt(*m_model, 1), &CFloorTempData::isSelectedChanged);
    QSignalSpy third(&RowAt(*m_model, 2), &CFloorTempData::isSelectedChanged);
    m_model->regionSelected(1, 2);
    QCOMPARE(first.count(), 0);
    QCOMPARE(second.count() % 2, 0);
    QCOMPARE(third.count(), 1);
}

void TestFloorTempModel::changeOfTheCurrentRowIsTold()
{
    fill(3);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->clearAndSelected(1);
    QCOMPARE(changed.count(), 1);
    m_model->clearAndSelected(2);
    QCOMPARE(changed.count(), 2);
    m_model->ctrlSelected(0);
    QCOMPARE(changed.count(), 3);
}

void TestFloorTempModel::sameCurrentRowIsNotTold()
{
    fill(3);
    m_model->clearAndSelected(1);
    QSignalSpy changed(m_model.get(), &CFloorTempModel::curMatchedFloorsChanged);
    m_model->clearAndSelected(1);
    QCOMPARE(changed.count(), 0);
    m_model->ctrlSelected(2);
    m_model->ctrlSelected(2);
    m_model->regionSelected(0, 1);
    QCOMPARE(changed.count(), 1);
}

void TestFloorTempModel::matchedFloorsComeByModelThenInTheirOrder()
{
    fill(1);
    m_model->clearAndSelected(0);
    QVERIFY(m_model->addCurItem("b", "B", "2"));
    QVERIFY(m_model->addCurItem("a", "A", "3"));
    QVERIFY(m_model->addCurItem("b", "B", "1"));
    QCOMPARE(MatchedOf(*m_model), QStringList({"a A 3", "b B 2", "b B 1"}));
    QCOMPARE(m_model->curMatchedFloors().first().toObject().keys(),
             QStringList({"floorName", "projGuid", "projName"}));
}

void TestFloorTempModel::matchedFloorsAreEmptyAfterControlAndShift()
{
    m_model->setRows({{"1F", {{"a", {{"a", "A", "x"}}}}}, {"2F", {}}});
    m_model->clearAndSelected(0);
    QCOMPARE(MatchedOf(*m_model), QStringList("a A x"));
    m_model->ctrlSelected(1);
    QCOMPARE(MatchedOf(*m_model), QStringList());
    m_model->clearAndSelected(0);
    m_model->regionSelected(0, 0);
    QCOMPARE(MatchedOf(*m_model), QStringList());
}

QTEST_GUILESS_MAIN(TestFloorTempModel)
#include "test_floortempmodel.moc"
