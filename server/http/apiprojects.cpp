// SPDX-License-Identifier: MIT
#include "server/http/api.h"
#include "server/projects/revisionfile.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

constexpr std::uint64_t largestFile = 64U << 20U; ///< larger files are fetched by their pieces

} // namespace

Reply Api::project(const Project& project, const ProjectState& state)
{
    const nlohmann::json answer{{"guid", project.guid},
                                {"type", project.type},
                                {"name", project.name},
                                {"status", StatusWord(state.status)},
                                {"head", state.head}};
    return JsonReply(200, answer.dump());
}

Reply Api::projectFile(const ProjectState& state, const std::string& path)
{
    auto missing = ErrorReply(404, code::missing, "there is no such file");
    const auto root = wire::DigestFromHex(state.head);
    const auto revision = root ? m_revisions.find(state.guid, *root) : nullptr;
    if (!revision)
        return missing;
    const auto* file = FindFile(*revision, path);
    if (file == nullptr)
        return missing;
    if (file->size > largestFile)
        return ErrorReply(413, code::tooLarge, "the file is too large to be fetched in one piece");
    Reply reply;
    reply.contentType = "application/octet-stream";
    reply.body = FileBytes(m_packs, *revision, *file);
    return reply;
}

} // namespace server
