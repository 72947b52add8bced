// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"

#include <functional>
#include <stdexcept>

#include <QAbstractItemModelTester>
#include <QStandardItem>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

const QString unmatched = "qrc:/images/state_ic_unmatched.png";
const QString matched = "qrc:/images/state_ic_matched.png";

TorvoSDK::SOrgNode Node(const std::wstring& id, bool canSelect, std::vector<TorvoSDK::SOrgNode> children = {})
{
    TorvoSDK::SOrgNode node;
    node.id = id;
    node.name = L"name of " + id;
    node.canSelect = canSelect;
    node.children = std::move(children);
    return node;
}

} // namespace

class TestPanelModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void addItemInAFlatTree();
    void addItemMindsTheFilter();
    void addItemOfAnUnknownProjectDoesNothing();
    void addItemGoesUnderItsDepartment();
    void addItemOfAnUnknownDepartmentDoesNothing();
    void addItemInTheOrganisationDoesNotMindTheFilter();
    void addNeedUpgradeItemInAFlatTree();
    void addNeedUpgradeItemMindsTheFilter();
    void addNeedUpgradeItemInTheOrganisationAddsTheProject();
    void updateItemReadsStateAndName();
    void updateItemOfAnOldProjectMarksIt();
    void updateItemWithoutAnItemDoesNothing();
    void clearStateIconLeavesAnEmptyText();
    void renameItemChangesTheName();
    void removeItemTakesItOutAndLowersTheCount();
    void removeItemTakesItFromItsDepartment();
    void removeItemWithoutAnItemDoesNothing();
    void refreshReadsTheStatesOfLocalProjects();
    void refreshPassesOverWhatTheFilterHasTaken();
    void hasItemLooksEverywhere();
    void modelStandsUpToATester();

private:
    void useOrganisation();
    /// The department of a local project, as its extended attribute says.
    static void setDepartment(const QString& guid, const QString& department);
    [[nodiscard]] const QAbstractItemModel& tree();
    /// Each item as "text1|text2|image1|image2", indented by its depth, in the order that the screens see.
    [[nodiscard]] QStringList rows();
    [[nodiscard]] QStringList guids();
    [[nodiscard]] QVariantMap row(const QString& guid);

    std::unique_ptr<StartedView> m_view;
};

void TestPanelModel::init()
{
    m_view = std::make_unique<StartedView>();
}

void TestPanelModel::cleanup()
{
    m_view.reset();
}

void TestPanelModel::useOrganisation()
{
    m_view->around.host.projects.organisation =
        Node(L"root", false, {Node(L"d1", true), Node(L"office", false, {Node(L"d2", true)})});
}

void TestPanelModel::setDepartment(const QString& guid, const QString& department)
{
    SmartDB::instance().find(guid)->project->SetAttr(
        L"Pa_ExtendedAttr", QString(R"({"deptId": "%1"})").arg(department).toStdWString());
}

const QAbstractItemModel& TestPanelModel::tree()
{
    return *m_view->panel().treeModel().value<XHUTILITY::CSortTreeModel*>();
}

QStringList TestPanelModel::rows()
{
    QStringList rows;
    const std::function<void(const QModelIndex&, const QString&)> walk = [&](const QModelIndex& parent,
                                                                             const QString& indent) {
        for (int i = 0; i < tree().rowCount(parent); ++i) {
            const auto index = tree().index(i, 0, parent);
            const auto map = index.data(XHUTILITY::CTreeModel::valueRole).toMap();
            rows.append(indent + map.value("text2").toString());
            walk(index, indent + "-");
        }
    };
    walk({}, {});
    return rows;
}

QStringList TestPanelModel::guids()
{
    auto found = rows();
    for (auto& text : found)
        text.remove('-');
    return found;
}

QVariantMap TestPanelModel::row(const QString& guid)
{
    const auto found = tree().match(tree().index(0, 0), XHUTILITY::CTreeModel::valueRole, {}, -1,
                                    Qt::MatchContains | Qt::MatchRecursive);
    QVariantMap map;
    const std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
        for (int i = 0; i < tree().rowCount(parent); ++i) {
            const auto index = tree().index(i, 0, parent);
            const auto value = index.data(XHUTILITY::CTreeModel::valueRole).toMap();
            if (map.isEmpty() && value.value("text2") == guid)
                map = value;
            walk(index);
        }
    };
    walk({});
    return map;
}

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
    QVERIFY_EXCEPTION_THROWN(m_view->panel().InitGrouping(), std::out_of_range);
}

void TestPanelModel::addItemInAFlatTree()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "CIM");
    QSignalSpy scenes(&m_view->panel(), &CPanelModel::onSceneProjCountChanged);
    QSignalSpy buildings(&m_view->panel(), &CPanelModel::onBimProjCountChanged);
    m_view->panel().AddItem("a");
    QCOMPARE(row("a"), (QVariantMap{{"text1", "a"},
                                    {"text2", "a"},
                                    {"image1", "qrc:/images/bar_ic_scene.png"},
                                    {"image2", unmatched}}));
    QCOMPARE(m_view->panel().sceneProjCount(), 1);
    QCOMPARE(scenes.count(), 1);
    QCOMPARE(buildings.count(), 0);
}

void TestPanelModel::addItemMindsTheFilter()
{
    QVERIFY(m_view->start());
    m_view->panel().filterTree("BIM");
    StartedView::addLocal("a", "CIM");
    m_view->panel().AddItem("a");
    QVERIFY(!m_view->panel().HasItem("a"));
    QCOMPARE(m_view->panel().sceneProjCount(), 0);
}

void TestPanelModel::addItemOfAnUnknownProjectDoesNothing()
{
    QVERIFY(m_view->start());
    m_view->panel().AddItem("unknown");
    QCOMPARE(guids(), QStringList());
}

void TestPanelModel::addItemGoesUnderItsDepartment()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddItem("a");
    QCOMPARE(rows(), QStringList({"root", "-d1", "--a", "-office", "--d2"}));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModel::addItemOfAnUnknownDepartmentDoesNothing()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "elsewhere");
    m_view->panel().AddItem("a");
    QVERIFY(!m_view->panel().HasItem("a"));
}

void TestPanelModel::addItemInTheOrganisationDoesNotMindTheFilter()
{
    useOrganisation();
    QVERIFY(m_view->start());
    m_view->panel().filterTree("CIM");
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddItem("a");
    QVERIFY(m_view->panel().HasItem("a"));
}

void TestPanelModel::addNeedUpgradeItemInAFlatTree()
{
    QVERIFY(m_view->start());
    QSignalSpy scenes(&m_view->panel(), &CPanelModel::onSceneProjCountChanged);
    m_view->panel().AddNeedUpgradeItem("old", "O");
    QCOMPARE(row("old"), (QVariantMap{{"text1", "O"},
                                      {"text2", "old"},
                                      {"image1", "qrc:/images/bar_ic_scene.png"},
                                      {"image2", unmatched},
                                      {"needUpgrade", true}}));
    QCOMPARE(m_view->panel().sceneProjCount(), 1);
    QCOMPARE(scenes.count(), 1);
}

void TestPanelModel::addNeedUpgradeItemMindsTheFilter()
{
    QVERIFY(m_view->start());
    m_view->panel().filterTree("BIM");
    m_view->panel().AddNeedUpgradeItem("old", "O");
    QVERIFY(!m_view->panel().HasItem("old"));
    m_view->panel().filterTree("CIM");
    m_view->panel().AddNeedUpgradeItem("old", "O");
    QVERIFY(m_view->panel().HasItem("old"));
}

void TestPanelModel::addNeedUpgradeItemInTheOrganisationAddsTheProject()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddNeedUpgradeItem("a", "O");
    QCOMPARE(row("a").value("text1").toString(), QString("a"));
    QVERIFY(!row("a").contains("needUpgrade"));
}

void TestPanelModel::updateItemReadsStateAndName()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM", "1", 2).project->SetName(L"new name");
    m_view->panel().UpdateItem("a");
    QCOMPARE(row("a").value("image2").toString(), QString("qrc:/images/modify.png"));
    QCOMPARE(row("a").value("text1").toString(), QString("new name"));
    QVERIFY(!row("a").contains("needUpgrade"));
}

void TestPanelModel::updateItemOfAnOldProjectMarksIt()
{
    m_view->addOnServer("old", 1);
    QVERIFY(m_view->start());
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    m_view->panel().UpdateItem("old");
    QCOMPARE(row("old").value("needUpgrade"), QVariant("true"));
}

void TestPanelModel::updateItemWithoutAnItemDoesNothing()
{
    QVERIFY(m_view->start());
    m_view->panel().UpdateItem("unknown");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestPanelModel::clearStateIconLeavesAnEmptyText()
{
    m_view->addOnServer("a", 1);
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().ClearStateIcon("a");
    m_view->panel().ClearStateIcon("unknown");
    QCOMPARE(row("a").value("image2").toString(), QString());
}

void TestPanelModel::renameItemChangesTheName()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    m_view->panel().RenameItem("a", "new name");
    m_view->panel().RenameItem("unknown", "new name");
    QCOMPARE(row("a").value("text1").toString(), QString("new name"));
}

void TestPanelModel::removeItemTakesItOutAndLowersTheCount()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    m_view->panel().AddItem("a");
    QSignalSpy buildings(&m_view->panel(), &CPanelModel::onBimProjCountChanged);
    m_view->panel().RemoveItem("a");
    QVERIFY(!m_view->panel().HasItem("a"));
    QCOMPARE(m_view->panel().bimProjCount(), 0);
    QCOMPARE(buildings.count(), 1);
}

void TestPanelModel::removeItemTakesItFromItsDepartment()
{
    useOrganisation();
    m_view->addOnServer("a", 1, "d1");
    StartedView::addLocal("a", "BIM");
    QVERIFY(m_view->start());
    m_view->panel().RemoveItem("a");
    QCOMPARE(rows(), QStringList({"root", "-d1", "-office", "--d2"}));
}

void TestPanelModel::removeItemWithoutAnItemDoesNothing()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    m_view->panel().RemoveItem("unknown");
    QCOMPARE(guids(), QStringList("a"));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModel::refreshReadsTheStatesOfLocalProjects()
{
    m_view->addOnServer("a", 1);
    m_view->addOnServer("b", 1);
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    SmartDB::instance().find("a")->state = 4;
    m_view->panel().RefreshStateIcons();
    QCOMPARE(row("a").value("image2").toString(), QString("qrc:/images/conflict.png"));
    QCOMPARE(row("b").value("image2").toString(), QString());
}

void TestPanelModel::refreshPassesOverWhatTheFilterHasTaken()
{
    StartedView::addLocal("a", "BIM");
    StartedView::addLocal("b", "CIM");
    StartedView::writeLocalList({"a", "b"});
    QVERIFY(m_view->start());
    m_view->panel().filterTree("CIM");
    SmartDB::instance().find("b")->state = 3;
    m_view->panel().RefreshStateIcons();
    QCOMPARE(guids(), QStringList("b"));
    QCOMPARE(row("b").value("image2").toString(), QString("qrc:/images/update.png"));
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
