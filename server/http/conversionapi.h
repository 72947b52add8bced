// SPDX-License-Identifier: MIT
#pragma once

#include "server/conversions/archivefolder.h"
#include "server/http/reply.h"
#include "server/storage/store.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <mutex>

namespace server
{

/// The answers to requests about archives and what becomes of them, for somebody who is logged in. Any
/// thread.
class ConversionApi
{
public:
    /// `archives` is the folder that archives are kept in.
    ConversionApi(Store& store, const std::filesystem::path& archives);

    /// What stands below projects/{guid}: "archives", "conversions" and "models".
    [[nodiscard]] static bool isProjects(const Request& request);
    [[nodiscard]] Reply answerProjects(const Request& request, const Session& session);

    /// What stands below conversions.
    [[nodiscard]] Reply answerJobs(const Request& request, const Session& session);

    /// Lets go of what nobody has touched for long, and puts jobs of lost workers back. To be called once a
    /// second or so.
    void tick();

private:
    [[nodiscard]] Reply routeArchives(const Request& request, const Session& session);
    [[nodiscard]] Reply beginArchive(const Request& request, const Session& session);
    [[nodiscard]] Reply takeBytes(const Request& request, const Archive& archive);
    [[nodiscard]] Reply finishArchive(const Request& request, const Archive& archive);
    [[nodiscard]] Reply addJob(const Request& request, const Session& session);
    [[nodiscard]] Reply listJobs(const std::string& guid);
    [[nodiscard]] Reply listFailures(const std::string& guid);
    [[nodiscard]] Reply listModels(const std::string& guid);
    [[nodiscard]] Reply progress(const Job& job);
    [[nodiscard]] Reply removeJob(const Job& job, const Session& session);
    void requireBuilding(const Session& session, const std::string& guid);
    void requireChange(const Session& session, const std::string& guid);
    [[nodiscard]] std::mutex& lockOf(const std::string& archive);

    Store& m_store;
    ArchiveFolder m_folder;
    std::array<std::mutex, 64> m_locks; ///< each keeps some archives from being written by two at once
};

} // namespace server
