// SPDX-License-Identifier: MIT
#include "server/projects/publish.h"

#include "server/storage/layout.h"
#include "wire/cutting.h"
#include "wire/manifest.h"
#include "wire/piecestream.h"
#include "wire/projectfolder.h"

#include <array>
#include <fstream>
#include <random>
#include <stdexcept>
#include <unordered_map>

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/SQLiteCpp.h>

namespace server
{

namespace
{

bool IsDatabase(const std::filesystem::path& file)
{
    std::array<std::byte, 512> head{};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(head.data()), head.size());
    return wire::SqlitePageSize(head, 512ULL * 65536ULL) > 0;
}

/// A copy of a database as it stood at one moment. Removed with the object.
class Snapshot
{
public:
    explicit Snapshot(const std::filesystem::path& database)
        : m_file(std::filesystem::temp_directory_path() /
                 ("torvo-snapshot-" + std::to_string(std::random_device()())))
    {
        SQLite::Database source(database.string(), SQLite::OPEN_READONLY, 10000);
        SQLite::Database copy(m_file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        SQLite::Backup(copy, source).executeStep();
        // What travels is one file: no log beside it, and none asked for by its header.
        copy.exec("PRAGMA journal_mode=DELETE");
    }
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;
    ~Snapshot()
    {
        std::error_code ignored;
        std::filesystem::remove(m_file, ignored);
    }

    [[nodiscard]] const std::filesystem::path& file() const { return m_file; }

private:
    std::filesystem::path m_file;
};

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
    auto entry =
        IsDatabase(file) ? wire::CutFile(Snapshot(file).file(), path, sink) : wire::CutFile(file, path, sink);
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
