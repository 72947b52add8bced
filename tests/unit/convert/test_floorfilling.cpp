// SPDX-License-Identifier: MIT
#include "floorctrlsuite.h"

using namespace TorvoEditor;

/// What the floor dialog begins with.
class TestFloorFilling : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void listsArePublished();
    void storedFloorsAreShown();
    void defaultFloorsAreShownWhenNothingIsStored();
    void resetShowsTheResetFloors();
    void projectWithoutFloorInformationHasEmptyLists();
    void nothingIsFilledWithoutADatabase();
    void nothingIsFilledWithoutManagers();
    void modelsAreListedByGuidWithTheirNames();
    void modelThatIsNotOpenHasNoName();
    void modelWithoutFloorsIsLeftOut();
    void namesAreAskedOfOpenModelsOnly();
    void floorsCountAsMatchedWhenARowHoldsThem();
    void itemOfAFloorThatTheModelHasNoMoreStays();
    void listsAreToldInTheirOrder();
    void chosenModelOutlivesAReset();
    void chosenModelOutOfRangeGivesAnEmptyList_data();
    void chosenModelOutOfRangeGivesAnEmptyList();
    void choiceOfAModelIsToldOnChangeOnly();
    void keysOfTheListsAreThose();

private:
    std::unique_ptr<StartedFloors> m_home;
};

void TestFloorFilling::init()
{
    m_home.reset();
    m_home = std::make_unique<StartedFloors>();
}

void TestFloorFilling::listsArePublished()
{
    QVERIFY(m_home->context().contextProperty("floorMatchedCtrl").value<QObject*>() == &m_home->ctrl());
    QCOMPARE(m_home->rows().rowCount(), 0);
    QVERIFY(m_home->ctrl().allMatchedProj().isEmpty());
    QVERIFY(m_home->ctrl().seletedProjFloor().isEmpty());
}

void TestFloorFilling::storedFloorsAreShown()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "2F", "3F"}));
    m_home->rows().clearAndSelected(0);
    QCOMPARE(MatchedOf(m_home->rows()), QStringList({"a A x", "a A y", "b B u"}));
    QCOMPARE(Fakes::CallsOf({"GetDefaultFloors", "GetResetFloors"}), QStringList());
}

void TestFloorFilling::defaultFloorsAreShownWhenNothingIsStored()
{
    m_home->addProject();
    Fakes::FloorsOf("bim").stored.clear();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(ListOf(m_home->rows()), QStringList("default"));
}

void TestFloorFilling::resetShowsTheResetFloors()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().resetFloorInfo();
    QCOMPARE(ListOf(m_home->rows()), QStringList("reset"));
    m_home->ctrl().setSelectedProjIndex(1);
    QCOMPARE(m_home->floors(), QStringList({"b B u*", "b B v*"}));
    QCOMPARE(Fakes::CallsOf({"SaveFloors"}), QStringList());
}

void TestFloorFilling::projectWithoutFloorInformationHasEmptyLists()
{
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->rows().rowCount(), 0);
    QCOMPARE(m_home->ctrl().allMatchedProj(), QJsonArray());
    QCOMPARE(m_home->ctrl().seletedProjFloor(), QJsonArray());
}

void TestFloorFilling::nothingIsFilledWithoutADatabase()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    Fakes::SmartDB::instance().hasDatabase = false;
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::allMatchedProjChanged);
    m_home->ctrl().resetFloorInfo();
    QCOMPARE(told.count(), 0);
    QCOMPARE(ListOf(m_home->rows()), QStringList({"1F", "2F", "3F"}));
}

void TestFloorFilling::nothingIsFilledWithoutManagers()
{
    m_home->end();
    CFloorMatchedCtrl alone;
    QSignalSpy told(&alone, &CFloorMatchedCtrl::allMatchedProjChanged);
    alone.refillFloorInfo("bim");
    alone.resetFloorInfo();
    QCOMPARE(told.count(), 0);
    QCOMPARE(Fakes::CallsOf({"GetFloors", "GetResetFloors"}), QStringList());
}

void TestFloorFilling::modelsAreListedByGuidWithTheirNames()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->models(), QStringList({"A", "B"}));
    QCOMPARE(m_home->floors(), QStringList({"a A x*", "a A y*", "a A z*", "a A w"}));
}

void TestFloorFilling::modelThatIsNotOpenHasNoName()
{
    m_home->addProject();
    Fakes::SmartDB::instance().find("b")->isOpen = false;
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->models(), QStringList({"A", ""}));
}

void TestFloorFilling::modelWithoutFloorsIsLeftOut()
{
    m_home->addProject();
    Fakes::FloorsOf("bim").ofModels["a"].clear();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->models(), QStringList("B"));
    QCOMPARE(m_home->floors(), QStringList({"b B u*", "b B v"}));
}

void TestFloorFilling::namesAreAskedOfOpenModelsOnly()
{
    m_home->addProject();
    Fakes::ForgetCalls();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(Fakes::CallsOf({"OpenProject"}), QStringList({"OpenProject(a,)", "OpenProject(b,)"}));
}

void TestFloorFilling::floorsCountAsMatchedWhenARowHoldsThem()
{
    m_home->addProject();
    // One name in two models is two floors.
    Fakes::FloorsOf("bim").ofModels = {{"a", {"u"}}, {"b", {"u"}}};
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->floors(), QStringList("a A u"));
    m_home->ctrl().setSelectedProjIndex(1);
    QCOMPARE(m_home->floors(), QStringList("b B u*"));
}

void TestFloorFilling::itemOfAFloorThatTheModelHasNoMoreStays()
{
    m_home->addProject();
    Fakes::FloorsOf("bim").ofModels["a"] = QStringList("w");
    m_home->ctrl().refillFloorInfo("bim");
    m_home->rows().clearAndSelected(0);
    QCOMPARE(MatchedOf(m_home->rows()), QStringList({"a A x", "a A y", "b B u"}));
    QCOMPARE(m_home->floors(), QStringList("a A w"));
}

void TestFloorFilling::listsAreToldInTheirOrder()
{
    m_home->addProject();
    QStringList told;
    connect(&m_home->rows(), &QAbstractItemModel::modelReset, this, [&] { told.append("rows"); });
    connect(&m_home->ctrl(), &CFloorMatchedCtrl::allMatchedProjChanged, this, [&] { told.append("models"); });
    connect(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged, this,
            [&] { told.append("floors"); });
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(told, QStringList({"rows", "models", "floors"}));
}

void TestFloorFilling::chosenModelOutlivesAReset()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().setSelectedProjIndex(1);
    m_home->ctrl().resetFloorInfo();
    QCOMPARE(m_home->floors(), QStringList({"b B u*", "b B v*"}));
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->floors(), QStringList({"b B u*", "b B v"}));
}

void TestFloorFilling::chosenModelOutOfRangeGivesAnEmptyList_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("behind the last") << 2;
    QTest::newRow("none") << -1;
}

void TestFloorFilling::chosenModelOutOfRangeGivesAnEmptyList()
{
    QFETCH(int, index);
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    m_home->ctrl().setSelectedProjIndex(index);
    QCOMPARE(m_home->ctrl().seletedProjFloor(), QJsonArray());
}

void TestFloorFilling::choiceOfAModelIsToldOnChangeOnly()
{
    QSignalSpy told(&m_home->ctrl(), &CFloorMatchedCtrl::seletedProjFloorChanged);
    m_home->ctrl().setSelectedProjIndex(0);
    QCOMPARE(told.count(), 0);
    m_home->ctrl().setSelectedProjIndex(1);
    m_home->ctrl().setSelectedProjIndex(1);
    QCOMPARE(told.count(), 1);
}

void TestFloorFilling::keysOfTheListsAreThose()
{
    m_home->addProject();
    m_home->ctrl().refillFloorInfo("bim");
    QCOMPARE(m_home->ctrl().allMatchedProj().first().toObject().keys(), QStringList("projName"));
    const auto floor = m_home->ctrl().seletedProjFloor().first().toObject();
    QCOMPARE(floor.keys(), QStringList({"floorName", "isMatched", "projGuid", "projName"}));
    QVERIFY(floor["isMatched"].isBool());
}

QTEST_GUILESS_MAIN(TestFloorFilling)
#include "test_floorfilling.moc"
