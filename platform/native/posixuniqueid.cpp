// SPDX-License-Identifier: MIT
#include "native/uniqueid.h"

#include <cstring>
#include <ctime>

#include <sys/random.h>

namespace Native
{

bool CreateUniqueId(UniqueId& id)
{
    std::uint8_t bytes[16];
    if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes))
        return false;
    // A random UUID, version 4 of RFC 4122, variant 1.
    std::memcpy(&id.data1, bytes, sizeof id.data1);
    std::memcpy(&id.data2, bytes + 4, sizeof id.data2);
    std::memcpy(&id.data3, bytes + 6, sizeof id.data3);
    std::memcpy(id.data4, bytes + 8, sizeof id.data4);
    id.data3 = static_cast<std::uint16_t>((id.data3 & 0x0FFFU) | 0x4000U);
    id.data4[0] = static_cast<std::uint8_t>((id.data4[0] & 0x3FU) | 0x80U);
    return true;
}

std::uint32_t TickCount()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

} // namespace Native
