// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/treeindex.h"

#include "XHUtility/treemodel.h"

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

QStandardItem* Walk(QStandardItem* item, const QString& text)
{
    if (TextOfItem(item) == text)
        return item;
    for (int row = 0; row < item->rowCount(); ++row) {
        if (auto* found = Walk(item->child(row), text))
            return found;
    }
    return nullptr;
}

} // namespace

void CTreeIndex::add(QStandardItem* item)
{
    m_items.insert(TextOfItem(item), item);
}

void CTreeIndex::remove(QStandardItem* item)
{
    m_items.remove(TextOfItem(item), item);
    for (int row = 0; row < item->rowCount(); ++row)
        remove(item->child(row));
}

QStandardItem* CTreeIndex::find(const QString& text) const
{
    // The root carries no map, so that to the walk its text is the empty one.
    if (m_root == nullptr || text.isEmpty())
        return m_root;
    const auto first = m_items.constFind(text);
    if (first == m_items.constEnd())
        return nullptr;
    const bool isOnly = std::next(first) == m_items.constEnd() || std::next(first).key() != text;
    return isOnly ? first.value() : Walk(m_root, text);
}

} // namespace TorvoEditor
