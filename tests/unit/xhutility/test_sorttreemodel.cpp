// SPDX-License-Identifier: MIT
#include "XHUtility/sorttreemodel.h"
#include "treerows.h"

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QSignalSpy>
#include <QTest>

using XHUTILITY::CSortTreeModel;
using XHUTILITY::CTreeModel;
using FailureMode = QAbstractItemModelTester::FailureReportingMode;

namespace
{

/// A tree and its sorted view, watched by the model tester.
class SortedTree
{
public:
    SortedTree()
    {
        sorted.setSearchKey(QStringLiteral("text1"));
        sorted.setSourceModel(&tree);
        sorted.sort(0, Qt::AscendingOrder);
    }

    explicit SortedTree(const QStringList& names)
        : SortedTree()
    {
        for (const auto& name : names)
            tree.appendRow(ProjectItem(name));
    }

    QStringList found(const QString& text)
    {
        auto* result = sorted.search(text);
        result->freshModel();
        return Outline(*result);
    }

    CTreeModel tree;
    CSortTreeModel sorted;
    QAbstractItemModelTester tester{&sorted, FailureMode::Fatal};
};

/// Two departments of one company with projects below them.
void fillCompany(CTreeModel& tree)
{
    auto* company = DepartmentItem(QStringLiteral("建工集团"));
    tree.appendRow(company);
    auto* roads = DepartmentItem(QStringLiteral("市政部"));
    auto* houses = DepartmentItem(QStringLiteral("房建部"));
    company->appendRows({roads, houses});
    roads->appendRow(ProjectItem(QStringLiteral("跨江大桥")));
    houses->appendRow(ProjectItem(QStringLiteral("一号楼")));
    houses->appendRow(ProjectItem(QStringLiteral("大桥小区")));
}

void rename(QStandardItem* item, const QString& name)
{
    auto row = item->data(CTreeModel::valueRole).toMap();
    row.insert(QStringLiteral("text1"), name);
    item->setData(row, CTreeModel::valueRole);
}

} // namespace

class TestSortTreeModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China)); }

    void sortsInNaturalOrder_data();
    void sortsInNaturalOrder();
    void sortsNaturallyInTheLocaleWithoutAnOrderOfItsOwn();
    void departmentsStandBeforeProjects();
    void equalTextsKeepTheOrderOfTheSource();
    void equalTextAddedLaterStandsLast();
    void renamedItemMovesToItsPlace();
    void anotherSearchKeySortsAnew();
    void modelWithoutATreeShowsNothing();
    void sourceOfAnotherKindIsSortedByItsText();

    void searchFindsPartOfANameWithoutRegardToCase();
    void searchKeepsTheItemsAboveAFoundOne();
    void searchKeepsEverythingBelowAFoundDepartment();
    void searchWithoutAMatchIsEmpty();
    void searchForNothingFindsEverything();
    void searchLooksAtTheSearchKeyOnly();
    void searchTextIsNoPattern();
    void searchGivesOneAndTheSameModelEachTime();
    void searchWaitsForFreshModel();
    void searchResultIsSorted();
    void searchFollowsAddedAndRemovedItems();
    void searchFollowsARenamedDepartment();
    void searchAfterARebuildLooksAtTheNewTree();
    void searchOnARebuiltModelIsAModelOfItsOwn();
    void freshModelResetsTheViewOnce();
    void freshModelOfTheSortedTreeSortsItAnew();
    void searchKeepsTheRulesOfAModel();
    void searchOutlivesTheTree();

    void expandAllAsksToOpenEveryItemWithChildrenFromTheTopDown();
    void expandAllOnAFlatTreeAsksForNothing();
    void expandAllOnASearchOpensWhatTheSearchShows();
    void mapReachesTheScreensThroughTheProxy();
};

void TestSortTreeModel::sortsInNaturalOrder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("sorted");
    const auto s = [](std::initializer_list<const char*> texts) {
        QStringList list;
        for (const auto* text : texts)
            list += QString::fromUtf8(text);
        return list;
    };
    QTest::newRow("numbers by value") << s({"楼10", "楼2", "楼1"}) << s({"楼1", "楼2", "楼10"});
    QTest::newRow("case not regarded") << s({"b", "A", "B", "a"}) << s({"A", "a", "b", "B"});
    QTest::newRow("width not regarded") << s({"ｂ2", "b10", "Ａ"}) << s({"Ａ", "ｂ2", "b10"});
    QTest::newRow("pinyin") << s({"上海", "广州", "北京"}) << s({"北京", "广州", "上海"});
    QTest::newRow("empty first") << s({"a", ""}) << s({"", "a"});
}

void TestSortTreeModel::sortsInNaturalOrder()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, sorted);
    QCOMPARE(Outline(SortedTree(names).sorted), sorted);
}

void TestSortTreeModel::sortsNaturallyInTheLocaleWithoutAnOrderOfItsOwn()
{
    QLocale::setDefault(QLocale::c());
    const QStringList outline =
        Outline(SortedTree({QStringLiteral("楼10"), QStringLiteral("楼2"), QStringLiteral("北")}).sorted);
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
    QCOMPARE(outline, QStringList({QStringLiteral("北"), QStringLiteral("楼2"), QStringLiteral("楼10")}));
}

void TestSortTreeModel::departmentsStandBeforeProjects()
{
    SortedTree sut({QStringLiteral("a")});
    sut.tree.appendRow(DepartmentItem(QStringLiteral("z")));
    QCOMPARE(Outline(sut.sorted), QStringList({QStringLiteral("z"), QStringLiteral("a")}));
}

void TestSortTreeModel::equalTextsKeepTheOrderOfTheSource()
{
    SortedTree sut({QStringLiteral("b"), QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("A")});
    QCOMPARE(Outline(sut.sorted), QStringList({QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("A"),
                                               QStringLiteral("b")}));
    QCOMPARE(sut.sorted.mapToSource(sut.sorted.index(0, 0)).row(), 1);
    QCOMPARE(sut.sorted.mapToSource(sut.sorted.index(2, 0)).row(), 3);
}

void TestSortTreeModel::equalTextAddedLaterStandsLast()
{
    SortedTree sut({QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(sut.sorted.rowCount(), 2);
    sut.tree.appendRow(ProjectItem(QStringLiteral("A")));
    QCOMPARE(Outline(sut.sorted),
             QStringList({QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("b")}));
}

void TestSortTreeModel::renamedItemMovesToItsPlace()
{
    SortedTree sut({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    QCOMPARE(sut.sorted.rowCount(), 3);
    rename(sut.tree.item(0), QStringLiteral("z"));
    QCOMPARE(Outline(sut.sorted),
             QStringList({QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("z")}));
}

void TestSortTreeModel::anotherSearchKeySortsAnew()
{
    SortedTree sut;
    for (const auto* texts : {"a2", "b1"}) {
        auto* item = new QStandardItem;
        item->setData(QVariantMap{{QStringLiteral("text1"), QString::fromLatin1(texts).left(1)},
                                  {QStringLiteral("code"), QString::fromLatin1(texts).right(1)}},
                      CTreeModel::valueRole);
        sut.tree.appendRow(item);
    }
    QCOMPARE(Outline(sut.sorted), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    sut.sorted.setSearchKey(QStringLiteral("code"));
    QCOMPARE(Outline(sut.sorted), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
}

void TestSortTreeModel::modelWithoutATreeShowsNothing()
{
    CSortTreeModel sorted;
    sorted.freshModel();
    sorted.expandAll();
    sorted.search(QStringLiteral("a"))->freshModel();
    QCOMPARE(sorted.rowCount(), 0);
    QCOMPARE(sorted.search(QStringLiteral("a"))->rowCount(), 0);
}

void TestSortTreeModel::sourceOfAnotherKindIsSortedByItsText()
{
    QStandardItemModel names;
    for (const auto* name : {"b", "a"})
        names.appendRow(new QStandardItem(QString::fromLatin1(name)));
    QSortFilterProxyModel noTree;
    noTree.setSourceModel(&names);
    CSortTreeModel sorted;
    sorted.setSourceModel(&noTree);
    sorted.sort(0, Qt::AscendingOrder);
    QCOMPARE(sorted.index(0, 0).data().toString(), QStringLiteral("a"));
}

void TestSortTreeModel::searchFindsPartOfANameWithoutRegardToCase()
{
    SortedTree sut({QStringLiteral("Tower A"), QStringLiteral("Bridge"), QStringLiteral("water TOWER")});
    QCOMPARE(sut.found(QStringLiteral("tower")),
             QStringList({QStringLiteral("Tower A"), QStringLiteral("water TOWER")}));
}

void TestSortTreeModel::searchKeepsTheItemsAboveAFoundOne()
{
    SortedTree sut;
    fillCompany(sut.tree);
    QCOMPARE(
        sut.found(QStringLiteral("一号")),
        QStringList({QStringLiteral("建工集团"), QStringLiteral(".房建部"), QStringLiteral("..一号楼")}));
}

void TestSortTreeModel::searchKeepsEverythingBelowAFoundDepartment()
{
    SortedTree sut;
    fillCompany(sut.tree);
    QCOMPARE(sut.found(QStringLiteral("房建")),
             QStringList({QStringLiteral("建工集团"), QStringLiteral(".房建部"), QStringLiteral("..大桥小区"),
                          QStringLiteral("..一号楼")}));
}

void TestSortTreeModel::searchWithoutAMatchIsEmpty()
{
    SortedTree sut;
    fillCompany(sut.tree);
    QCOMPARE(sut.found(QStringLiteral("机场")), QStringList());
}

void TestSortTreeModel::searchForNothingFindsEverything()
{
    SortedTree sut;
    fillCompany(sut.tree);
    QCOMPARE(sut.found(QString()), Outline(sut.sorted));
}

void TestSortTreeModel::searchLooksAtTheSearchKeyOnly()
{
    SortedTree sut({QStringLiteral("桥")});
    QCOMPARE(sut.found(QStringLiteral("guid")), QStringList());
}

void TestSortTreeModel::searchTextIsNoPattern()
{
    SortedTree sut({QStringLiteral("a.b"), QStringLiteral("axb"), QStringLiteral("[*]")});
    QCOMPARE(sut.found(QStringLiteral("a.b")), QStringList({QStringLiteral("a.b")}));
    QCOMPARE(sut.found(QStringLiteral("[*")), QStringList({QStringLiteral("[*]")}));
}

void TestSortTreeModel::searchGivesOneAndTheSameModelEachTime()
{
    SortedTree sut({QStringLiteral("a")});
    QCOMPARE(sut.sorted.search(QStringLiteral("a")), sut.sorted.search(QStringLiteral("b")));
}

void TestSortTreeModel::searchWaitsForFreshModel()
{
    SortedTree sut({QStringLiteral("a"), QStringLiteral("b")});
    auto* result = sut.sorted.search(QStringLiteral("a"));
    QCOMPARE(result->rowCount(), 0);
    result->freshModel();
    QCOMPARE(result->rowCount(), 1);
}

void TestSortTreeModel::searchResultIsSorted()
{
    SortedTree sut({QStringLiteral("桥10"), QStringLiteral("桥9"), QStringLiteral("路")});
    QCOMPARE(sut.found(QStringLiteral("桥")), QStringList({QStringLiteral("桥9"), QStringLiteral("桥10")}));
}

void TestSortTreeModel::searchFollowsAddedAndRemovedItems()
{
    SortedTree sut({QStringLiteral("桥1")});
    QCOMPARE(sut.found(QStringLiteral("桥")).count(), 1);
    const auto* result = sut.sorted.search(QStringLiteral("桥"));
    sut.tree.appendRow(ProjectItem(QStringLiteral("桥2")));
    sut.tree.appendRow(ProjectItem(QStringLiteral("路")));
    QCOMPARE(Outline(*result), QStringList({QStringLiteral("桥1"), QStringLiteral("桥2")}));
    sut.tree.removeRow(0);
    QCOMPARE(Outline(*result), QStringList({QStringLiteral("桥2")}));
}

void TestSortTreeModel::searchFollowsARenamedDepartment()
{
    SortedTree sut;
    auto* department = DepartmentItem(QStringLiteral("路"));
    department->appendRow(ProjectItem(QStringLiteral("一")));
    department->appendRow(ProjectItem(QStringLiteral("桥二")));
    sut.tree.appendRow(department);
    QCOMPARE(sut.found(QStringLiteral("桥")), QStringList({QStringLiteral("路"), QStringLiteral(".桥二")}));
    const auto* result = sut.sorted.search(QStringLiteral("桥"));
    rename(department, QStringLiteral("桥部"));
    QCOMPARE(Outline(*result),
             QStringList({QStringLiteral("桥部"), QStringLiteral(".桥二"), QStringLiteral(".一")}));
    rename(department, QStringLiteral("路"));
    QCOMPARE(Outline(*result), QStringList({QStringLiteral("路"), QStringLiteral(".桥二")}));
}

void TestSortTreeModel::searchAfterARebuildLooksAtTheNewTree()
{
    SortedTree sut({QStringLiteral("桥1")});
    QCOMPARE(sut.found(QStringLiteral("桥")).count(), 1);
    CTreeModel rebuilt;
    rebuilt.appendRow(ProjectItem(QStringLiteral("桥2")));
    rebuilt.appendRow(ProjectItem(QStringLiteral("桥3")));
    sut.sorted.setSourceModel(&rebuilt);
    QCOMPARE(sut.found(QStringLiteral("桥")), QStringList({QStringLiteral("桥2"), QStringLiteral("桥3")}));
    sut.sorted.setSourceModel(nullptr);
}

void TestSortTreeModel::searchOnARebuiltModelIsAModelOfItsOwn()
{
    SortedTree before({QStringLiteral("桥1")});
    SortedTree after({QStringLiteral("桥2")});
    QVERIFY(before.sorted.search(QStringLiteral("桥")) != after.sorted.search(QStringLiteral("桥")));
}

void TestSortTreeModel::freshModelResetsTheViewOnce()
{
    SortedTree sut({QStringLiteral("a"), QStringLiteral("b")});
    auto* result = sut.sorted.search(QStringLiteral("a"));
    result->freshModel();
    QSignalSpy resets(result, &QAbstractItemModel::modelReset);
    QSignalSpy layouts(result, &QAbstractItemModel::layoutChanged);
    int rowsAtLastReset = -1;
    connect(result, &QAbstractItemModel::modelReset, result, [&] { rowsAtLastReset = result->rowCount(); });
    sut.sorted.search(QStringLiteral(""))->freshModel();
    QCOMPARE(rowsAtLastReset, 2);
    QVERIFY(resets.count() > 0);
    QCOMPARE(layouts.count(), 0);
}

void TestSortTreeModel::freshModelOfTheSortedTreeSortsItAnew()
{
    SortedTree sut({QStringLiteral("b"), QStringLiteral("a")});
    sut.sorted.freshModel();
    QCOMPARE(Outline(sut.sorted), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void TestSortTreeModel::searchKeepsTheRulesOfAModel()
{
    SortedTree sut;
    fillCompany(sut.tree);
    auto* result = sut.sorted.search(QStringLiteral("桥"));
    const QAbstractItemModelTester tester(result, FailureMode::Fatal);
    for (const auto* text : {"桥", "", "一", "没有", "部", "桥"})
        sut.found(QString::fromUtf8(text));
    auto* houses = sut.tree.item(0)->child(1);
    houses->appendRow(ProjectItem(QStringLiteral("新桥")));
    rename(houses->child(0), QStringLiteral("桥头堡"));
    houses->removeRow(1);
    QCOMPARE(Outline(*result).count(), 6);
}

void TestSortTreeModel::searchOutlivesTheTree()
{
    CSortTreeModel sorted;
    sorted.setSearchKey(QStringLiteral("text1"));
    {
        CTreeModel tree;
        tree.appendRow(ProjectItem(QStringLiteral("a")));
        sorted.setSourceModel(&tree);
        sorted.search(QStringLiteral("a"))->freshModel();
        QCOMPARE(sorted.search(QStringLiteral("a"))->rowCount(), 1);
    }
    sorted.search(QStringLiteral("a"))->freshModel();
    QCOMPARE(sorted.search(QStringLiteral("a"))->rowCount(), 0);
}

void TestSortTreeModel::expandAllAsksToOpenEveryItemWithChildrenFromTheTopDown()
{
    SortedTree sut;
    fillCompany(sut.tree);
    QStringList opened;
    connect(&sut.sorted, &CSortTreeModel::expand, &sut.sorted,
            [&](const QModelIndex& index) { opened += NameAt(index); });
    sut.sorted.expandAll();
    QCOMPARE(opened,
             QStringList({QStringLiteral("建工集团"), QStringLiteral("房建部"), QStringLiteral("市政部")}));
}

void TestSortTreeModel::expandAllOnAFlatTreeAsksForNothing()
{
    SortedTree sut({QStringLiteral("a"), QStringLiteral("b")});
    QSignalSpy expand(&sut.sorted, &CSortTreeModel::expand);
    sut.sorted.expandAll();
    QCOMPARE(expand.count(), 0);
}

void TestSortTreeModel::expandAllOnASearchOpensWhatTheSearchShows()
{
    SortedTree sut;
    fillCompany(sut.tree);
    sut.found(QStringLiteral("一号"));
    auto* result = sut.sorted.search(QStringLiteral("一号"));
    QSignalSpy expand(result, &CSortTreeModel::expand);
    result->expandAll();
    QCOMPARE(expand.count(), 2);
}

void TestSortTreeModel::mapReachesTheScreensThroughTheProxy()
{
    SortedTree sut({QStringLiteral("a")});
    QCOMPARE(sut.sorted.roleNames().value(CTreeModel::valueRole), QByteArray("value"));
    QCOMPARE(sut.found(QStringLiteral("a")).count(), 1);
    QCOMPARE(sut.sorted.search(QStringLiteral("a"))->roleNames().value(CTreeModel::valueRole),
             QByteArray("value"));
}

QTEST_GUILESS_MAIN(TestSortTreeModel)
#include "test_sorttreemodel.moc"
