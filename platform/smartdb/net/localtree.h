// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/data/syncstate.h"
#include "wire/cutting.h"
#include "wire/manifest.h"
#include "wire/snapshot.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZRSmartDB
{

/// What stands in a project's folder at one moment, described for a transfer. Files that look as they did
/// when the project was last equal to the server are not read. Databases are read as consistent snapshots,
/// which live as long as the object. One thread; reading pieces, any thread.
class LocalTree
{
public:
    /// Describes a folder; `scratch` is an existing folder for the snapshots. `sink` gets each piece that is
    /// read, by two threads, also of a file that turns out to have changed meanwhile and is read again.
    /// Throws Failure when the folder cannot be read, or is written too busily to get hold of it, and what
    /// the sink throws.
    LocalTree(std::filesystem::path folder, std::filesystem::path scratch, wire::PieceSink sink = NoSink);
    LocalTree(const LocalTree&) = delete;
    LocalTree& operator=(const LocalTree&) = delete;
    ~LocalTree();

    [[nodiscard]] const wire::Manifest& manifest() const { return m_manifest; }

    /// What is to be remembered when the server has taken these files. Files that change from now on will
    /// show as changed.
    [[nodiscard]] const SyncState& state() const { return m_state; }

    /// The revision that the folder was last equal to, empty for none, and its files where they are known.
    [[nodiscard]] const std::string& baseRevision() const { return m_baseRevision; }
    [[nodiscard]] const wire::Manifest* baseFiles() const { return m_base ? &*m_base : nullptr; }

    /// Where the bytes of a file of the manifest can be read.
    [[nodiscard]] std::filesystem::path source(std::size_t file) const;

private:
    static void NoSink(const wire::Piece& /*piece*/, std::span<const std::byte> /*bytes*/) {}

    struct Known;

    /// One file at the moment of the description.
    struct Described {
        wire::FileEntry entry;
        FileStamp stamp;
        std::int64_t changeCounter = 0;           ///< of the project's database
        std::unique_ptr<wire::Snapshot> snapshot; ///< of a database that had to be read
    };

    [[nodiscard]] std::vector<Described> describeAll(const std::vector<std::string>& paths,
                                                     const Known& known) const;
    [[nodiscard]] Described describe(const std::string& path, const std::filesystem::path& scratch,
                                     const Known& known) const;
    void cut(const std::string& path, const std::filesystem::path& scratch, Described& described) const;
    void take(Described file);

    const std::filesystem::path m_folder;
    const std::filesystem::path m_scratch;
    const wire::PieceSink m_sink;
    std::string m_baseRevision;
    std::optional<wire::Manifest> m_base;
    wire::Manifest m_manifest;
    SyncState m_state;
    std::unordered_map<std::string, std::unique_ptr<wire::Snapshot>> m_snapshots; ///< by path
};

/// A run of bytes of a local file that is one piece of it.
struct PiecePlace {
    std::uint32_t file = 0; ///< index in the manifest
    std::uint64_t offset = 0;
    std::uint32_t size = 0;
    wire::Digest name;
};

/// Reads pieces of a tree and checks each. Keeps the file of the last piece open. One thread.
class PieceReader
{
public:
    explicit PieceReader(const LocalTree& tree);
    ~PieceReader();
    PieceReader(const PieceReader&) = delete;
    PieceReader& operator=(const PieceReader&) = delete;

    /// The bytes, valid until the next call. Nothing when the file does not hold the piece any more: somebody
    /// has changed it.
    [[nodiscard]] std::optional<std::span<const std::byte>> read(const PiecePlace& place);

private:
    class File;

    const LocalTree& m_tree;
    std::unique_ptr<File> m_file;
    std::uint32_t m_index = UINT32_MAX;
    std::vector<std::byte> m_bytes;
};

} // namespace ZRSmartDB
