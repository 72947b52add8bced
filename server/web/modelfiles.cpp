// SPDX-License-Identifier: MIT
#include "server/web/modelfiles.h"

#include "server/projects/filestream.h"
#include "server/projects/revisionfile.h"
#include "server/web/page.h"

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

constexpr const char* geometryFile = "model.glb";

struct SentFile {
    std::string_view name;
    std::string_view type;
};

constexpr std::array sentFiles{
    SentFile{geometryFile, "model/gltf-binary"},
    SentFile{"floors.json", "application/json"},
    SentFile{"model.json", "application/json"},
};

Reply NoSuchFile()
{
    auto missing = EmptyReply(404);
    AddGuards(missing);
    return missing;
}

bool IsModelOf(const Project& model, const Project& project)
{
    return model.type == "MODEL" && (model.parent == project.guid || model.guid == project.guid);
}

} // namespace

bool ModelFiles::isList(const Request& request)
{
    return request.path.size() == 3 && request.path[0] == "projects" && request.path[2] == "models";
}

bool ModelFiles::isFile(const Request& request)
{
    return request.path.size() == 5 && request.path[0] == "projects" && request.path[2] == "models";
}

std::shared_ptr<const LoadedRevision> ModelFiles::newest(const ProjectState& state)
{
    const auto root = wire::DigestFromHex(state.head);
    return root ? m_revisions.find(state.guid, *root) : nullptr;
}

Reply ModelFiles::list(const Session& session, const Project& project)
{
    auto models = m_store.modelsOf(project.guid);
    if (project.type == "MODEL")
        models = {{project.guid, project.name}};
    json entries = json::array();
    for (const auto& model : models) {
        const auto found = m_store.findProject(session.account, model.guid);
        const auto revision = found ? newest(found->second) : nullptr;
        if (!revision)
            continue;
        const auto* geometry = FindFile(*revision, geometryFile);
        json files = json::array();
        for (const auto& sent : sentFiles) {
            if (FindFile(*revision, std::string(sent.name)) != nullptr)
                files.push_back(sent.name);
        }
        entries.push_back({{"id", model.guid},
                           {"name", model.name},
                           {"bytes", geometry != nullptr ? geometry->size : 0},
                           {"files", std::move(files)}});
    }
    auto reply = JsonReply(200, json{{"models", std::move(entries)}}.dump());
    reply.headers.emplace_back("Cache-Control", "no-store");
    AddGuards(reply);
    return reply;
}

Reply ModelFiles::file(const Request& request, const Session& session, const Project& project)
{
    const auto& name = request.path[4];
    const auto sent = std::find_if(sentFiles.begin(), sentFiles.end(),
                                   [&](const SentFile& candidate) { return candidate.name == name; });
    const auto found = m_store.findProject(session.account, request.path[3]);
    if (sent == sentFiles.end() || !found || !IsModelOf(found->first, project))
        return NoSuchFile();
    const auto revision = newest(found->second);
    const auto* entry = revision ? FindFile(*revision, name) : nullptr;
    if (entry == nullptr)
        return NoSuchFile();
    // Asked for again each time, as the picture is: the next account at this browser may not see it.
    const std::string tag = '"' + wire::ToHex(entry->content) + '"';
    Reply reply;
    if (request.ifNoneMatch == tag) {
        reply.status = 304;
    } else {
        reply.contentType = sent->type;
        reply.source = std::make_shared<FileStream>(m_packs, revision, *entry);
    }
    reply.headers.emplace_back("ETag", tag);
    reply.headers.emplace_back("Cache-Control", "private, no-cache");
    AddGuards(reply);
    return reply;
}

} // namespace server
