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
