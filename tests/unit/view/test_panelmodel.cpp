// SPDX-License-Identifier: MIT
#include "panelsuite.h"

#include <stdexcept>

#include <QAbstractItemModelTester>
#include <QPointer>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

const QString unmatched = "qrc:/images/state_ic_unmatched.png";
const QString matched = "qrc:/images/state_ic_matched.png";

} // namespace

class TestPanelModel : public PanelSuite
{
    Q_OBJECT

private slots:
    void emptyOrganisationGivesAFlatTree();
    void projectOnBothSidesHasOneItemWithItsState();
    void localProjectIsAppendedUnmatched();
    void localProjectThatCannotBeOpenedHasNoItem();
    void nameOfAProjectHereWinsOverTheServers();
    void demonstrationProjectCarriesItsMark();
    void countsAreThoseOfAllProjects();
    void filterLeavesOneTypeAndTheCounts_data();
    void filterLeavesOneTypeAndTheCounts();
    void filterOfTheSameTypeDoesNotRebuild();
    void rebuildGivesNewModelsAndTellsInOrder();
    void treeIsSorted();
    void organisationPutsProjectsUnderTheirDepartment();
    void departmentsStandBeforeProjectsInTheModel();
    void departmentThatCannotBeSelectedHasNoProjects();
    void localProjectGoesUnderItsDepartment();
    void localProjectOfAnotherDepartmentIsNotShown();
    void recordWithoutADepartmentRaisesAnError();
    void hasItemLooksEverywhere();
    void modelStandsUpToATester();
};

void TestPanelModel::emptyOrganisationGivesAFlatTree()
{
    m_view->addOnServer("b", 1);
    m_view->addOnServer("a", 0);
    QVERIFY(m_view->start());
    QCOMPARE(rows(), QStringList({"a", "b"}));
    QCOMPARE(row("a"), (QVariantMap{{"text1", "a"},
                                    {"text2", "a"},
                                    {"image1", "qrc:/images/bar_ic_scene.png"},
                                    {"image2", ""},
                                    {"isDemo", false}}));
    QCOMPARE(row("b").value("image1").toString(), QString("qrc:/images/bar_ic_bim.png"));
}

void TestPanelModel::projectOnBothSidesHasOneItemWithItsState()
{
    m_view->addOnServer("a", 1);
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    QCOMPARE(guids(), QStringList("a"));
    QCOMPARE(row("a").value("image2").toString(), matched);
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModel::localProjectIsAppendedUnmatched()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QCOMPARE(row("a"), (QVariantMap{{"text1", "a"},
                                    {"text2", "a"},
                                    {"image1", "qrc:/images/bar_ic_bim.png"},
                                    {"image2", unmatched}}));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModel::localProjectThatCannotBeOpenedHasNoItem()
{
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QCOMPARE(guids(), QStringList());
}

void TestPanelModel::nameOfAProjectHereWinsOverTheServers()
{
    m_view->addOnServer("a", 1).name = L"server's name";
    StartedView::addLocal("a", "BIM").project->SetName(L"name here");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QCOMPARE(row("a").value("text1").toString(), QString("name here"));
}

void TestPanelModel::demonstrationProjectCarriesItsMark()
{
    m_view->addOnServer("demo", 1).isDemo = true;
    QVERIFY(m_view->start());
    QCOMPARE(row("demo").value("isDemo"), QVariant(true));
}

void TestPanelModel::countsAreThoseOfAllProjects()
{
    m_view->addOnServer("a", 0);
    m_view->addOnServer("b", 1);
    m_view->addOnServer("c", 1);
    StartedView::addLocal("d", "CIM");
    StartedView::addLocal("b", "BIM");
    StartedView::writeLocalList({"d", "b"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QCOMPARE(m_view->panel().property("sceneProjCount").toInt(), 2);
    QCOMPARE(m_view->panel().property("bimProjCount").toInt(), 2);
}

void TestPanelModel::filterLeavesOneTypeAndTheCounts_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("buildings") << "BIM" << QStringList({"b", "local b"});
    QTest::newRow("scenes") << "CIM" << QStringList({"a", "local a"});
    QTest::newRow("another word shows none") << "X" << QStringList();
}

void TestPanelModel::filterLeavesOneTypeAndTheCounts()
{
    QFETCH(QString, type);
    m_view->addOnServer("a", 0);
    m_view->addOnServer("b", 1);
    StartedView::addLocal("local a", "CIM");
    StartedView::addLocal("local b", "BIM");
    StartedView::writeLocalList({"local a", "local b"});
    QVERIFY(m_view->start());
    m_view->panel().filterTree(type);
    QTEST(guids(), "shown");
    QCOMPARE(m_view->panel().bimProjCount(), 2);
    QCOMPARE(m_view->panel().sceneProjCount(), 2);
    // Without an item there is nothing to be brought up to date.
    m_view->panel().UpdateItem("a");
    QTEST(guids(), "shown");
}

void TestPanelModel::filterOfTheSameTypeDoesNotRebuild()
{
    QVERIFY(m_view->start());
    QSignalSpy rebuilt(&m_view->panel(), &CPanelModel::onTreeModelChanged);
    m_view->panel().filterTree("");
    QCOMPARE(rebuilt.count(), 0);
    m_view->panel().filterTree("BIM");
    m_view->panel().filterTree("BIM");
    QCOMPARE(rebuilt.count(), 1);
}

void TestPanelModel::rebuildGivesNewModelsAndTellsInOrder()
{
    QVERIFY(m_view->start());
    auto& panel = m_view->panel();
    QStringList told;
    connect(&panel, &CPanelModel::onTreeModelChanged, this, [&] { told.append("tree"); });
    connect(&panel, &CPanelModel::onBimProjCountChanged, this, [&] { told.append("bim"); });
    connect(&panel, &CPanelModel::onSceneProjCountChanged, this, [&] { told.append("scene"); });
    const QPointer<XHUTILITY::CSortTreeModel> old = panel.treeModel().value<XHUTILITY::CSortTreeModel*>();
    panel.RebuildTree();
    QCOMPARE(told, QStringList({"tree", "bim", "scene"}));
    QVERIFY(panel.treeModel().value<XHUTILITY::CSortTreeModel*>() != old);
    QVERIFY2(!old.isNull(), "the screens may still hold it");
    QCOMPARE(old->rowCount(), 0);
}

void TestPanelModel::treeIsSorted()
{
    for (const char* name : {"10", "2", "1"})
        m_view->addOnServer(name, 1);
    QVERIFY(m_view->start());
    QCOMPARE(guids(), QStringList({"1", "2", "10"}));
    StartedView::addLocal("3", "BIM");
    m_view->panel().AddItem("3");
    QCOMPARE(guids(), QStringList({"1", "2", "3", "10"}));
}

void TestPanelModel::organisationPutsProjectsUnderTheirDepartment()
{
    useOrganisation();
    m_view->addOnServer("a", 1, "d1");
    m_view->addOnServer("b", 0, "d2");
    m_view->addOnServer("c", 1, "d1");
    QVERIFY(m_view->start());
    QCOMPARE(rows(), QStringList({"root", "-d1", "--a", "--c", "-office", "--d2", "---b"}));
    QCOMPARE(row("d1").value("type").toString(), QString("orgType"));
    QCOMPARE(row("d1").value("text1").toString(), QString("name of d1"));
    QCOMPARE(m_view->panel().bimProjCount(), 2);
    QCOMPARE(m_view->panel().sceneProjCount(), 1);
}

void TestPanelModel::departmentsStandBeforeProjectsInTheModel()
{
    m_view->around.host.projects.organisation = Node(L"root", true, {Node(L"z", true)});
    m_view->addOnServer("a", 1, "root");
    QVERIFY(m_view->start());
    auto* sorted = m_view->panel().treeModel().value<XHUTILITY::CSortTreeModel*>();
    const auto* source = sorted->sourceModel();
    const auto root = source->index(0, 0);
    QCOMPARE(
        source->index(0, 0, root).data(XHUTILITY::CTreeModel::valueRole).toMap().value("text2").toString(),
        QString("z"));
    QCOMPARE(
        source->index(1, 0, root).data(XHUTILITY::CTreeModel::valueRole).toMap().value("text2").toString(),
        QString("a"));
}

void TestPanelModel::departmentThatCannotBeSelectedHasNoProjects()
{
    useOrganisation();
    m_view->addOnServer("a", 1, "office");
    QVERIFY(m_view->start());
    QVERIFY(!guids().contains("a"));
    QCOMPARE(m_view->panel().bimProjCount(), 0);
}

void TestPanelModel::localProjectGoesUnderItsDepartment()
{
    useOrganisation();
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d2");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QCOMPARE(rows(), QStringList({"root", "-d1", "-office", "--d2", "---a"}));
    QCOMPARE(row("a").value("image2").toString(), unmatched);
}

void TestPanelModel::localProjectOfAnotherDepartmentIsNotShown()
{
    useOrganisation();
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().RebuildTree();
    QVERIFY(!guids().contains("a"));
}

void TestPanelModel::recordWithoutADepartmentRaisesAnError()
{
    QVERIFY(m_view->start());
    useOrganisation();
    m_view->addOnServer("a", 1).customMap.clear();
    CHomeApp::instance().GetMgr<CProjectMgr>()->Init();
    try {
        m_view->panel().InitGrouping();
        QFAIL("a record without a department has been taken");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid map<K, T> key");
    }
}

void TestPanelModel::hasItemLooksEverywhere()
{
    useOrganisation();
    m_view->addOnServer("b", 0, "d2");
    QVERIFY(m_view->start());
    QVERIFY(m_view->panel().HasItem("b"));
    QVERIFY(m_view->panel().HasItem("d2"));
    QVERIFY(!m_view->panel().HasItem("B"));
}

void TestPanelModel::modelStandsUpToATester()
{
    useOrganisation();
    m_view->addOnServer("a", 1, "d1");
    QVERIFY(m_view->start());
    const QAbstractItemModelTester tester(m_view->panel().treeModel().value<XHUTILITY::CSortTreeModel*>(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    StartedView::addLocal("b", "BIM");
    setDepartment("b", "d1");
    m_view->panel().AddItem("b");
    m_view->panel().RenameItem("a", "z");
    m_view->panel().UpdateItem("b");
    m_view->panel().RemoveItem("a");
    QCOMPARE(rows(), QStringList({"root", "-d1", "--b", "-office", "--d2"}));
}

QTEST_GUILESS_MAIN(TestPanelModel)
#include "test_panelmodel.moc"
