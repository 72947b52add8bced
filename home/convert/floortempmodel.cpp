// SPDX-License-Identifier: MIT
#include "convert/floortempmodel.h"

#include <algorithm>

#include <QJsonObject>
#include <QQmlEngine>

namespace TorvoEditor
{

CFloorTempModel::CFloorTempModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

int CFloorTempModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant CFloorTempModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !m_rows.contains(index.row()) || role != listDataRole)
        return {};
    auto* row = &m_rows.at(index.row());
    // No script engine may take it away. A parent would say the same, but be slow to let go of thousands.
    QQmlEngine::setObjectOwnership(row, QQmlEngine::CppOwnership);
    return QVariant::fromValue(row);
}

QHash<int, QByteArray> CFloorTempModel::roleNames() const
{
    return {{listDataRole, QByteArrayLiteral("listData")}};
}

QJsonArray CFloorTempModel::curMatchedFloors() const
{
    QJsonArray floors;
    if (!m_rows.contains(m_curIndex))
        return floors;
    const auto& models = m_rows.at(m_curIndex).childFloors();
    for (auto model = models.begin(); model != models.end(); ++model) {
        for (const auto& item : *model)
            floors.append(QJsonObject{{QStringLiteral("floorName"), item.floorName},
                                      {QStringLiteral("projGuid"), model.key()},
                                      {QStringLiteral("projName"), item.projName}});
    }
    return floors;
}

void CFloorTempModel::clearAndSelected(int index)
{
    if (!m_rows.contains(index))
        return;
    select([=](int row) { return row == index; });
    setCurIndex(index);
}

void CFloorTempModel::ctrlSelected(int index)
{
    if (!m_rows.contains(index))
        return;
    auto& row = m_rows.at(index);
    row.setIsSelected(!row.isSelected());
    setCurIndex(-1);
}

void CFloorTempModel::regionSelected(int nBegin, int nEnd)
{
    if (!m_rows.contains(nBegin) || !m_rows.contains(nEnd))
        return;
    const auto [first, last] = std::minmax(nBegin, nEnd);
    select([first = first, last = last](int row) { return row >= first && row <= last; });
    setCurIndex(-1);
}

bool CFloorTempModel::hasFloor(const QString& name) const
{
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).floorName() == name)
            return true;
    }
    return false;
}

bool CFloorTempModel::addFloor(const QString& name)
{
    if (hasFloor(name))
        return false;
    const int place = m_rows.contains(m_curIndex) ? m_curIndex + 1 : 0;
    beginInsertRows({}, place, place);
    m_rows.insert(place, std::make_unique<CFloorTempData>(name));
    endInsertRows();
    return true;
}

bool CFloorTempModel::renameCurFloor(const QString& name)
{
    if (!m_rows.contains(m_curIndex))
        return false;
    auto& row = m_rows.at(m_curIndex);
    if (row.floorName() == name)
        return true;
    if (hasFloor(name))
        return false;
    row.setFloorName(name);
    return true;
}

bool CFloorTempModel::addCurItem(const QString& projGuid, const QString& projName, const QString& floorName)
{
    if (!m_rows.contains(m_curIndex))
        return false;
    m_rows.at(m_curIndex).addItem({projGuid, projName, floorName});
    emit curMatchedFloorsChanged();
    return true;
}

bool CFloorTempModel::removeCurItem(const QString& projGuid, const QString& floorName)
{
    if (!m_rows.contains(m_curIndex))
        return false;
    m_rows.at(m_curIndex).removeItem(projGuid, floorName);
    emit curMatchedFloorsChanged();
    return true;
}

void CFloorTempModel::removeItem(const QString& projGuid, const QString& floorName)
{
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).removeItem(projGuid, floorName)) {
            emit curMatchedFloorsChanged();
            return;
        }
    }
}

void CFloorTempModel::getRows(Rows& rows) const
{
    copyRows(rows, [](const CFloorTempData&) { return true; });
}

void CFloorTempModel::getSelectedRows(Rows& rows) const
{
    copyRows(rows, [](const CFloorTempData& row) { return row.isSelected(); });
}

void CFloorTempModel::setRows(const Rows& rows)
{
    beginResetModel();
    FloorRows old;
    std::swap(m_rows, old);
    for (const auto& [name, items] : rows)
        m_rows.insert(m_rows.size(), std::make_unique<CFloorTempData>(name, items));
    endResetModel();
    // The old rows go at the end of this function, when the screens have let go of them.
    emit curMatchedFloorsChanged();
}

void CFloorTempModel::removeSelectedRows()
{
    for (int row = m_rows.size() - 1; row >= 0; --row) {
        if (!m_rows.at(row).isSelected())
            continue;
        beginRemoveRows({}, row, row);
        const auto removed = m_rows.take(row);
        endRemoveRows();
    }
    setCurIndex(-1);
}

void CFloorTempModel::moveCurUp()
{
    if (m_rows.contains(m_curIndex) && m_curIndex > 0)
        moveCur(m_curIndex - 1);
}

void CFloorTempModel::moveCurDown()
{
    if (m_rows.contains(m_curIndex) && m_rows.contains(m_curIndex + 1))
        moveCur(m_curIndex + 1);
}

void CFloorTempModel::setCurIndex(int index)
{
    if (m_curIndex == index)
        return;
    m_curIndex = index;
    emit curMatchedFloorsChanged();
}

void CFloorTempModel::select(const std::function<bool(int)>& isSelected)
{
    for (int row = 0; row < m_rows.size(); ++row)
        m_rows.at(row).setIsSelected(isSelected(row));
}

/// A reset and no move of rows: that is what the screens are made for, and they put their view back.
void CFloorTempModel::moveCur(int to)
{
    beginResetModel();
    m_rows.swap(m_curIndex, to);
    endResetModel();
    setCurIndex(to);
}

void CFloorTempModel::copyRows(Rows& rows, const std::function<bool(const CFloorTempData&)>& isWanted) const
{
    rows.clear();
    for (int index = 0; index < m_rows.size(); ++index) {
        const auto& row = m_rows.at(index);
        if (isWanted(row))
            rows.emplace_back(row.floorName(), row.childFloors());
    }
}

} // namespace TorvoEditor
