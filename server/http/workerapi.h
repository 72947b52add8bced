// SPDX-License-Identifier: MIT
#pragma once

#include "server/conversions/archivefolder.h"
#include "server/conversions/arrivingmodels.h"
#include "server/conversions/modelpublisher.h"
#include "server/conversions/workerkey.h"
#include "server/http/reply.h"
#include "server/storage/store.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <mutex>

namespace server
{

/// The answers to workers on other machines, which take jobs, bring models and are known by a key of their
/// own. A job is a worker's for the time of the lease after each of its requests. Any thread.
class WorkerApi
{
public:
    struct Places {
        std::filesystem::path packs;
        std::filesystem::path archives;
        std::filesystem::path models; ///< that arrive
        std::filesystem::path key;    ///< file
    };

    WorkerApi(Store& store, const Places& places, std::chrono::seconds lease);

    /// What stands below workers.
    [[nodiscard]] Reply answer(const Request& request);

    /// Lets go of models whose jobs have been lost. To be called once a second or so.
    void tick();

private:
    [[nodiscard]] Reply takeJob(const std::string& worker);
    [[nodiscard]] Reply routeJob(const Request& request, const std::string& worker);
    /// The job when it is the worker's, which it stays for the time of the lease.
    [[nodiscard]] Job keptJob(const std::string& id, const std::string& worker);
    [[nodiscard]] Reply archiveBytes(const Job& job, const std::string& offset);
    [[nodiscard]] Reply progress(const Request& request, const Job& job, const std::string& worker);
    [[nodiscard]] Reply takeBytes(const Request& request, const Job& job);
    [[nodiscard]] Reply publish(const Request& request, const Job& job, const std::string& worker);
    [[nodiscard]] Reply fail(const Request& request, const Job& job, const std::string& worker);
    [[nodiscard]] Reply giveBack(const Job& job, const std::string& worker);
    [[nodiscard]] std::int64_t leaseEnd(std::chrono::seconds lease) const;
    [[nodiscard]] std::mutex& lockOf(const std::string& job);

    Store& m_store;
    ArchiveFolder m_archives;
    ArrivingModels m_models;
    ModelPublisher m_publisher;
    WorkerKey m_key;
    std::chrono::seconds m_lease;
    std::array<std::mutex, 64> m_locks; ///< each keeps some models from being written by two at once
};

} // namespace server
