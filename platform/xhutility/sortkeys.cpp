// SPDX-License-Identifier: MIT
#include "sortkeys.h"

#include "XHUtility/treemodel.h"

#include <QLocale>
#include <QVariantMap>

namespace XHUTILITY
{

namespace
{

/// The locale whose order people expect. The locale "C" has none that would put 2 before 10; the screens' own
/// language stands in for it.
QLocale SortingLocale()
{
    const QLocale users;
    return users.language() == QLocale::C ? QLocale(QLocale::Chinese, QLocale::China) : users;
}

} // namespace

CSortKeys::CSortKeys(const QStandardItemModel* model, const QString& textKey)
    : m_model(model)
    , m_textKey(textKey)
    , m_collator(SortingLocale())
{
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);

    connect(model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
                    m_keys.erase(m_model->itemFromIndex(topLeft.siblingAtRow(row)));
            });
    // What comes may lie where something lay that went without a word.
    connect(model, &QAbstractItemModel::rowsInserted, this, &CSortKeys::forget);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &CSortKeys::forget);
    connect(model, &QAbstractItemModel::modelReset, this, [this] { m_keys.clear(); });
}

void CSortKeys::setTextKey(const QString& textKey)
{
    m_textKey = textKey;
    m_keys.clear();
}

const CSortKeys::Key& CSortKeys::of(const QModelIndex& index)
{
    const auto* item = m_model->itemFromIndex(index);
    const auto known = m_keys.find(item);
    return known != m_keys.end() ? known->second : m_keys.emplace(item, make(*item)).first->second;
}

CSortKeys::Key CSortKeys::make(const QStandardItem& item) const
{
    const QVariantMap map = item.data(CTreeModel::valueRole).toMap();
    return {map.value(QStringLiteral("type")).toString() == QLatin1String("orgType"),
            m_collator.sortKey(map.value(m_textKey).toString())};
}

void CSortKeys::forget(const QModelIndex& parent, int first, int last)
{
    if (m_keys.empty())
        return;
    for (int row = first; row <= last; ++row) {
        const auto index = m_model->index(row, 0, parent);
        m_keys.erase(m_model->itemFromIndex(index));
        if (const int below = m_model->rowCount(index); below > 0)
            forget(index, 0, below - 1);
    }
}

} // namespace XHUTILITY
