// SPDX-License-Identifier: MIT
#pragma once

#include "http/fault.h"

#include <mutex>
#include <string>

namespace ZRSmartDB
{

/// The codes of failures on this machine.
namespace localcode
{
inline constexpr int notHere = 40410;
inline constexpr int damaged = 42200;
inline constexpr int cannotWrite = 50700;
inline constexpr int notOffered = 50100;
} // namespace localcode

/// The reason of the database's last failure. Any thread.
class LastError
{
public:
    void set(http::Fault fault);

    /// JSON; empty when nothing has failed.
    [[nodiscard]] std::string json() const;

private:
    mutable std::mutex m_mutex; ///< protects the fault
    http::Fault m_fault;
};

} // namespace ZRSmartDB
