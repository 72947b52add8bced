// SPDX-License-Identifier: MIT
#include "convert/kyvconvertmodel.h"

#include <algorithm>
#include <utility>

namespace TorvoEditor
{

CKyvConvertModel::CKyvConvertModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

int CKyvConvertModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : getCount();
}

QVariant CKyvConvertModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= getCount() || role != listDataRole)
        return {};
    return QVariant::fromValue(m_rows[static_cast<std::size_t>(index.row())]);
}

QHash<int, QByteArray> CKyvConvertModel::roleNames() const
{
    return {{listDataRole, QByteArrayLiteral("listData")}};
}

int CKyvConvertModel::getCount() const
{
    return static_cast<int>(m_rows.size());
}

const CKyvConvertData* CKyvConvertModel::rowAt(int index) const
{
    return index < 0 || index >= getCount() ? nullptr : m_rows[static_cast<std::size_t>(index)];
}

QString CKyvConvertModel::getName(int index) const
{
    const auto* row = rowAt(index);
    return row == nullptr ? QString() : row->name();
}

int CKyvConvertModel::getValidCount() const
{
    return static_cast<int>(
        std::count_if(m_rows.begin(), m_rows.end(), [](const auto* row) { return row->state() == 0; }));
}

QString CKyvConvertModel::getValidName(int index) const
{
    const auto* row = rowAt(index);
    return row == nullptr || row->state() != 0 ? QString() : row->name();
}

void CKyvConvertModel::addData(CKyvConvertData* row)
{
    beginInsertRows({}, getCount(), getCount());
    row->setParent(this); // owned: no script engine may take it away
    m_rows.push_back(row);
    endInsertRows();
}

CKyvConvertData* CKyvConvertModel::findData(const QString& guid) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const auto* row) { return row->guid() == guid; });
    return found == m_rows.end() ? nullptr : *found;
}

void CKyvConvertModel::removeData(const QString& guid)
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const auto* row) { return row->guid() == guid; });
    if (found == m_rows.end())
        return;
    const int index = static_cast<int>(found - m_rows.begin());
    beginRemoveRows({}, index, index);
    (*found)->setParent(nullptr);
    m_rows.erase(found);
    endRemoveRows();
}

void CKyvConvertModel::resetData(const Rows& rows)
{
    beginResetModel();
    const auto old = std::exchange(m_rows, rows);
    for (auto* row : m_rows)
        row->setParent(this);
    endResetModel();
    qDeleteAll(old); // the screens have let go of them
}

} // namespace TorvoEditor
