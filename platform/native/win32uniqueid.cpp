// SPDX-License-Identifier: MIT
#include "native/uniqueid.h"

#include <cstring>

#include <objbase.h>
#include <windows.h>

namespace Native
{

bool CreateUniqueId(UniqueId& id)
{
    const bool mustEnd = SUCCEEDED(::CoInitialize(nullptr));
    GUID guid{};
    const bool isMade = SUCCEEDED(::CoCreateGuid(&guid));
    if (mustEnd)
        ::CoUninitialize();
    if (!isMade)
        return false;
    id.data1 = guid.Data1;
    id.data2 = guid.Data2;
    id.data3 = guid.Data3;
    std::memcpy(id.data4, guid.Data4, sizeof id.data4);
    return true;
}

std::uint32_t TickCount()
{
    return ::GetTickCount();
}

} // namespace Native
