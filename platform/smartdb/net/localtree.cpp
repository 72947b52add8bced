// SPDX-License-Identifier: MIT
#include "smartdb/net/localtree.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"
#include "wire/projectfolder.h"

#include <atomic>
#include <fstream>
#include <future>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

constexpr int attempts = 3;

} // namespace

/// What is known of the files from the last equality.
struct LocalTree::Known {
    explicit Known(const std::optional<SyncState>& state, const wire::Manifest* base)
    {
        if (!state || base == nullptr)
            return;
        for (const auto& file : base->files) {
            entries.emplace(wire::ToHex(file.content), &file);
            if (file.path == wire::projectDatabaseName)
                databaseEntry = &file;
        }
        for (const auto& file : state->files)
            stamps.emplace(file.stamp.identity, &file);
        changeCounter = state->changeCounter;
        database = state->database;
    }

    /// The entry of a file that looks like one of those, under whatever name: a renamed file is not read.
    [[nodiscard]] const wire::FileEntry* find(const FileStamp& stamp) const
    {
        const auto file = stamps.find(stamp.identity);
        if (file == stamps.end() || !LooksUnchanged(file->second->stamp, stamp))
            return nullptr;
        const auto entry = entries.find(file->second->content);
        return entry != entries.end() ? entry->second : nullptr;
    }

    [[nodiscard]] const wire::FileEntry* findDatabase(const FileStamp& stamp) const
    {
        return LooksUnchanged(database, stamp) ? databaseEntry : nullptr;
    }

    std::unordered_map<std::string, const wire::FileEntry*> entries; ///< by content
    std::unordered_map<std::uint64_t, const SyncedFile*> stamps;     ///< by identity
    const wire::FileEntry* databaseEntry = nullptr;
    std::int64_t changeCounter = 0;
    FileStamp database;
};

LocalTree::LocalTree(fs::path folder, fs::path scratch, wire::PieceSink sink)
    : m_folder(std::move(folder))
    , m_scratch(std::move(scratch))
    , m_sink(std::move(sink))
{
    const auto noted = ReadSyncState(m_folder);
    if (noted) {
        m_baseRevision = noted->revision;
        m_base = ReadSyncedManifest(m_folder, noted->revision);
    }
    const Known known(noted, baseFiles());
    std::vector<std::string> paths;
    try {
        paths = wire::ProjectFiles(m_folder);
    } catch (const fs::filesystem_error& error) {
        throw Failure(localcode::cannotWrite, m_folder.string() + " cannot be read: " + error.what());
    }
    for (auto& file : describeAll(paths, known))
        take(std::move(file));
    if (const auto refusal = wire::ManifestRefusal(m_manifest); !refusal.empty())
        throw Failure(localcode::badInput, "the project cannot be sent: " + refusal);
    m_state.revision = wire::ToHex(wire::RootOf(m_manifest));
}

LocalTree::~LocalTree() = default;

std::vector<LocalTree::Described> LocalTree::describeAll(const std::vector<std::string>& paths,
                                                         const Known& known) const
{
    std::vector<Described> files(paths.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        try {
            for (auto i = next++; i < paths.size(); i = next++)
                files[i] = describe(paths[i], m_scratch / ("snapshot-" + std::to_string(i)), known);
        } catch (...) {
            next = paths.size(); // the other need not go on
            throw;
        }
    };
    auto other = std::async(std::launch::async, work);
    work();
    other.get();
    return files;
}

LocalTree::Described LocalTree::describe(const std::string& path, const fs::path& scratch,
                                         const Known& known) const
{
    const bool isProject = path == wire::projectDatabaseName;
    const auto file = m_folder / PathOfUtf8(path);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        // Looked at before it is read: a change from then on will show.
        Described described;
        described.stamp = isProject ? DatabaseStamp(m_folder) : StampOf(file);
        const auto* entry = isProject ? known.findDatabase(described.stamp) : known.find(described.stamp);
        if (entry != nullptr) {
            described.entry = *entry;
            described.entry.path = path;
            described.changeCounter = known.changeCounter;
        } else {
            cut(path, scratch, described);
        }
        if (isProject && described.snapshot)
            described.changeCounter = ProjectFile::readChangeCounterOf(described.snapshot->file());
        if (described.snapshot || described.stamp == (isProject ? DatabaseStamp(m_folder) : StampOf(file)))
            return described;
    }
    throw Failure(localcode::cannotWrite, file.string() + " is being changed all the time");
}

void LocalTree::cut(const std::string& path, const fs::path& scratch, Described& described) const
{
    if (const auto refusal = wire::PathRefusal(path); !refusal.empty())
        throw Failure(localcode::badInput, path + " cannot be sent: " + refusal);
    auto file = m_folder / PathOfUtf8(path);
    if (wire::IsDatabaseFile(file)) {
        described.snapshot = std::make_unique<wire::Snapshot>(file, scratch);
        if (!described.snapshot->refusal().empty())
            throw Failure(localcode::cannotWrite, described.snapshot->refusal());
        file = described.snapshot->file();
    }
    auto entry = wire::CutFile(file, path, m_sink);
    if (const auto* refusal = std::get_if<wire::Refusal>(&entry))
        throw Failure(localcode::cannotWrite, refusal->reason);
    described.entry = std::get<wire::FileEntry>(std::move(entry));
}

void LocalTree::take(Described file)
{
    const auto& path = file.entry.path;
    if (path == wire::projectDatabaseName) {
        m_state.database = file.stamp;
        m_state.changeCounter = file.changeCounter;
    } else {
        m_state.files.push_back({path, file.stamp, wire::ToHex(file.entry.content)});
    }
    if (file.snapshot)
        m_snapshots[path] = std::move(file.snapshot);
    m_manifest.files.push_back(std::move(file.entry));
}

fs::path LocalTree::source(std::size_t file) const
{
    const auto& path = m_manifest.files[file].path;
    const auto snapshot = m_snapshots.find(path);
    return snapshot != m_snapshots.end() ? snapshot->second->file() : m_folder / PathOfUtf8(path);
}

class PieceReader::File
{
public:
    explicit File(const fs::path& path)
        : m_stream(path, std::ios::binary)
    {
    }

    bool read(std::uint64_t offset, std::span<std::byte> bytes)
    {
        if (offset != m_offset) {
            m_stream.clear();
            m_stream.seekg(static_cast<std::streamoff>(offset));
        }
        m_stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        m_offset = offset + bytes.size();
        return static_cast<bool>(m_stream);
    }

private:
    std::ifstream m_stream;
    std::uint64_t m_offset = 0;
};

PieceReader::PieceReader(const LocalTree& tree)
    : m_tree(tree)
{
}

PieceReader::~PieceReader() = default;

std::optional<std::span<const std::byte>> PieceReader::read(const PiecePlace& place)
{
    if (place.file != m_index) {
        m_file = std::make_unique<File>(m_tree.source(place.file));
        m_index = place.file;
    }
    m_bytes.resize(place.size);
    if (!m_file->read(place.offset, m_bytes) || wire::DigestOf(m_bytes) != place.name)
        return std::nullopt;
    return m_bytes;
}

} // namespace ZRSmartDB
