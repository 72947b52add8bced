// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"
#include "server/storage/store.h"

#include <vector>

namespace server
{

/// The page of an account: its projects, the one that changed last in front, and their conversions.
/// `guard` is what the page's own requests bring along.
[[nodiscard]] Reply ConsolePage(const Session& session, const std::string& guard,
                                const std::vector<Project>& projects,
                                const std::vector<ProjectState>& states);

} // namespace server
