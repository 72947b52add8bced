// SPDX-License-Identifier: MIT
#include "sortkeys.h"

#include "XHUtility/treemodel.h"

#include <algorithm>

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

    connect(model, &QAbstractItemModel::dataChanged, this, &CSortKeys::onDataChanged);
    connect(model, &QAbstractItemModel::rowsInserted, this, &CSortKeys::onRowsInserted);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &CSortKeys::forgetBelow);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &CSortKeys::onRowsRemoved);
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] { m_keys.clear(); });
    connect(model, &QAbstractItemModel::modelReset, this, [this] { m_keys.clear(); });
}

void CSortKeys::setTextKey(const QString& textKey)
{
    m_textKey = textKey;
    m_keys.clear();
}

std::size_t CSortKeys::count() const
{
    std::size_t count = 0;
    for (const auto& [parent, rows] : m_keys)
        count += static_cast<std::size_t>(
            std::count_if(rows.begin(), rows.end(), [](const auto& key) { return key.has_value(); }));
    return count;
}

const CSortKeys::Key& CSortKeys::of(const QModelIndex& index)
{
    // The model keeps in an index the item above: it is at hand without a look at any item.
    auto& rows = m_keys[index.internalPointer()];
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= rows.size())
        rows.resize(static_cast<std::size_t>(m_model->rowCount(index.parent())));
    auto& key = rows[row];
    if (!key)
        key = make(*m_model->itemFromIndex(index));
    return *key;
}

CSortKeys::Key CSortKeys::make(const QStandardItem& item) const
{
    const QVariantMap map = item.data(CTreeModel::valueRole).toMap();
    return {map.value(QStringLiteral("type")).toString() == QLatin1String("orgType"),
            m_collator.sortKey(map.value(m_textKey).toString())};
}

CSortKeys::Rows* CSortKeys::rowsBelow(const QModelIndex& parent)
{
    const auto* item = parent.isValid() ? m_model->itemFromIndex(parent) : m_model->invisibleRootItem();
    const auto known = m_keys.find(item);
    return known != m_keys.end() ? &known->second : nullptr;
}

void CSortKeys::forgetBelow(const QModelIndex& parent, int first, int last)
{
    if (m_keys.empty())
        return;
    for (int row = first; row <= last; ++row) {
        const auto index = m_model->index(row, 0, parent);
        m_keys.erase(m_model->itemFromIndex(index));
        forgetBelow(index, 0, m_model->rowCount(index) - 1);
    }
}

void CSortKeys::onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    if (auto* rows = rowsBelow(topLeft.parent())) {
        const auto end = std::min(rows->size(), static_cast<std::size_t>(bottomRight.row()) + 1);
        for (auto row = static_cast<std::size_t>(topLeft.row()); row < end; ++row)
            (*rows)[row].reset();
    }
}

void CSortKeys::onRowsInserted(const QModelIndex& parent, int first, int last)
{
    // What comes may lie where something lay that went without a word.
    forgetBelow(parent, first, last);
    auto* rows = rowsBelow(parent);
    if (rows != nullptr && static_cast<std::size_t>(first) < rows->size())
        rows->insert(rows->begin() + first, static_cast<std::size_t>(last - first) + 1, std::nullopt);
}

void CSortKeys::onRowsRemoved(const QModelIndex& parent, int first, int last)
{
    if (auto* rows = rowsBelow(parent)) {
        const auto size = static_cast<int>(rows->size());
        rows->erase(rows->begin() + std::min(first, size), rows->begin() + std::min(last + 1, size));
    }
}

} // namespace XHUTILITY
