// SPDX-License-Identifier: MIT
#include "server/http/api.h"
#include "wire/piecestream.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>

#include <nlohmann/json.hpp>
#include <unistd.h>

namespace server
{

namespace
{

constexpr std::uint64_t largestFile = 64U << 20U; ///< larger files are fetched by their pieces

std::string ReadRange(const OpenFile& file, const PackRange& range)
{
    std::string bytes(range.length, '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const auto got = ::pread(file.descriptor(), bytes.data() + done, bytes.size() - done,
                                 static_cast<off_t>(range.offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw std::runtime_error("a pack is shorter than its pieces");
        done += static_cast<std::size_t>(got);
    }
    return bytes;
}

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
    const auto missing = ErrorReply(404, code::missing, "there is no such file");
    const auto root = wire::DigestFromHex(state.head);
    const auto revision = root ? m_revisions.find(state.guid, *root) : nullptr;
    if (!revision)
        return missing;
    const auto& files = revision->manifest.files;
    const auto file =
        std::find_if(files.begin(), files.end(), [&](const auto& entry) { return entry.path == path; });
    if (file == files.end())
        return missing;
    if (file->size > largestFile)
        return ErrorReply(413, code::tooLarge, "the file is too large to be fetched in one piece");
    Reply reply;
    reply.contentType = "application/octet-stream";
    reply.body = fileBytes(*revision, static_cast<std::size_t>(file - files.begin()));
    return reply;
}

std::string Api::fileBytes(const LoadedRevision& revision, std::size_t file)
{
    const auto& entry = revision.manifest.files[file];
    std::vector<PackRange> ranges;
    revision.layout.appendRanges(revision.firstPieces[file], entry.pieces.size(), ranges);
    std::string bytes;
    bytes.reserve(entry.size);
    wire::PieceStreamReader reader([&](std::span<const std::byte> piece) {
        bytes.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    });
    for (const auto& range : ranges) {
        const auto pack = m_packs.open(range.pack);
        if (!pack)
            throw std::runtime_error("a pack is missing");
        const std::string frames = ReadRange(*pack, range);
        if (!reader.feed(std::as_bytes(std::span(frames))))
            throw std::runtime_error("a pack is damaged");
    }
    return bytes;
}

} // namespace server
