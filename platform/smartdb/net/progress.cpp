// SPDX-License-Identifier: MIT
#include "smartdb/net/progress.h"

#include "smartdb/log.h"

#include <algorithm>
#include <utility>

namespace ZRSmartDB
{

Progress::Progress(std::string what, std::uint64_t bytes)
    : m_what(std::move(what))
    , m_bytes(bytes)
{
}

void Progress::add(std::uint64_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_done = std::min(m_bytes, m_done + bytes);
    if (m_what.empty())
        return;
    const int percent = m_bytes == 0 ? 100 : static_cast<int>(m_done * 100 / m_bytes);
    if (percent <= m_told)
        return;
    m_told = percent;
    qCDebug(smartdbLog).noquote() << m_what.c_str() << percent << "%";
}

} // namespace ZRSmartDB
