// SPDX-License-Identifier: MIT
#pragma once

#include "convert/floortempdata.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace TorvoEditor
{

/// The rows of the floor list, with a gap where one was last put in or taken out. Rows that are taken out one
/// by one, in any order that goes one way, cost no more together than one walk over the list.
class FloorRows
{
public:
    using Row = std::unique_ptr<CFloorTempData>;

    [[nodiscard]] int size() const { return static_cast<int>(m_slots.size()) - m_gapSize; }
    [[nodiscard]] bool contains(int index) const { return index >= 0 && index < size(); }
    /// `index` is inside the list.
    [[nodiscard]] CFloorTempData& at(int index) const { return *slot(index); }

    /// `index` is inside the list or just behind it.
    void insert(int index, Row row);
    [[nodiscard]] Row take(int index);
    void swap(int one, int other) { std::swap(slot(one), slot(other)); }

private:
    [[nodiscard]] std::size_t place(int index) const
    {
        return static_cast<std::size_t>(index < m_gapBegin ? index : index + m_gapSize);
    }
    [[nodiscard]] const Row& slot(int index) const { return m_slots[place(index)]; }
    [[nodiscard]] Row& slot(int index) { return m_slots[place(index)]; }
    void moveGap(int index);

    std::vector<Row> m_slots; ///< those of the gap are empty
    int m_gapBegin = 0;
    int m_gapSize = 0;
};

} // namespace TorvoEditor
