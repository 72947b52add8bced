// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/disk/sidefolder.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// Brings a project on this machine to the newest revision of the server, its models before it. Only what no
/// local file has is fetched. A project is swapped in at once when it is whole: a kill at any moment leaves
/// the old one or the new one. What was changed here stays as it is. One thread; operations throw Failure.
class Update
{
public:
    Update(http::Client& client, std::shared_ptr<Disk> disk, std::filesystem::path dataFolder);

    /// Called with the guid of each project whose folder has been replaced.
    using Replaced = std::function<void(const std::string& guid)>;

    void run(const std::string& guid, const Replaced& replaced);

private:
    [[nodiscard]] bool prepare(const std::string& guid);
    void swapIn(const std::string& guid);

    http::Client& m_client;
    std::shared_ptr<Disk> m_disk;
    std::filesystem::path m_dataFolder;
    SideFolder m_side;
};

} // namespace ZRSmartDB
