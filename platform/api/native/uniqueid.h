// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The system's own unique numbers. Any thread.
namespace Native
{

struct UniqueId {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::uint8_t data4[8] = {};
};

/// Makes a new 128-bit number that no other call on any machine gives. False leaves `id` as it is.
[[nodiscard]] bool CreateUniqueId(UniqueId& id);

/// Milliseconds since the system was started, modulo 2^32.
[[nodiscard]] std::uint32_t TickCount();

} // namespace Native
