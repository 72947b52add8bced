// SPDX-License-Identifier: MIT
#include "smartdb/net/remotetree.h"

#include "smartdb/failure.h"
#include "wire/manifestdelta.h"
#include "wire/projectfolder.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr std::size_t largestManifest = 64U << 20U;
constexpr std::chrono::seconds manifestTime(120);
constexpr unsigned notFound = 404;

Failure BadReply(const std::string& what)
{
    return {http::faultcode::badReply, "the project server answered with something that is no " + what};
}

/// The server must not put anything into a project's folder that is this machine's own.
void RequireProjectFiles(const wire::Manifest& manifest)
{
    const auto isStrange = [](const wire::FileEntry& file) { return !wire::IsProjectFile(file.path); };
    const auto strange = std::find_if(manifest.files.begin(), manifest.files.end(), isStrange);
    if (strange != manifest.files.end())
        throw Failure(http::faultcode::badReply,
                      "the project server named a file that is none of a project: " + strange->path);
    const auto isDatabase = [](const wire::FileEntry& file) {
        return file.path == wire::projectDatabaseName;
    };
    if (std::none_of(manifest.files.begin(), manifest.files.end(), isDatabase))
        throw Failure(http::faultcode::badReply, "the project server named a project without a database");
}

/// The newest revision that an answer tells of; nothing when the project has no content yet.
std::optional<wire::Digest> HeadIn(const std::string& answer)
{
    const auto project = json::parse(answer, nullptr, false);
    if (!project.is_object() || !project.contains("head") || !project["head"].is_string())
        throw BadReply("project");
    const auto head = project["head"].get<std::string>();
    if (head.empty())
        return std::nullopt;
    const auto root = wire::DigestFromHex(head);
    if (!root)
        throw BadReply("project");
    return root;
}

} // namespace

http::Reply SendOrThrow(http::Client& client, const http::Request& request)
{
    auto reply = client.send(request);
    if (reply.fault)
        throw Failure(reply.fault);
    return reply;
}

std::string ProjectPath(const std::string& guid)
{
    return "/api/v1/projects/" + http::EncodedName(guid);
}

std::string RevisionPath(const std::string& guid, const wire::Digest& root)
{
    return ProjectPath(guid) + "/revisions/" + wire::ToHex(root);
}

std::optional<wire::Digest> RemoteTree::head() const
{
    const auto reply = m_client.send({.path = ProjectPath(m_guid)});
    if (reply.fault && reply.status == notFound)
        return std::nullopt;
    if (reply.fault)
        throw Failure(reply.fault);
    return HeadIn(reply.body);
}

wire::Digest RemoteTree::existingHead() const
{
    const auto root = HeadIn(SendOrThrow(m_client, {.path = ProjectPath(m_guid)}).body);
    if (!root)
        throw Failure(localcode::notHere, "the project has no content on the server yet");
    return *root;
}

std::optional<wire::Manifest> RemoteTree::filesFrom(const wire::Digest& root,
                                                    const wire::Manifest& known) const
{
    const auto reply =
        m_client.send({.path = RevisionPath(m_guid, root) + "/from/" + wire::ToHex(wire::RootOf(known)),
                       .timeout = manifestTime,
                       .largestReply = largestManifest});
    if (reply.fault && reply.status == notFound)
        return std::nullopt;
    if (reply.fault)
        throw Failure(reply.fault);
    auto decoded = wire::DecodeManifestDelta(known, reply.body);
    if (auto* manifest = std::get_if<wire::Manifest>(&decoded))
        return std::move(*manifest);
    return std::nullopt;
}

wire::Manifest RemoteTree::files(const wire::Digest& root, const wire::Manifest* known) const
{
    std::optional<wire::Manifest> manifest;
    if (known != nullptr)
        manifest = filesFrom(root, *known);
    if (!manifest) {
        const auto reply = SendOrThrow(
            m_client,
            {.path = RevisionPath(m_guid, root), .timeout = manifestTime, .largestReply = largestManifest});
        auto decoded = wire::DecodeManifest(reply.body);
        if (const auto* refusal = std::get_if<wire::Refusal>(&decoded))
            throw Failure(http::faultcode::badReply,
                          "the project server named files that cannot be taken: " + refusal->reason);
        manifest = std::get<wire::Manifest>(std::move(decoded));
    }
    if (wire::RootOf(*manifest) != root)
        throw BadReply("list of the project's files");
    RequireProjectFiles(*manifest);
    return std::move(*manifest);
}

} // namespace ZRSmartDB
