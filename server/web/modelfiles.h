// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"
#include "server/projects/revisioncache.h"
#include "server/storage/packs.h"
#include "server/storage/store.h"

#include <string>

namespace server
{

/// What the project page shows in 3D: the models of a project, and the files of their newest revisions. The
/// caller has made sure that the account sees the project. Any thread.
class ModelFiles
{
public:
    ModelFiles(Store& store, RevisionCache& revisions, PackReader& packs)
        : m_store(store)
        , m_revisions(revisions)
        , m_packs(packs)
    {
    }

    /// projects/{guid}/models
    [[nodiscard]] static bool isList(const Request& request);
    /// projects/{guid}/models/{id}/{file}
    [[nodiscard]] static bool isFile(const Request& request);

    /// The models of a project, in the order in which they came, as JSON. A model is its own only one.
    [[nodiscard]] Reply list(const Session& session, const Project& project);
    /// One of the three files that browsers may have of a model; 404 for every other, and for models of
    /// another project.
    [[nodiscard]] Reply file(const Request& request, const Session& session, const Project& project);

private:
    [[nodiscard]] std::shared_ptr<const LoadedRevision> newest(const ProjectState& state);

    Store& m_store;
    RevisionCache& m_revisions;
    PackReader& m_packs;
};

} // namespace server
