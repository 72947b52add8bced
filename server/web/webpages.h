// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"
#include "server/projects/revisioncache.h"
#include "server/storage/packs.h"
#include "server/storage/store.h"
#include "server/web/joblist.h"
#include "server/web/modelfiles.h"

#include <filesystem>
#include <optional>
#include <string>

namespace server
{

/// The pages below /web, for people. A browser comes with a ticket in its first address, gets a cookie for
/// it, and is sent on to the same address without the ticket. Any thread, several at once.
class WebPages
{
public:
    /// `archives` is the folder of what is to be converted.
    WebPages(Store& store, RevisionCache& revisions, PackReader& packs, const std::filesystem::path& archives)
        : m_store(store)
        , m_revisions(revisions)
        , m_packs(packs)
        , m_models(store, revisions, packs)
        , m_jobs(store, archives)
    {
    }

    /// Throws std::exception when the store does.
    [[nodiscard]] Reply answer(const Request& request);

    /// The page for what went wrong inside.
    [[nodiscard]] static Reply failure(const Request& request);

    /// Whether a request is answered without any waiting.
    [[nodiscard]] static bool isQuick(const Request& request);

private:
    [[nodiscard]] Reply exchange(const Request& request, const std::string& ticket);
    [[nodiscard]] std::optional<Session> sessionOf(const Request& request);
    [[nodiscard]] Reply answerTo(const Request& request, const Session& session);
    [[nodiscard]] Reply console(const Request& request, const Session& session);
    [[nodiscard]] Reply project(const Request& request, const Session& session);
    [[nodiscard]] Reply picture(const Request& request, const ProjectState& state,
                                const LoadedRevision* revision);

    Store& m_store;
    RevisionCache& m_revisions;
    PackReader& m_packs;
    ModelFiles m_models;
    JobList m_jobs;
};

} // namespace server
