// SPDX-License-Identifier: MIT
#pragma once

#include <QMultiHash>
#include <QString>

class QStandardItem;

namespace TorvoEditor
{

/// Finds the item of a tree by the text that stands under "text2" in its map, without walking the tree.
///
/// Its answer is that of a depth-first walk from the root that tests an item before its children and ends with the
/// first hit. Where one text stands under several items, only that text costs a walk.
class CTreeIndex
{
public:
    /// Looks below `root` from now on, which has no items yet.
    explicit CTreeIndex(QStandardItem* root = nullptr) : m_root(root) {}

    /// The item has been put into the tree.
    void add(QStandardItem* item);

    /// The item is about to leave the tree, with everything below it.
    void remove(QStandardItem* item);

    /// The first item with this text, or null.
    [[nodiscard]] QStandardItem* find(const QString& text) const;

private:
    QStandardItem* m_root;
    QMultiHash<QString, QStandardItem*> m_items;
};

} // namespace TorvoEditor
