// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/treeindex.h"

#include "XHUtility/treemodel.h"

#include <algorithm>

#include <QStandardItem>
#include <QVariantMap>

namespace TorvoEditor
{

namespace
{

QString TextOfItem(const QStandardItem* item)
{
    return item->data(XHUTILITY::CTreeModel::valueRole).toMap().value(QStringLiteral("text2")).toString();
}

/// The rows that lead from the top of the tree down to `item`.
QVector<int> PathOf(const QStandardItem* item)
{
    QVector<int> path;
    for (; item != nullptr; item = item->parent())
        path.append(item->row());
    std::reverse(path.begin(), path.end());
    return path;
}

/// The order of the walk: an item that the other lies below comes first, otherwise the upper one.
bool StandsBefore(const QStandardItem* item, const QStandardItem* other)
{
    return PathOf(item) < PathOf(other);
}

} // namespace

void CTreeIndex::add(QStandardItem* item)
{
    auto& items = m_items[TextOfItem(item)];
    items.insert(std::upper_bound(items.begin(), items.end(), item, StandsBefore), item);
}

void CTreeIndex::remove(QStandardItem* item)
{
    const auto found = m_items.find(TextOfItem(item));
    if (found != m_items.end()) {
        found->erase(std::remove(found->begin(), found->end(), item), found->end());
        if (found->isEmpty())
            m_items.erase(found);
    }
    for (int row = 0; row < item->rowCount(); ++row)
        remove(item->child(row));
}

QStandardItem* CTreeIndex::find(const QString& text) const
{
    // The root carries no map, so that to the walk its text is the empty one.
    if (text.isEmpty())
        return m_root;
    const auto found = m_items.constFind(text);
    return found != m_items.constEnd() ? found->first() : nullptr;
}

} // namespace TorvoEditor
