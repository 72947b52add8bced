// SPDX-License-Identifier: MIT
#include "fakes/fakeuniqueid.h"

namespace Fakes
{

UniqueIds& Ids()
{
    static UniqueIds ids;
    return ids;
}

} // namespace Fakes

namespace Native
{

bool CreateUniqueId(UniqueId& id)
{
    const auto& next = Fakes::Ids().next;
    if (next)
        id = *next;
    return next.has_value();
}

std::uint32_t TickCount()
{
    return Fakes::Ids().tickCount;
}

} // namespace Native
