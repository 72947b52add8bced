// SPDX-License-Identifier: MIT
#include "server/projects/filestream.h"

#include <algorithm>
#include <cerrno>
#include <span>
#include <stdexcept>
#include <utility>

#include <unistd.h>

namespace server
{

namespace
{

constexpr std::uint64_t stepBytes = 1U << 20U; ///< of a pack, read at once

} // namespace

FileStream::FileStream(PackReader& packs, std::shared_ptr<const LoadedRevision> revision,
                       const wire::FileEntry& entry)
    : m_packs(packs)
    , m_revision(std::move(revision))
    , m_size(entry.size)
    , m_reader([this](std::span<const std::byte> piece) {
        m_unpacked.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    })
{
    const auto file = static_cast<std::size_t>(&entry - m_revision->manifest.files.data());
    m_revision->layout.appendRanges(m_revision->firstPieces[file], entry.pieces.size(), m_ranges);
}

std::string FileStream::next()
{
    while (m_unpacked.empty() && m_range < m_ranges.size())
        readStep();
    m_given += m_unpacked.size();
    const bool isEnd = m_unpacked.empty();
    if (m_given > m_size || (isEnd && (m_given < m_size || !m_reader.isComplete())))
        throw std::runtime_error("a pack is damaged");
    return std::exchange(m_unpacked, {});
}

void FileStream::readStep()
{
    const auto& range = m_ranges[m_range];
    const auto pack = m_packs.open(range.pack);
    if (!pack)
        throw std::runtime_error("a pack is missing");
    std::string frames(std::min(range.length - m_done, stepBytes), '\0');
    const auto got =
        ::pread(pack->descriptor(), frames.data(), frames.size(), static_cast<off_t>(range.offset + m_done));
    if (got < 0 && errno == EINTR)
        return;
    if (got <= 0)
        throw std::runtime_error("a pack is shorter than its pieces");
    frames.resize(static_cast<std::size_t>(got));
    if (!m_reader.feed(std::as_bytes(std::span(frames))))
        throw std::runtime_error("a pack is damaged");
    m_done += frames.size();
    if (m_done == range.length) {
        ++m_range;
        m_done = 0;
    }
}

} // namespace server
