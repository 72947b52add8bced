// SPDX-License-Identifier: MIT
#pragma once

#include "server/worker/worker.h"

#include <filesystem>
#include <functional>
#include <string>

namespace server
{

/// What a worker needs that is not on the server's machine.
struct RemoteSettings {
    std::string server; ///< address
    std::filesystem::path keyFile;
    Worker::Settings worker;
};

/// Does the jobs of a server on another machine until it `isToEnd`; a server that is out of reach is waited
/// for. Throws std::exception when nothing can come of it: the key is wrong, another worker has the folder.
void WorkForServer(const RemoteSettings& settings, const std::function<bool()>& isToEnd);

} // namespace server
