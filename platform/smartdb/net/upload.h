// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/disk/sidefolder.h"
#include "smartdb/net/localtree.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace ZRSmartDB
{

/// Sends a project to the server and makes it the newest revision there, if the server still has the revision
/// that the project started from, or in any case when it is forced. A building project takes its models
/// along: they are whole on the server before it is. One thread; operations throw Failure.
///
/// What the server has already is not sent. An upload that was interrupted goes on where it was, since pieces
/// that have arrived stay there.
class Upload
{
public:
    Upload(http::Client& client, std::shared_ptr<Disk> disk, std::filesystem::path dataFolder);

    void run(const std::string& guid, bool isForced);

private:
    struct Task;
    struct Granted;

    void send(const Task& task);
    [[nodiscard]] bool sendOnce(const Task& task);
    [[nodiscard]] Granted begin(const Task& task, const LocalTree& tree, const std::string& base);
    [[nodiscard]] std::unique_ptr<LocalTree> describe(const Task& task, bool isNew);
    [[nodiscard]] std::string beginAhead(const Task& task);
    [[nodiscard]] http::Reply askToBegin(const Task& task, const LocalTree& tree, const std::string& base,
                                         const wire::Manifest& against);
    [[nodiscard]] http::Reply askToBegin(const Task& task, nlohmann::json head, std::string_view delta);
    [[nodiscard]] bool commit(const Task& task, const LocalTree& tree, const Granted& granted);
    void sendModels(const Task& task);
    void abandon(const Task& task, const std::string& path) noexcept;

    http::Client& m_client;
    std::shared_ptr<Disk> m_disk;
    std::filesystem::path m_dataFolder;
    SideFolder m_side;
};

} // namespace ZRSmartDB
