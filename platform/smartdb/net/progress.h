// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

namespace ZRSmartDB
{

/// Tells in the log how much of a transfer is done. Never goes backwards. Any thread.
class Progress
{
public:
    /// `what` stands in the log, for example "upload <guid>"; `bytes` is the whole.
    Progress(std::string what, std::uint64_t bytes);

    void add(std::uint64_t bytes);

private:
    const std::string m_what;
    const std::uint64_t m_bytes;
    std::mutex m_mutex; ///< protects what follows
    std::uint64_t m_done = 0;
    int m_told = -1;
};

} // namespace ZRSmartDB
