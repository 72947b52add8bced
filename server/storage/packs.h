// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

namespace server
{

/// Where a piece lies: its frame (header and stored bytes, as they go over the wire) in one of the pack
/// files.
struct PieceLocation {
    std::uint32_t pack = 0;
    std::uint64_t offset = 0;
    std::uint32_t length = 0; ///< of the whole frame

    friend bool operator==(const PieceLocation&, const PieceLocation&) = default;
};

/// An open file, closed when the last user lets go.
class OpenFile
{
public:
    explicit OpenFile(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

/// Reads the pack files: large files that only ever grow, so that an offset stays good for ever. Any thread.
class PackReader
{
public:
    explicit PackReader(std::filesystem::path folder)
        : m_folder(std::move(folder))
    {
    }

    /// The file of a pack, opened once and kept; null when it is not there.
    [[nodiscard]] std::shared_ptr<const OpenFile> open(std::uint32_t pack);

private:
    std::filesystem::path m_folder;
    std::mutex m_mutex; ///< protects the table of open files
    std::unordered_map<std::uint32_t, std::shared_ptr<const OpenFile>> m_files;
};

/// The disk took no more bytes.
class DiskFull : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Appends frames to a pack that no other writer has, in this process or another; several writers fill
/// several packs side by side. What a killed writer left behind its last commit stays as dead bytes and harms
/// nobody. A writer that has thrown is not to be used any more. One thread at a time.
class PackWriter
{
public:
    /// Throws std::runtime_error when the folder cannot be written.
    explicit PackWriter(std::filesystem::path folder);
    PackWriter(const PackWriter&) = delete;
    PackWriter& operator=(const PackWriter&) = delete;
    ~PackWriter();

    /// Throws std::runtime_error, DiskFull on a full disk.
    [[nodiscard]] PieceLocation append(std::string_view frame);

    /// Writes what was appended and gives the file, so that SyncToDisk can wait for the disk while others
    /// append.
    [[nodiscard]] std::unique_ptr<OpenFile> flush();

    /// Returns when everything that was appended is on the disk. Throws std::runtime_error.
    void sync();

private:
    /// Opens the first pack from `m_pack` on that has room and no other writer.
    void openNext();
    void writeBuffer();
    void close();

    std::filesystem::path m_folder;
    int m_descriptor = -1;
    std::uint32_t m_pack = 0;
    std::uint64_t m_size = 0;
    std::string m_buffer; ///< appended and not yet written
};

/// Returns when everything that was written to the file is on the disk. Throws std::runtime_error.
void SyncToDisk(const OpenFile& file);

/// The name of a pack's file.
[[nodiscard]] std::string PackName(std::uint32_t pack);

} // namespace server
