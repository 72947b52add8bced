// SPDX-License-Identifier: MIT
#pragma once

#include "server/accounts/loginguard.h"
#include "server/http/conversionapi.h"
#include "server/http/reply.h"
#include "server/http/workerapi.h"
#include "server/projects/projectlists.h"
#include "server/projects/revisioncache.h"
#include "server/projects/uploads.h"
#include "server/storage/packs.h"
#include "server/storage/store.h"
#include "server/web/webpages.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace server
{

/// The answers to requests. Waits for the database, and for the processor at a login; any thread, several at
/// once.
class Api
{
public:
    struct Times {
        std::chrono::seconds tokenLife = std::chrono::hours(24 * 14); ///< how long a login lasts
        std::chrono::seconds uploadLease{90}; ///< after which an upload that sends nothing has failed
        std::chrono::seconds jobLease{15};    ///< after which a worker that says nothing has lost its job
    };

    Api(Store& store, const WorkerApi::Places& places, const Times& times);

    /// Never throws: what goes wrong inside becomes an answer with the status 500, or 507 on a full disk.
    [[nodiscard]] Reply answer(const Request& request);

    /// Whether a request is answered without any waiting.
    [[nodiscard]] static bool isQuick(const Request& request);

    /// Whether a request may bring more than the usual amount, asked when only its header is there: a message
    /// with the files of a large project, from somebody who is logged in.
    [[nodiscard]] bool mayBeLarge(const Request& request);

    /// What is to be done once a second. Never throws.
    void tick();

    [[nodiscard]] PackReader& packs() { return m_packs; }

private:
    [[nodiscard]] Reply route(const Request& request);
    [[nodiscard]] Reply routeWithSession(const Request& request, const Session& session);
    [[nodiscard]] Reply routeProject(const Request& request, const Session& session);

    [[nodiscard]] Reply login(const Request& request);
    [[nodiscard]] Reply session(const Request& request, const Session& session);
    [[nodiscard]] Reply organisation(const Session& session);
    [[nodiscard]] Reply ticket(const Request& request);
    [[nodiscard]] Reply uploadPermission(const std::string& application);
    [[nodiscard]] Reply project(const Project& project, const ProjectState& state);
    [[nodiscard]] Reply rename(const Request& request, const Session& session, const std::string& guid);
    [[nodiscard]] Reply projectFile(const ProjectState& state, const std::string& path);
    [[nodiscard]] Reply manifest(const Request& request, const std::string& guid, const std::string& root);
    [[nodiscard]] Reply manifestDelta(const std::string& guid, const std::string& root,
                                      const std::string& base);
    [[nodiscard]] Reply pieces(const Request& request, const std::string& guid, const std::string& root);
    [[nodiscard]] Reply routeUpload(const Request& request, const Session& session);
    [[nodiscard]] Reply beginUpload(const Request& request, const Session& session);
    [[nodiscard]] Reply wantedPieces(const std::string& guid, const std::string& id,
                                     const std::string& names);
    [[nodiscard]] Reply uploadPieces(const std::string& guid, const std::string& id,
                                     const std::string& stream);
    [[nodiscard]] Reply commitUpload(const std::string& guid, const std::string& id);
    [[nodiscard]] Reply abandonUpload(const std::string& guid, const std::string& id);
    [[nodiscard]] std::optional<Session> sessionOf(const Request& request);

    Store& m_store;
    PackReader m_packs;
    ProjectLists m_lists;
    RevisionCache m_revisions;
    Uploads m_uploads;
    ConversionApi m_conversions;
    WorkerApi m_workers;
    WebPages m_pages;
    LoginGuard m_guard;
    std::chrono::seconds m_tokenLife;
};

} // namespace server
