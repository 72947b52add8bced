// SPDX-License-Identifier: MIT
#include "server/projects/publish.h"

#include "server/storage/layout.h"
#include "wire/cutting.h"
#include "wire/manifest.h"
#include "wire/piecestream.h"
#include "wire/projectfolder.h"
#include "wire/snapshot.h"

#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <unordered_map>
#include <utility>

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

    /// Where the pieces lie that have come since this was asked last.
    [[nodiscard]] std::vector<PieceLocation> takeLocations() { return std::exchange(m_locations, {}); }

    /// What the store does not know yet, on the disk.
    [[nodiscard]] std::vector<StoredPiece> finish()
    {
        m_writer.sync();
        return std::move(m_fresh);
    }

private:
    Store& m_store;
    PackWriter m_writer;
    std::unordered_map<wire::Digest, PieceLocation> m_met;
    std::vector<PieceLocation> m_locations;
    std::vector<StoredPiece> m_fresh;
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

PreparedRevision PrepareRevision(Store& store, const std::filesystem::path& packs,
                                 const std::filesystem::path& folder, const LoadedRevision* base)
{
    struct Taken {
        wire::FileEntry entry;
        std::vector<PieceLocation> locations;
    };
    std::map<std::string, Taken> files;
    if (base != nullptr) {
        std::size_t piece = 0;
        for (const auto& entry : base->manifest.files) {
            auto& taken = files[entry.path];
            taken.entry = entry;
            for (std::size_t i = 0; i < entry.pieces.size(); ++i)
                taken.locations.push_back(base->layout.at(piece++));
        }
    }
    PieceCollector collector(store, packs);
    for (const auto& path : wire::ProjectFiles(folder)) {
        auto entry = TakeFile(folder, path, collector);
        files[path] = {std::move(entry), collector.takeLocations()};
    }
    wire::Manifest manifest;
    std::vector<PieceLocation> locations;
    for (auto& [path, taken] : files) {
        manifest.files.push_back(std::move(taken.entry));
        locations.insert(locations.end(), taken.locations.begin(), taken.locations.end());
    }
    return {{wire::RootOf(manifest), wire::EncodeManifest(manifest), Layout(std::move(locations)).encode()},
            collector.finish()};
}

wire::Digest PublishFolder(Store& store, const std::filesystem::path& packs, const std::string& guid,
                           const std::filesystem::path& folder)
{
    const auto prepared = PrepareRevision(store, packs, folder);
    store.commitRevision(guid, prepared.revision, prepared.newPieces);
    return prepared.revision.root;
}

} // namespace server
