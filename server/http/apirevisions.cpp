// SPDX-License-Identifier: MIT
#include "server/http/api.h"
#include "wire/manifestdelta.h"

#include <stdexcept>

#include <zstd.h>

namespace server
{

namespace
{

constexpr int compressionLevel = 3;
constexpr std::uint64_t mostPieces = 1U << 20U; ///< in one answer; clients ask for a part at a time

Reply NoRevision()
{
    return ErrorReply(404, code::missing, "there is no such revision");
}

std::string Compressed(const std::string& bytes)
{
    std::string packed(ZSTD_compressBound(bytes.size()), '\0');
    const auto size =
        ZSTD_compress(packed.data(), packed.size(), bytes.data(), bytes.size(), compressionLevel);
    if (ZSTD_isError(size) != 0)
        throw std::runtime_error("an answer cannot be compressed");
    packed.resize(size);
    return packed;
}

} // namespace

Reply Api::manifest(const Request& request, const std::string& guid, const std::string& root)
{
    const auto name = wire::DigestFromHex(root);
    const auto revision = name ? m_revisions.find(guid, *name) : nullptr;
    if (!revision)
        return NoRevision();
    Reply reply;
    reply.contentType = "application/x-torvo-manifest";
    if (request.acceptEncoding.find("zstd") == std::string::npos) {
        reply.sharedBody = std::shared_ptr<const std::string>(revision, &revision->encodedManifest);
    } else {
        reply.headers.emplace_back("Content-Encoding", "zstd");
        reply.body = Compressed(revision->encodedManifest);
    }
    return reply;
}

Reply Api::manifestDelta(const std::string& guid, const std::string& root, const std::string& base)
{
    const auto name = wire::DigestFromHex(root);
    const auto baseName = wire::DigestFromHex(base);
    const auto revision = name ? m_revisions.find(guid, *name) : nullptr;
    const auto baseRevision = baseName ? m_revisions.find(guid, *baseName) : nullptr;
    if (!revision || !baseRevision)
        return NoRevision();
    Reply reply;
    reply.contentType = "application/x-torvo-manifest-delta";
    reply.body = wire::EncodeManifestDelta(baseRevision->manifest, revision->manifest);
    return reply;
}

Reply Api::pieces(const Request& request, const std::string& guid, const std::string& root)
{
    const auto name = wire::DigestFromHex(root);
    const auto revision = name ? m_revisions.find(guid, *name) : nullptr;
    if (!revision)
        return NoRevision();
    auto runs = wire::DecodeRuns(request.body, revision->manifest);
    if (const auto* refusal = std::get_if<wire::Refusal>(&runs))
        return ErrorReply(400, code::badRequest, refusal->reason);

    Reply reply;
    reply.contentType = "application/x-torvo-pieces";
    std::uint64_t wanted = 0;
    for (const auto& run : std::get<std::vector<wire::PieceRun>>(runs)) {
        wanted += run.count;
        if (wanted > mostPieces)
            return ErrorReply(413, code::tooLarge, "too many pieces for one answer");
        revision->layout.appendRanges(revision->firstPieces[run.file] + run.first, run.count, reply.ranges);
    }
    return reply;
}

} // namespace server
