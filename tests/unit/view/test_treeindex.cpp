// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/treeindex.h"

#include "XHUtility/treemodel.h"

#include <memory>
#include <vector>

#include <QStandardItem>
#include <QTest>
#include <QVariantMap>

#include <rapidcheck.h>

using TorvoEditor::CTreeIndex;

namespace
{

QStandardItem* NewItem(const QString& text)
{
    auto* item = new QStandardItem;
    item->setData(QVariantMap{{"text2", text}}, XHUTILITY::CTreeModel::valueRole);
    return item;
}

QString TextOf(const QStandardItem* item)
{
    return item->data(XHUTILITY::CTreeModel::valueRole).toMap().value("text2").toString();
}

/// The walk whose answers the index has to give.
QStandardItem* Walk(QStandardItem* item, const QString& text)
{
    if (TextOf(item) == text)
        return item;
    for (int row = 0; row < item->rowCount(); ++row) {
        if (auto* found = Walk(item->child(row), text))
            return found;
    }
    return nullptr;
}

void Collect(QStandardItem* item, std::vector<QStandardItem*>& items)
{
    items.push_back(item);
    for (int row = 0; row < item->rowCount(); ++row)
        Collect(item->child(row), items);
}

} // namespace

class TestTreeIndex : public QObject
{
    Q_OBJECT

private slots:
    void answersAreThoseOfTheWalk();
    void emptyTextIsTheRoots();
    void unknownTextIsNull();
};

void TestTreeIndex::answersAreThoseOfTheWalk()
{
    QVERIFY(rc::check([] {
        const auto root = std::make_unique<QStandardItem>();
        CTreeIndex index(root.get());
        const auto steps = *rc::gen::container<std::vector<std::pair<int, int>>>(
            rc::gen::pair(rc::gen::inRange(0, 1000), rc::gen::inRange(0, 8)));
        for (const auto& [place, text] : steps) {
            std::vector<QStandardItem*> items;
            Collect(root.get(), items);
            auto* chosen = items[static_cast<std::size_t>(place) % items.size()];
            // One in eight steps takes an item away with everything below it.
            if (text == 7 && chosen != root.get()) {
                index.remove(chosen);
                auto* parent = chosen->parent() != nullptr ? chosen->parent() : root.get();
                parent->removeRow(chosen->row());
            } else {
                auto* item = NewItem(QString::number(text));
                chosen->appendRow(item);
                index.add(item);
            }
            for (int wanted = 0; wanted < 9; ++wanted)
                RC_ASSERT(index.find(QString::number(wanted)) == Walk(root.get(), QString::number(wanted)));
        }
    }));
}

void TestTreeIndex::emptyTextIsTheRoots()
{
    QStandardItem root;
    CTreeIndex index(&root);
    auto* item = NewItem({});
    root.appendRow(item);
    index.add(item);
    QCOMPARE(index.find({}), &root);
}

void TestTreeIndex::unknownTextIsNull()
{
    QStandardItem root;
    const CTreeIndex index(&root);
    QCOMPARE(index.find("a"), nullptr);
}

QTEST_APPLESS_MAIN(TestTreeIndex)
#include "test_treeindex.moc"
