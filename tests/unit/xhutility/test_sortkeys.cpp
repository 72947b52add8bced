// SPDX-License-Identifier: MIT
#include "sortkeys.h"
#include "treerows.h"

#include <QTest>

using XHUTILITY::CSortKeys;
using XHUTILITY::CTreeModel;

class TestSortKeys : public QObject
{
    Q_OBJECT

private slots:
    void keyIsMadeOnceForAnItem();
    void keyIsMadeAnewWhenTheItemChanges();
    void keyOfARemovedItemIsDropped();
    void keysBelowARemovedItemAreDropped();
    void noKeyOutlivesAReset();
    void itemPutInThePlaceOfAnotherHasAKeyOfItsOwn();
    void keysBelowAnItemThatAnotherTakesThePlaceOfAreDropped();
    void keysFollowTheirItemsWhenOthersAreInsertedAbove();
    void keysFollowTheirItemsWhenOthersAreRemovedAbove();
    void keysFollowTheirItemsWhenTheModelItselfIsSorted();
    void itemsOfTwoDepartmentsHaveKeysOfTheirOwn();
    void anotherTextKeyGivesOtherKeys();
    void knowsWhenItsModelIsGone();
};

void TestSortKeys::keyIsMadeOnceForAnItem()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("桥")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    const auto* first = &keys.of(model.index(0, 0));
    const auto* second = &keys.of(model.index(0, 0));
    QCOMPARE(first, second);
    QCOMPARE(keys.count(), std::size_t(1));
}

void TestSortKeys::keyIsMadeAnewWhenTheItemChanges()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("a")));
    model.appendRow(ProjectItem(QStringLiteral("b")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    QVERIFY(keys.of(model.index(0, 0)).text < keys.of(model.index(1, 0)).text);
    model.setData(model.index(0, 0), QVariantMap{{QStringLiteral("text1"), QStringLiteral("c")}},
                  CTreeModel::valueRole);
    QVERIFY(keys.of(model.index(1, 0)).text < keys.of(model.index(0, 0)).text);
}

void TestSortKeys::keyOfARemovedItemIsDropped()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("a")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0));
    model.removeRow(0);
    QCOMPARE(keys.count(), std::size_t(0));
}

void TestSortKeys::keysBelowARemovedItemAreDropped()
{
    CTreeModel model;
    auto* department = DepartmentItem(QStringLiteral("市政"));
    model.appendRow(department);
    department->appendRow(ProjectItem(QStringLiteral("桥")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0, model.index(0, 0)));
    model.removeRow(0);
    QCOMPARE(keys.count(), std::size_t(0));
}

void TestSortKeys::noKeyOutlivesAReset()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("a")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0));
    model.clear();
    QCOMPARE(keys.count(), std::size_t(0));
}

void TestSortKeys::itemPutInThePlaceOfAnotherHasAKeyOfItsOwn()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("b")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0));
    model.setItem(0, DepartmentItem(QStringLiteral("a")));
    QVERIFY(keys.of(model.index(0, 0)).isDepartment);
}

void TestSortKeys::keysBelowAnItemThatAnotherTakesThePlaceOfAreDropped()
{
    CTreeModel model;
    auto* department = DepartmentItem(QStringLiteral("市政"));
    department->appendRow(ProjectItem(QStringLiteral("桥")));
    model.appendRow(department);
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0, model.index(0, 0)));
    model.setItem(0, ProjectItem(QStringLiteral("a")));
    QCOMPARE(keys.count(), std::size_t(0));
}

void TestSortKeys::keysFollowTheirItemsWhenOthersAreInsertedAbove()
{
    CTreeModel model;
    model.appendRow(ProjectItem(QStringLiteral("m")));
    model.appendRow(DepartmentItem(QStringLiteral("n")));
    CSortKeys keys(&model, QStringLiteral("text1"));
    (void)keys.of(model.index(0, 0));
    (void)keys.of(model.index(1, 0));
    model.insertRow(1, ProjectItem(QStringLiteral("z")));
    QVERIFY(keys.of(model.index(0, 0)).text < keys.of(model.index(1, 0)).text);
    QVERIFY(keys.of(model.index(2, 0)).text < keys.of(model.index(1, 0)).text);
    QVERIFY(keys.of(model.index(2, 0)).isDepartment);
}

void TestSortKeys::keysFollowTheirItemsWhenOthersAreRemovedAbove()
{
    CTreeModel model;
    for (const auto* name : {"c", "b", "a"})
        model.appendRow(ProjectItem(QString::fromLatin1(name)));
    CSortKeys keys(&model, QStringLiteral("text1"));
    for (int row = 0; row < 3; ++row)
        (void)keys.of(model.index(row, 0));
    model.removeRow(1);
    QCOMPARE(keys.count(), std::size_t(2));
    QVERIFY(keys.of(model.index(1, 0)).text < keys.of(model.index(0, 0)).text);
}

void TestSortKeys::keysFollowTheirItemsWhenTheModelItselfIsSorted()
{
    CTreeModel model;
    for (const auto* name : {"b", "a"}) {
        auto* item = ProjectItem(QString::fromLatin1(name));
        item->setText(QString::fromLatin1(name));
        model.appendRow(item);
    }
    CSortKeys keys(&model, QStringLiteral("text1"));
    QVERIFY(keys.of(model.index(1, 0)).text < keys.of(model.index(0, 0)).text);
    model.sort(0);
    QVERIFY(keys.of(model.index(0, 0)).text < keys.of(model.index(1, 0)).text);
}

void TestSortKeys::itemsOfTwoDepartmentsHaveKeysOfTheirOwn()
{
    CTreeModel model;
    for (const auto* name : {"a", "b"}) {
        auto* department = DepartmentItem(QStringLiteral("市政"));
        department->appendRow(ProjectItem(QString::fromLatin1(name)));
        model.appendRow(department);
    }
    CSortKeys keys(&model, QStringLiteral("text1"));
    const auto& first = keys.of(model.index(0, 0, model.index(0, 0)));
    const auto& second = keys.of(model.index(0, 0, model.index(1, 0)));
    QVERIFY(first.text < second.text);
    QCOMPARE(keys.count(), std::size_t(2));
}

void TestSortKeys::anotherTextKeyGivesOtherKeys()
{
    CTreeModel model;
    for (const auto* texts : {"a2", "b1"}) {
        auto* item = new QStandardItem;
        item->setData(QVariantMap{{QStringLiteral("text1"), QString::fromLatin1(texts).left(1)},
                                  {QStringLiteral("code"), QString::fromLatin1(texts).right(1)}},
                      CTreeModel::valueRole);
        model.appendRow(item);
    }
    CSortKeys keys(&model, QStringLiteral("text1"));
    QVERIFY(keys.of(model.index(0, 0)).text < keys.of(model.index(1, 0)).text);
    keys.setTextKey(QStringLiteral("code"));
    QVERIFY(keys.of(model.index(1, 0)).text < keys.of(model.index(0, 0)).text);
}

void TestSortKeys::knowsWhenItsModelIsGone()
{
    auto model = std::make_unique<CTreeModel>();
    const CSortKeys keys(model.get(), QStringLiteral("text1"));
    QCOMPARE(keys.model(), model.get());
    model.reset();
    QVERIFY(keys.model() == nullptr);
}

QTEST_GUILESS_MAIN(TestSortKeys)
#include "test_sortkeys.moc"
