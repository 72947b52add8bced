// SPDX-License-Identifier: MIT
#pragma once

#include "server/conversions/archivefolder.h"
#include "server/http/reply.h"
#include "server/storage/store.h"

#include <filesystem>
#include <string>

namespace server
{

/// The conversions on the console: what they are at, and an end or another beginning for one of them. Any
/// thread.
class JobList
{
public:
    JobList(Store& store, const std::filesystem::path& archives)
        : m_store(store)
        , m_archives(archives)
    {
    }

    /// jobs
    [[nodiscard]] static bool isList(const Request& request);
    /// jobs/{id}/cancel, jobs/{id}/retry
    [[nodiscard]] static bool isAction(const Request& request);
    /// What an action must bring along in its header. Other sites cannot know it, and it does not tell the
    /// cookie.
    [[nodiscard]] static std::string guardOf(const std::string& cookie);

    /// The conversions of the projects that the account sees, as JSON.
    [[nodiscard]] Reply list(const Session& session);
    [[nodiscard]] Reply act(const Request& request, const Session& session);

private:
    Store& m_store;
    ArchiveFolder m_archives;
};

} // namespace server
