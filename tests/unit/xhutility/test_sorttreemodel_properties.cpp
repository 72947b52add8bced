// SPDX-License-Identifier: MIT
#include "XHUtility/sorttreemodel.h"
#include "treerows.h"

#include <rapidcheck.h>

#include <QAbstractItemModelTester>
#include <QLocale>
#include <QTest>

using XHUTILITY::CSortTreeModel;
using XHUTILITY::CTreeModel;

namespace
{

const QString searched = QStringLiteral("桥");

/// One change of the tree: where, what, and the new text.
struct Change {
    enum What { InsertProject, InsertDepartment, Remove, Rename };
    What what;
    unsigned place;
    QString name;
};

void showValue(const Change& change, std::ostream& out)
{
    out << "{" << change.what << ", " << change.place << ", " << change.name.toStdString() << "}";
}

rc::Gen<Change> AnyChange()
{
    const auto what = rc::gen::element(Change::InsertProject, Change::InsertProject, Change::InsertDepartment,
                                       Change::Remove, Change::Rename);
    const auto name = rc::gen::map(rc::gen::element("桥", "路", "桥2", "桥10", "a", "A", ""),
                                   [](const char* text) { return QString::fromUtf8(text); });
    return rc::gen::apply(
        [](Change::What w, unsigned place, const QString& text) {
            return Change{w, place, text};
        },
        what, rc::gen::inRange(0U, 1000U), name);
}

void collect(QStandardItem* item, QList<QStandardItem*>& items)
{
    for (int row = 0; row < item->rowCount(); ++row) {
        items += item->child(row);
        collect(item->child(row), items);
    }
}

void apply(CTreeModel& tree, const Change& change)
{
    QList<QStandardItem*> items;
    collect(tree.invisibleRootItem(), items);
    const bool isInsertion = change.what == Change::InsertProject || change.what == Change::InsertDepartment;
    if (isInsertion) {
        items.prepend(tree.invisibleRootItem());
        auto* parent = items.at(int(change.place) % items.count());
        auto* item =
            change.what == Change::InsertProject ? ProjectItem(change.name) : DepartmentItem(change.name);
        parent->insertRow(int(change.place) % (parent->rowCount() + 1), item);
        return;
    }
    if (items.isEmpty())
        return;
    auto* item = items.at(int(change.place) % items.count());
    if (change.what == Change::Remove) {
        auto* parent = item->parent() != nullptr ? item->parent() : tree.invisibleRootItem();
        parent->removeRow(item->row());
        return;
    }
    auto row = item->data(CTreeModel::valueRole).toMap();
    row.insert(QStringLiteral("text1"), change.name);
    item->setData(row, CTreeModel::valueRole);
}

/// What the search is to show, by the words of its description.
bool isShown(const QModelIndex& index, bool isAboveFound)
{
    if (isAboveFound || NameAt(index).contains(searched))
        return true;
    for (int row = 0; row < index.model()->rowCount(index); ++row) {
        if (isShown(index.model()->index(row, 0, index), false))
            return true;
    }
    return false;
}

QStringList ExpectedFind(const QAbstractItemModel& sorted, const QModelIndex& parent = {},
                         bool isAboveFound = false, const QString& indent = {})
{
    QStringList lines;
    for (int row = 0; row < sorted.rowCount(parent); ++row) {
        const auto index = sorted.index(row, 0, parent);
        if (!isShown(index, isAboveFound))
            continue;
        lines += indent + NameAt(index);
        lines += ExpectedFind(sorted, index, isAboveFound || NameAt(index).contains(searched),
                              indent + QLatin1Char('.'));
    }
    return lines;
}

} // namespace

class TestSortTreeModelProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China)); }

    void orderAfterAnyChangesIsThatOfAModelSortedAtTheEnd();
    void searchAfterAnyChangesIsThatOfASearchDoneAtTheEnd();
};

void TestSortTreeModelProperties::orderAfterAnyChangesIsThatOfAModelSortedAtTheEnd()
{
    const bool holds = rc::check("sorted along the way", [] {
        CTreeModel tree;
        CSortTreeModel sorted;
        sorted.setSearchKey(QStringLiteral("text1"));
        sorted.setSourceModel(&tree);
        sorted.sort(0, Qt::AscendingOrder);
        const QAbstractItemModelTester tester(&sorted, QAbstractItemModelTester::FailureReportingMode::Fatal);
        for (const auto& change : *rc::gen::container<std::vector<Change>>(AnyChange())) {
            apply(tree, change);
            (void)Outline(sorted);
        }
        CSortTreeModel atTheEnd;
        atTheEnd.setSearchKey(QStringLiteral("text1"));
        atTheEnd.setSourceModel(&tree);
        atTheEnd.sort(0, Qt::AscendingOrder);
        RC_ASSERT(Outline(sorted) == Outline(atTheEnd));
    });
    QVERIFY(holds);
}

void TestSortTreeModelProperties::searchAfterAnyChangesIsThatOfASearchDoneAtTheEnd()
{
    const bool holds = rc::check("searched along the way", [] {
        CTreeModel tree;
        CSortTreeModel sorted;
        sorted.setSearchKey(QStringLiteral("text1"));
        sorted.setSourceModel(&tree);
        sorted.sort(0, Qt::AscendingOrder);
        auto* result = sorted.search(searched);
        result->freshModel();
        const QAbstractItemModelTester tester(result, QAbstractItemModelTester::FailureReportingMode::Fatal);
        for (const auto& change : *rc::gen::container<std::vector<Change>>(AnyChange())) {
            apply(tree, change);
            (void)Outline(*result);
        }
        RC_ASSERT(Outline(*result) == ExpectedFind(sorted));
    });
    QVERIFY(holds);
}

QTEST_GUILESS_MAIN(TestSortTreeModelProperties)
#include "test_sorttreemodel_properties.moc"
