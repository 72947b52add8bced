// SPDX-License-Identifier: MIT
#include "searchhits.h"

#include "XHUtility/treemodel.h"

#include <QVariantMap>

namespace XHUTILITY
{

void CSearchHits::search(const QStandardItemModel* model, const QString& textKey, const QString& text)
{
    m_model = model;
    m_textKey = textKey;
    m_text = text;
    searchAgain();
}

void CSearchHits::searchAgain()
{
    m_matches.clear();
    m_shown.clear();
    if (!isSearching())
        return;
    const auto* root = m_model->invisibleRootItem();
    for (int row = 0; row < root->rowCount(); ++row)
        visit(*root->child(row), false);
}

bool CSearchHits::visit(const QStandardItem& item, bool isBelowMatch)
{
    const bool matches = isMatch(item);
    if (matches)
        m_matches.insert(&item);
    bool isShown = matches || isBelowMatch;
    for (int row = 0; row < item.rowCount(); ++row)
        isShown |= visit(*item.child(row), matches || isBelowMatch);
    if (isShown)
        m_shown.insert(&item);
    return isShown;
}

bool CSearchHits::isShown(const QModelIndex& index) const
{
    return !isSearching() || m_shown.count(m_model->itemFromIndex(index)) > 0;
}

bool CSearchHits::isOutdated(const QModelIndex& first, const QModelIndex& last) const
{
    for (int row = first.row(); row <= last.row(); ++row) {
        const auto* item = m_model->itemFromIndex(first.siblingAtRow(row));
        if (isMatch(*item) != (m_matches.count(item) > 0))
            return true;
    }
    return false;
}

bool CSearchHits::isMatch(const QStandardItem& item) const
{
    const QVariantMap map = item.data(CTreeModel::valueRole).toMap();
    return map.value(m_textKey).toString().contains(m_text, Qt::CaseInsensitive);
}

} // namespace XHUTILITY
