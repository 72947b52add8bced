// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>

namespace server
{

/// Holds back whoever tries passwords: after five failures for an account, each further one doubles the wait,
/// up to five minutes. Any thread.
class LoginGuard
{
public:
    using Clock = std::chrono::steady_clock;

    /// The seconds that an attempt for this account has to wait; 0 when it may be made now.
    [[nodiscard]] int secondsToWait(const std::string& account, Clock::time_point now);

    void hasFailed(const std::string& account, Clock::time_point now);
    void hasSucceeded(const std::string& account);

private:
    struct Failures {
        int count = 0;
        Clock::time_point blockedUntil;
    };

    std::mutex m_mutex; ///< protects the table
    std::unordered_map<std::string, Failures> m_failures;
};

} // namespace server
