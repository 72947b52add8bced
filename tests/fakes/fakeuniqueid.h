// SPDX-License-Identifier: MIT
#pragma once

#include "native/uniqueid.h"

#include <optional>

namespace Fakes
{

/// What the system's unique numbers are. GUI thread.
struct UniqueIds {
    std::optional<Native::UniqueId> next = Native::UniqueId(); ///< none: the system cannot make one
    std::uint32_t tickCount = 0;
};

[[nodiscard]] UniqueIds& Ids();

} // namespace Fakes
