// SPDX-License-Identifier: MIT
#include "server/accounts/loginguard.h"

#include <algorithm>

namespace server
{

namespace
{

constexpr int freeFailures = 5;
constexpr int longestWait = 300;
constexpr int mostDoublings = 9;
constexpr std::size_t mostAccounts = 10000; ///< invented names must not fill the memory

} // namespace

int LoginGuard::secondsToWait(const std::string& account, Clock::time_point now)
{
    const std::lock_guard lock(m_mutex);
    const auto known = m_failures.find(account);
    if (known == m_failures.end() || known->second.blockedUntil <= now)
        return 0;
    const auto left = std::chrono::ceil<std::chrono::seconds>(known->second.blockedUntil - now);
    return static_cast<int>(left.count());
}

void LoginGuard::hasFailed(const std::string& account, Clock::time_point now)
{
    const std::lock_guard lock(m_mutex);
    if (m_failures.size() >= mostAccounts && !m_failures.contains(account))
        std::erase_if(m_failures, [now](const auto& entry) { return entry.second.blockedUntil <= now; });
    auto& failures = m_failures[account];
    ++failures.count;
    if (failures.count >= freeFailures) {
        const int doublings = std::min(failures.count - freeFailures, mostDoublings);
        failures.blockedUntil = now + std::chrono::seconds(std::min(1 << doublings, longestWait));
    }
}

void LoginGuard::hasSucceeded(const std::string& account)
{
    const std::lock_guard lock(m_mutex);
    m_failures.erase(account);
}

} // namespace server
