// SPDX-License-Identifier: MIT
#include "server/projects/revisionfile.h"

#include "wire/piecestream.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>

#include <unistd.h>

namespace server
{

namespace
{

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

const wire::FileEntry* FindFile(const LoadedRevision& revision, const std::string& path)
{
    const auto& files = revision.manifest.files;
    const auto file =
        std::find_if(files.begin(), files.end(), [&](const auto& entry) { return entry.path == path; });
    return file != files.end() ? &*file : nullptr;
}

std::string FileBytes(PackReader& packs, const LoadedRevision& revision, const wire::FileEntry& entry)
{
    const auto file = static_cast<std::size_t>(&entry - revision.manifest.files.data());
    std::vector<PackRange> ranges;
    revision.layout.appendRanges(revision.firstPieces[file], entry.pieces.size(), ranges);
    std::string bytes;
    bytes.reserve(entry.size);
    wire::PieceStreamReader reader([&](std::span<const std::byte> piece) {
        bytes.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    });
    for (const auto& range : ranges) {
        const auto pack = packs.open(range.pack);
        if (!pack)
            throw std::runtime_error("a pack is missing");
        const std::string frames = ReadRange(*pack, range);
        if (!reader.feed(std::as_bytes(std::span(frames))))
            throw std::runtime_error("a pack is damaged");
    }
    return bytes;
}

} // namespace server
