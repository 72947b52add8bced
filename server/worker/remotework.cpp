// SPDX-License-Identifier: MIT
#include "server/worker/remotework.h"

#include "server/accounts/token.h"
#include "server/storage/folderlock.h"
#include "server/worker/remotedesk.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <thread>

namespace server
{

namespace
{

constexpr std::size_t nameLength = 32;
constexpr std::chrono::milliseconds look(100);
constexpr std::chrono::milliseconds restWithoutJob(1000);
constexpr std::chrono::milliseconds restWithoutServer(2000);

std::string KeyIn(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    std::string key;
    if (!(stream >> key))
        throw std::runtime_error("no key can be read from " + file.string());
    return key;
}

void Rest(std::chrono::milliseconds time, const std::function<bool()>& isToEnd)
{
    for (; time.count() > 0 && !isToEnd(); time -= look)
        std::this_thread::sleep_for(look);
}

} // namespace

void WorkForServer(const RemoteSettings& settings, const std::function<bool()>& isToEnd)
{
    http::Client client;
    if (!client.setServer(settings.server))
        throw std::runtime_error(settings.server + " is no address of a server");
    client.setToken(KeyIn(settings.keyFile));

    const auto& folder = settings.worker.folder;
    std::filesystem::create_directories(folder);
    const FolderLock lock(folder / "worker.lock", false);
    if (!lock.isHeld())
        throw std::runtime_error("another worker is running on " + folder.string());
    // What a worker that was killed has left behind.
    std::filesystem::remove_all(folder / "work");

    RemoteDesk desk(client, MakeToken().substr(0, nameLength), isToEnd);
    Worker worker(desk, settings.worker, isToEnd);
    bool isOutOfReach = false;
    while (!isToEnd()) {
        try {
            const bool hasWorked = worker.doNext();
            if (std::exchange(isOutOfReach, false))
                std::cerr << "the server is there again\n";
            if (!hasWorked)
                Rest(restWithoutJob, isToEnd);
        } catch (const KeyRefused&) {
            throw;
        } catch (const std::exception& exception) {
            if (!std::exchange(isOutOfReach, true))
                std::cerr << exception.what() << "; it is asked again until it answers\n";
            Rest(restWithoutServer, isToEnd);
        }
    }
}

} // namespace server
