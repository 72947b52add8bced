// SPDX-License-Identifier: MIT
#include "server/projects/publish.h"

#include "server/storage/layout.h"
#include "wire/cutting.h"
#include "wire/manifest.h"
#include "wire/piecestream.h"
#include "wire/projectfolder.h"
#include "wire/snapshot.h"

#include <optional>
#include <random>
#include <stdexcept>
#include <unordered_map>

namespace server
{

namespace
{

/// A name in the system's folder for what is needed for a moment.
std::filesystem::path ScratchFile()
{
    return std::filesystem::temp_directory_path() /
           ("torvo-snapshot-" + std::to_string(std::random_device()()));
}

/// Stores the pieces that are new and notes where every piece of the revision lies.
class PieceCollector
{
public:
    PieceCollector(Store& store, const std::filesystem::path& packs)
        : m_store(store)
        , m_writer(packs)
    {
    }

    void add(const wire::Piece& piece, std::span<const std::byte> bytes)
    {
        const auto met = m_met.find(piece.name);
        if (met != m_met.end()) {
            m_locations.push_back(met->second);
            return;
        }
        auto location = m_store.findPiece(piece.name);
        if (!location) {
            location = m_writer.append(wire::FramedPiece(bytes));
            m_fresh.emplace_back(piece.name, *location);
        }
        m_met.emplace(piece.name, *location);
        m_locations.push_back(*location);
    }

    void commit(const std::string& guid, const wire::Manifest& manifest)
    {
        m_writer.sync();
        m_store.commitRevision(
            guid, {wire::RootOf(manifest), wire::EncodeManifest(manifest), Layout(m_locations).encode()},
            m_fresh);
    }

private:
    Store& m_store;
    PackWriter m_writer;
    std::unordered_map<wire::Digest, PieceLocation> m_met;
    std::vector<PieceLocation> m_locations;
    std::vector<std::pair<wire::Digest, PieceLocation>> m_fresh;
};

wire::FileEntry TakeFile(const std::filesystem::path& folder, const std::string& path,
                         PieceCollector& collector)
{
    if (auto refusal = wire::PathRefusal(path); !refusal.empty())
        throw std::runtime_error(path + ": " + refusal);
    const auto sink = [&](const wire::Piece& piece, std::span<const std::byte> bytes) {
        collector.add(piece, bytes);
    };
    const auto file = folder / std::filesystem::u8path(path);
    std::optional<wire::Snapshot> snapshot;
    if (wire::IsDatabaseFile(file)) {
        snapshot.emplace(file, ScratchFile());
        if (!snapshot->refusal().empty())
            throw std::runtime_error(path + ": " + snapshot->refusal());
    }
    auto entry = wire::CutFile(snapshot ? snapshot->file() : file, path, sink);
    if (const auto* refusal = std::get_if<wire::Refusal>(&entry))
        throw std::runtime_error(path + ": " + refusal->reason);
    return std::get<wire::FileEntry>(std::move(entry));
}

} // namespace

wire::Digest PublishFolder(Store& store, const std::filesystem::path& packs, const std::string& guid,
                           const std::filesystem::path& folder)
{
    PieceCollector collector(store, packs);
    wire::Manifest manifest;
    for (const auto& path : wire::ProjectFiles(folder))
        manifest.files.push_back(TakeFile(folder, path, collector));
    collector.commit(guid, manifest);
    return wire::RootOf(manifest);
}

} // namespace server
