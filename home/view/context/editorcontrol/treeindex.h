// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QVarLengthArray>

class QStandardItem;

namespace TorvoEditor
{

/// Finds the item of a tree by the text that stands under "text2" in its map, without walking the tree.
///
/// Its answer is that of a depth-first walk from the root that tests an item before its children and ends
/// with the first hit. The texts of items in the tree and their order among each other must not change.
class CTreeIndex
{
public:
    /// Looks below `root` from now on, which has no items yet.
    explicit CTreeIndex(QStandardItem* root = nullptr)
        : m_root(root)
    {
    }

    /// So many items are about to come.
    void reserve(int count) { m_items.reserve(count); }

    /// The items below the root have moved, in their order, to the place below `root`.
    void setRoot(QStandardItem* root) { m_root = root; }

    /// The item has been put into the tree.
    void add(QStandardItem* item);

    /// The item is about to leave the tree, with everything below it.
    void remove(QStandardItem* item);

    /// The first item with this text, or null.
    [[nodiscard]] QStandardItem* find(const QString& text) const;

private:
    /// Nearly always one item, for which there is room without asking for memory.
    using Items = QVarLengthArray<QStandardItem*, 1>;

    QStandardItem* m_root;
    QHash<QString, Items> m_items; ///< by text, in the order of the walk
};

} // namespace TorvoEditor
