// SPDX-License-Identifier: MIT
#include "tabs/tab.h"

#include "fakes/startedhome.h"

#include <QSignalSpy>
#include <QTest>

using TorvoEditor::CTab;

class TestTab : public QObject
{
    Q_OBJECT

private slots:
    void startsWithTheHomeTabAlone();
    void addTabKeepsTheOrderOfOpening();
    void addTabTwiceGivesOneEntryAndOneSignal();
    void addTabMindsTheCase();
    void removeTabLeavesNoGap();
    void removeTabOfAnUnknownNameIsSilent();
    void setCurrentTabTellsOnlyAChange();
    void currentTabMayHaveLeftTheList();
    void idConvertToNameGivesTheProjectsName();
    void idConvertToNameOfAMissingProjectIsEmpty();
};

void TestTab::startsWithTheHomeTabAlone()
{
    const CTab tab;
    QCOMPARE(tab.tabList(), QStringList());
    QCOMPARE(tab.currentTab(), QString("main"));
}

void TestTab::addTabKeepsTheOrderOfOpening()
{
    CTab tab;
    tab.addTab("c");
    tab.addTab("a");
    tab.addTab("b");
    QCOMPARE(tab.property("tabList").toStringList(), QStringList({"c", "a", "b"}));
}

void TestTab::addTabTwiceGivesOneEntryAndOneSignal()
{
    CTab tab;
    QSignalSpy changed(&tab, &CTab::tabListChanged);
    tab.addTab("a");
    tab.addTab("a");
    QCOMPARE(tab.tabList(), QStringList("a"));
    QCOMPARE(changed.count(), 1);
}

void TestTab::addTabMindsTheCase()
{
    CTab tab;
    tab.addTab("a");
    tab.addTab("A");
    QCOMPARE(tab.tabList(), QStringList({"a", "A"}));
}

void TestTab::removeTabLeavesNoGap()
{
    CTab tab;
    for (const char* name : {"a", "b", "c"})
        tab.addTab(name);
    QSignalSpy changed(&tab, &CTab::tabListChanged);
    tab.removeTab("b");
    QCOMPARE(tab.tabList(), QStringList({"a", "c"}));
    QCOMPARE(changed.count(), 1);
}

void TestTab::removeTabOfAnUnknownNameIsSilent()
{
    CTab tab;
    tab.addTab("a");
    QSignalSpy changed(&tab, &CTab::tabListChanged);
    tab.removeTab("b");
    tab.removeTab("main");
    QCOMPARE(tab.tabList(), QStringList("a"));
    QCOMPARE(changed.count(), 0);
}

void TestTab::setCurrentTabTellsOnlyAChange()
{
    CTab tab;
    QSignalSpy changed(&tab, &CTab::currentTabChanged);
    tab.setCurrentTab("main");
    QCOMPARE(changed.count(), 0);
    tab.setCurrentTab("a");
    tab.setCurrentTab("a");
    QCOMPARE(changed.count(), 1);
    QCOMPARE(tab.property("currentTab").toString(), QString("a"));
}

void TestTab::currentTabMayHaveLeftTheList()
{
    CTab tab;
    tab.addTab("a");
    tab.setCurrentTab("a");
    QSignalSpy changed(&tab, &CTab::currentTabChanged);
    tab.removeTab("a");
    QCOMPARE(tab.currentTab(), QString("a"));
    QCOMPARE(changed.count(), 0);
}

void TestTab::idConvertToNameGivesTheProjectsName()
{
    const Fakes::Surroundings surroundings;
    QVERIFY(TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()));
    Fakes::SmartDB::instance().add("project-1", QString::fromUtf8("东风大厦"), "BIM");
    QCOMPARE(CTab().idConvertToName("project-1"), QString::fromUtf8("东风大厦"));
}

void TestTab::idConvertToNameOfAMissingProjectIsEmpty()
{
    const Fakes::Surroundings surroundings;
    QVERIFY(TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()));
    QCOMPARE(CTab().idConvertToName("project-1"), QString());
}

QTEST_MAIN(TestTab)
#include "test_tab.moc"
