// SPDX-License-Identifier: MIT
#include "server/projects/revisioncache.h"

#include <algorithm>
#include <stdexcept>

namespace server
{

namespace
{

constexpr std::size_t mostBytes = 48U << 20U;

std::shared_ptr<const LoadedRevision> Load(Revision revision)
{
    auto decoded = wire::DecodeManifest(revision.manifest);
    if (const auto* refusal = std::get_if<wire::Refusal>(&decoded))
        throw std::runtime_error("a stored manifest is damaged: " + refusal->reason);

    auto loaded = std::make_shared<LoadedRevision>();
    loaded->encodedManifest = std::move(revision.manifest);
    loaded->manifest = std::get<wire::Manifest>(std::move(decoded));
    std::size_t pieces = 0;
    for (const auto& file : loaded->manifest.files) {
        loaded->firstPieces.push_back(pieces);
        pieces += file.pieces.size();
    }
    auto layout = Layout::decode(revision.layout, pieces);
    if (!layout)
        throw std::runtime_error("a stored layout is damaged");
    loaded->layout = std::move(*layout);
    return loaded;
}

std::size_t BytesOf(const LoadedRevision& revision)
{
    return 2 * revision.encodedManifest.size() + revision.layout.pieceCount() * sizeof(PieceLocation);
}

} // namespace

std::shared_ptr<const LoadedRevision> RevisionCache::find(const std::string& guid, const wire::Digest& root)
{
    const std::string key = guid + '/' + wire::ToHex(root);
    {
        const std::lock_guard lock(m_mutex);
        const auto known = std::find_if(m_entries.begin(), m_entries.end(),
                                        [&](const Entry& entry) { return entry.key == key; });
        if (known != m_entries.end()) {
            m_entries.splice(m_entries.begin(), m_entries, known);
            return known->revision;
        }
    }
    auto revision = m_store.findRevision(guid, root);
    if (!revision)
        return nullptr;
    auto loaded = Load(std::move(*revision));

    const std::lock_guard lock(m_mutex);
    m_entries.push_front({key, loaded, BytesOf(*loaded)});
    m_bytes += m_entries.front().bytes;
    while (m_bytes > mostBytes && m_entries.size() > 1) {
        m_bytes -= m_entries.back().bytes;
        m_entries.pop_back();
    }
    return loaded;
}

} // namespace server
