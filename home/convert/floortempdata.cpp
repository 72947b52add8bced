// SPDX-License-Identifier: MIT
#include "convert/floortempdata.h"

#include <algorithm>
#include <utility>

namespace TorvoEditor
{

CFloorTempData::CFloorTempData(QString floorName, FloorItems childFloors)
    : m_floorName(std::move(floorName))
    , m_childFloors(std::move(childFloors))
{
}

void CFloorTempData::setFloorName(const QString& floorName)
{
    if (m_floorName == floorName)
        return;
    m_floorName = floorName;
    emit floorNameChanged();
}

void CFloorTempData::setIsSelected(bool isSelected)
{
    if (m_isSelected == isSelected)
        return;
    m_isSelected = isSelected;
    emit isSelectedChanged();
}

void CFloorTempData::addItem(const TFloorItem& item)
{
    m_childFloors[item.projGuid].append(item);
}

bool CFloorTempData::removeItem(const QString& projGuid, const QString& floorName)
{
    const auto items = m_childFloors.find(projGuid);
    if (items == m_childFloors.end())
        return false;
    const auto found = std::find_if(items->begin(), items->end(),
                                    [&](const TFloorItem& item) { return item.floorName == floorName; });
    if (found == items->end())
        return false;
    items->erase(found);
    if (items->isEmpty())
        m_childFloors.erase(items);
    return true;
}

} // namespace TorvoEditor
