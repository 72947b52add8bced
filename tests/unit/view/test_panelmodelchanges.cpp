// SPDX-License-Identifier: MIT
#include "panelsuite.h"

#include <QAbstractItemModelTester>
#include <QPointer>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

const QString unmatched = "qrc:/images/state_ic_unmatched.png";

} // namespace

class TestPanelModelChanges : public PanelSuite
{
    Q_OBJECT

private slots:
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
};

void TestPanelModelChanges::addItemInAFlatTree()
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

void TestPanelModelChanges::addItemMindsTheFilter()
{
    QVERIFY(m_view->start());
    m_view->panel().filterTree("BIM");
    StartedView::addLocal("a", "CIM");
    m_view->panel().AddItem("a");
    QVERIFY(!m_view->panel().HasItem("a"));
    QCOMPARE(m_view->panel().sceneProjCount(), 0);
}

void TestPanelModelChanges::addItemOfAnUnknownProjectDoesNothing()
{
    QVERIFY(m_view->start());
    m_view->panel().AddItem("unknown");
    QCOMPARE(guids(), QStringList());
}

void TestPanelModelChanges::addItemGoesUnderItsDepartment()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddItem("a");
    QCOMPARE(rows(), QStringList({"root", "-d1", "--a", "-office", "--d2"}));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModelChanges::addItemOfAnUnknownDepartmentDoesNothing()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "elsewhere");
    m_view->panel().AddItem("a");
    QVERIFY(!m_view->panel().HasItem("a"));
}

void TestPanelModelChanges::addItemInTheOrganisationDoesNotMindTheFilter()
{
    useOrganisation();
    QVERIFY(m_view->start());
    m_view->panel().filterTree("CIM");
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddItem("a");
    QVERIFY(m_view->panel().HasItem("a"));
}

void TestPanelModelChanges::addNeedUpgradeItemInAFlatTree()
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

void TestPanelModelChanges::addNeedUpgradeItemMindsTheFilter()
{
    QVERIFY(m_view->start());
    m_view->panel().filterTree("BIM");
    m_view->panel().AddNeedUpgradeItem("old", "O");
    QVERIFY(!m_view->panel().HasItem("old"));
    m_view->panel().filterTree("CIM");
    m_view->panel().AddNeedUpgradeItem("old", "O");
    QVERIFY(m_view->panel().HasItem("old"));
}

void TestPanelModelChanges::addNeedUpgradeItemInTheOrganisationAddsTheProject()
{
    useOrganisation();
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    setDepartment("a", "d1");
    m_view->panel().AddNeedUpgradeItem("a", "O");
    QCOMPARE(row("a").value("text1").toString(), QString("a"));
    QVERIFY(!row("a").contains("needUpgrade"));
}

void TestPanelModelChanges::updateItemReadsStateAndName()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM", "1", 2).project->SetName(L"new name");
    m_view->panel().UpdateItem("a");
    QCOMPARE(row("a").value("image2").toString(), QString("qrc:/images/modify.png"));
    QCOMPARE(row("a").value("text1").toString(), QString("new name"));
    QVERIFY(!row("a").contains("needUpgrade"));
}

void TestPanelModelChanges::updateItemOfAnOldProjectMarksIt()
{
    m_view->addOnServer("old", 1);
    QVERIFY(m_view->start());
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    m_view->panel().UpdateItem("old");
    QCOMPARE(row("old").value("needUpgrade"), QVariant("true"));
}

void TestPanelModelChanges::updateItemWithoutAnItemDoesNothing()
{
    QVERIFY(m_view->start());
    m_view->panel().UpdateItem("unknown");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestPanelModelChanges::clearStateIconLeavesAnEmptyText()
{
    m_view->addOnServer("a", 1);
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->panel().ClearStateIcon("a");
    m_view->panel().ClearStateIcon("unknown");
    QCOMPARE(row("a").value("image2").toString(), QString());
}

void TestPanelModelChanges::renameItemChangesTheName()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    m_view->panel().RenameItem("a", "new name");
    m_view->panel().RenameItem("unknown", "new name");
    QCOMPARE(row("a").value("text1").toString(), QString("new name"));
}

void TestPanelModelChanges::removeItemTakesItOutAndLowersTheCount()
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

void TestPanelModelChanges::removeItemTakesItFromItsDepartment()
{
    useOrganisation();
    m_view->addOnServer("a", 1, "d1");
    StartedView::addLocal("a", "BIM");
    QVERIFY(m_view->start());
    m_view->panel().RemoveItem("a");
    QCOMPARE(rows(), QStringList({"root", "-d1", "-office", "--d2"}));
}

void TestPanelModelChanges::removeItemWithoutAnItemDoesNothing()
{
    m_view->addOnServer("a", 1);
    QVERIFY(m_view->start());
    m_view->panel().RemoveItem("unknown");
    QCOMPARE(guids(), QStringList("a"));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestPanelModelChanges::refreshReadsTheStatesOfLocalProjects()
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

void TestPanelModelChanges::refreshPassesOverWhatTheFilterHasTaken()
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

QTEST_GUILESS_MAIN(TestPanelModelChanges)
#include "test_panelmodelchanges.moc"
