// SPDX-License-Identifier: MIT
#include "smartdb/lasterror.h"

#include <utility>

namespace ZRSmartDB
{

void LastError::set(http::Fault fault)
{
    const std::lock_guard lock(m_mutex);
    m_fault = std::move(fault);
}

std::string LastError::json() const
{
    const std::lock_guard lock(m_mutex);
    return http::ToJson(m_fault);
}

} // namespace ZRSmartDB
