// SPDX-License-Identifier: MIT
#include "convert/floorrows.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace TorvoEditor
{

void FloorRows::insert(int index, Row row)
{
    if (m_gapSize == 0) {
        m_gapBegin = size();
        m_gapSize = std::max(16, size());
        m_slots.resize(m_slots.size() + static_cast<std::size_t>(m_gapSize));
    }
    moveGap(index);
    m_slots[static_cast<std::size_t>(index)] = std::move(row);
    ++m_gapBegin;
    --m_gapSize;
}

FloorRows::Row FloorRows::take(int index)
{
    // The gap is moved behind the row, which then joins it.
    moveGap(index + 1);
    --m_gapBegin;
    ++m_gapSize;
    return std::move(m_slots[static_cast<std::size_t>(index)]);
}

void FloorRows::moveGap(int index)
{
    const auto begin = m_slots.begin();
    if (index < m_gapBegin)
        std::move_backward(begin + index, begin + m_gapBegin, begin + m_gapBegin + m_gapSize);
    else
        std::move(begin + m_gapBegin + m_gapSize, begin + index + m_gapSize, begin + m_gapBegin);
    m_gapBegin = index;
}

} // namespace TorvoEditor
