// SPDX-License-Identifier: MIT
#include "convert/floormatchedctrl.h"

#include "floorctrlsuite.h"

using namespace TorvoEditor;

/// What is done in the floor dialog, and what is stored of it.
class TestFloorMatchedCtrl : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void addedFloorIsMarked();
    void nothingIsAddedWithoutACurrentRow();
    void floorMayStandInTwoRows();
    void removedFloorLosesItsMark();
    void removalWithoutACurrentRowUnmarksAllTheSame();
    void floorIsRemovedFromWhicheverRowHasIt();
    void floorInTwoRowsLosesItsMarkWithTheFirstRemoval();
    void markingOfAnUnknownModelIsToldToo();
    void rowIsAdded();
    void rowOfATakenNameIsNotAdded();
    void currentRowIsRenamed();
    void severalSelectedRowsAreNotRenamed();
    void selectedRowsAreRemovedAndTheirFloorsFree();
    void removalWithNothingSelectedIsRefused();
    void marksGoBeforeTheRows();
    void currentRowMoves();
    void rowsAreStored();
    void emptyRowsAreLeftOutAndStayInTheList();
    void rowHasNoEntryForAModelWhoseLastItemIsGone();
    void nothingIsStoredForAProjectWithoutFloorInformation();
    void nothingIsStoredWithoutManagers();
    void editsAreGoneAfterARefill();
    void otherProjectTakesItsPlace();

private:
    std::unique_ptr<StartedFloors> m_home;
};

void TestFloorMatchedCtrl::init()
{
    m_home.reset();
    m_home = std::make_unique<StartedFloors>();
}

void TestFloorMatchedCtrl::addedFloorIsMarked()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(1);
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged);
    QVERIFY(m_home->ctrl().addMatchedFloor("a", "A", "w"));
    QCOMPARE(MatchedOf(m_home->rows()), QStringList("a A w"));
    QCOMPARE(m_home->floors().last(), QString("a A w*"));
    QCOMPARE(told.count(), 1);
}

void TestFloorMatchedCtrl::nothingIsAddedWithoutACurrentRow()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(0);
    m_home->rows().ctrlSelected(1);
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged);
    QVERIFY(!m_home->ctrl().addMatchedFloor("a", "A", "w"));
    QCOMPARE(m_home->floors().last(), QString("a A w"));
    QCOMPARE(told.count(), 0);
}

void TestFloorMatchedCtrl::floorMayStandInTwoRows()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(1);
    QVERIFY(m_home->ctrl().addMatchedFloor("a", "A", "x"));
    QCOMPARE(MatchedOf(m_home->rows()), QStringList("a A x"));
    m_home->rows().clearAndSelected(0);
    QVERIFY(MatchedOf(m_home->rows()).contains("a A x"));
}

void TestFloorMatchedCtrl::removedFloorLosesItsMark()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(0);
    m_home->ctrl().removeCurMatchedFloor("a", "x");
    QCOMPARE(MatchedOf(m_home->rows()), QStringList({"a A y", "b B u"}));
    QCOMPARE(m_home->floors().first(), QString("a A x"));
}

void TestFloorMatchedCtrl::removalWithoutACurrentRowUnmarksAllTheSame()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().removeCurMatchedFloor("a", "x");
    QCOMPARE(m_home->floors().first(), QString("a A x"));
    m_home->rows().clearAndSelected(0);
    QVERIFY(MatchedOf(m_home->rows()).contains("a A x"));
}

void TestFloorMatchedCtrl::floorIsRemovedFromWhicheverRowHasIt()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().removeFloorMatchedInfo("a", "z");
    m_home->rows().clearAndSelected(2);
    QCOMPARE(MatchedOf(m_home->rows()), QStringList());
    QCOMPARE(m_home->floors().at(2), QString("a A z"));
}

void TestFloorMatchedCtrl::floorInTwoRowsLosesItsMarkWithTheFirstRemoval()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(1);
    QVERIFY(m_home->ctrl().addMatchedFloor("a", "A", "x"));
    m_home->ctrl().removeFloorMatchedInfo("a", "x");
    QCOMPARE(m_home->floors().first(), QString("a A x"));
    QCOMPARE(MatchedOf(m_home->rows()), QStringList("a A x"));
}

void TestFloorMatchedCtrl::markingOfAnUnknownModelIsToldToo()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged);
    m_home->ctrl().removeFloorMatchedInfo("unknown", "x");
    QCOMPARE(told.count(), 1);
    QCOMPARE(m_home->floors(), QStringList({"a A x*", "a A y*", "a A z*", "a A w"}));
}

void TestFloorMatchedCtrl::rowIsAdded()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QVERIFY(m_home->ctrl().addModel("top"));
    m_home->rows().clearAndSelected(3);
    QVERIFY(m_home->ctrl().addModel("end"));
    QCOMPARE(ListOf(m_home->rows()), QStringList({"top", "1F", "2F", "3F*", "end"}));
}

void TestFloorMatchedCtrl::rowOfATakenNameIsNotAdded()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QVERIFY(!m_home->ctrl().addModel("2F"));
    QCOMPARE(m_home->rows().rowCount(), 3);
}

void TestFloorMatchedCtrl::currentRowIsRenamed()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(1);
    QVERIFY(!m_home->ctrl().changeFloorName("1F"));
    QVERIFY(m_home->ctrl().changeFloorName("2F"));
    QVERIFY(m_home->ctrl().changeFloorName("二层"));
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "二层*", "3F"}));
}

void TestFloorMatchedCtrl::severalSelectedRowsAreNotRenamed()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().regionSelected(0, 1);
    QVERIFY(!m_home->ctrl().changeFloorName("x"));
    m_home->rows().clearAndSelected(0);
    m_home->rows().ctrlSelected(1);
    QVERIFY(!m_home->ctrl().changeFloorName("x"));
}

void TestFloorMatchedCtrl::selectedRowsAreRemovedAndTheirFloorsFree()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().ctrlSelected(0);
    m_home->rows().ctrlSelected(2);
    QVERIFY(m_home->ctrl().removeSelectedModel());
    QCOMPARE(ListOf(m_home->rows()), QStringList("2F"));
    QCOMPARE(m_home->floors(), QStringList({"a A x", "a A y", "a A z", "a A w"}));
    m_home->ctrl().setSelectedProjIndex(1);
    QCOMPARE(m_home->floors(), QStringList({"b B u", "b B v"}));
}

void TestFloorMatchedCtrl::removalWithNothingSelectedIsRefused()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged);
    QVERIFY(!m_home->ctrl().removeSelectedModel());
    QCOMPARE(m_home->rows().rowCount(), 3);
    QCOMPARE(told.count(), 0);
}

void TestFloorMatchedCtrl::marksGoBeforeTheRows()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(0);
    QStringList told;
    connect(&m_home->rows(), &QAbstractItemModel::rowsRemoved, this, [&] { told.append("row"); });
    connect(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged, this,
            [&] { told.append("marks"); });
    QVERIFY(m_home->ctrl().removeSelectedModel());
    QCOMPARE(told, QStringList({"marks", "row"}));
}

void TestFloorMatchedCtrl::currentRowMoves()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(1);
    m_home->ctrl().moveUpCurrentModel();
    QCOMPARE(ListOf(m_home->rows()), QStringList({"2F*", "1F", "3F"}));
    m_home->ctrl().movedownCurrentModel();
    m_home->ctrl().movedownCurrentModel();
    m_home->ctrl().movedownCurrentModel();
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "3F", "2F*"}));
}

void TestFloorMatchedCtrl::rowsAreStored()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().saveMatchedFloorInfo(false);
    QCOMPARE(Fakes::TextsOf(Fakes::FloorsOf("bim").stored), QStringList({"1F a:x,y b:u", "2F", "3F a:z"}));
    QCOMPARE(Fakes::CallsOf({"SaveFloors"}).size(), 1);
}

void TestFloorMatchedCtrl::emptyRowsAreLeftOutAndStayInTheList()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().saveMatchedFloorInfo(true);
    QCOMPARE(Fakes::TextsOf(Fakes::FloorsOf("bim").stored), QStringList({"1F a:x,y b:u", "3F a:z"}));
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "2F", "3F"}));
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "3F"}));
}

void TestFloorMatchedCtrl::rowHasNoEntryForAModelWhoseLastItemIsGone()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(0);
    m_home->ctrl().removeCurMatchedFloor("b", "u");
    m_home->ctrl().saveMatchedFloorInfo(false);
    QCOMPARE(Fakes::FloorsOf("bim").stored.first().mapping.keys(), QStringList("a"));
}

void TestFloorMatchedCtrl::nothingIsStoredForAProjectWithoutFloorInformation()
{
    m_home->ctrl().refillFloorInfo("bim");
    QVERIFY(m_home->ctrl().addModel("1F"));
    m_home->ctrl().saveMatchedFloorInfo(false);
    QCOMPARE(Fakes::CallsOf({"SaveFloors"}), QStringList());
}

void TestFloorMatchedCtrl::nothingIsStoredWithoutManagers()
{
    m_home->addProject();
    m_home->end();
    CFloorMatchedCtrl alone;
    alone.saveMatchedFloorInfo(false);
    QCOMPARE(Fakes::CallsOf({"SaveFloors"}), QStringList());
}

void TestFloorMatchedCtrl::editsAreGoneAfterARefill()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QVERIFY(m_home->ctrl().addModel("new"));
    m_home->rows().clearAndSelected(1);
    QVERIFY(m_home->ctrl().removeSelectedModel());
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "2F", "3F"}));
    QCOMPARE(m_home->floors(), QStringList({"a A x*", "a A y*", "a A z*", "a A w"}));
}

void TestFloorMatchedCtrl::otherProjectTakesItsPlace()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->floorInfos().Create("other");
    m_home->ctrl().refillFloorInfo("other");
    QCOMPARE(m_home->rows().rowCount(), 0);
    QVERIFY(m_home->ctrl().addModel("1F"));
    m_home->ctrl().saveMatchedFloorInfo(false);
    QCOMPARE(Fakes::TextsOf(Fakes::FloorsOf("other").stored), QStringList("1F"));
    QCOMPARE(Fakes::FloorsOf("bim").stored.size(), 3);
}

QTEST_GUILESS_MAIN(TestFloorMatchedCtrl)
#include "test_floormatchedctrl.moc"
