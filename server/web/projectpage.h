// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"
#include "server/projects/revisioncache.h"
#include "server/storage/store.h"

namespace server
{

/// The file of a project that holds its picture.
inline constexpr const char* pictureFile = "projimage.jpg";

/// The page of one project. `revision` is its newest one, null before the first.
[[nodiscard]] Reply ProjectPage(const Session& session, const Project& project, const ProjectState& state,
                                const LoadedRevision* revision);

} // namespace server
