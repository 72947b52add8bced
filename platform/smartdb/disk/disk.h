// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

namespace ZRSmartDB
{

/// A new file that is being written. One that goes without `close` is incomplete. One thread at a time.
class OutputFile
{
public:
    virtual ~OutputFile() = default;

    /// Appends bytes.
    virtual void write(std::span<const std::byte> bytes) = 0;

    /// Ends the file. Its modification time lies a while back: a later edit then always shows in it, however
    /// coarse the clock of the file system is.
    virtual void close() = 0;
};

/// A lock that other processes see; its owner's death frees it.
class FolderLock
{
public:
    virtual ~FolderLock() = default;
};

/// What the library does to folders and plain files, in one place, so that tests can make any step of it
/// fail. Every operation throws Failure. Any thread.
class Disk
{
public:
    virtual ~Disk() = default;

    virtual void makeFolder(const std::filesystem::path& folder) = 0; ///< with its parents; may exist already

    /// `mode` as in a manifest: 0644 or 0755.
    [[nodiscard]] virtual std::unique_ptr<OutputFile> create(const std::filesystem::path& file,
                                                             std::uint32_t mode) = 0;

    /// Renames a file, which may replace another, or a folder, which may not.
    virtual void move(const std::filesystem::path& from, const std::filesystem::path& to) = 0;

    /// Lets two folders change places, at once where the file system can do that.
    virtual void exchange(const std::filesystem::path& one, const std::filesystem::path& other) = 0;

    /// Gives a file a second name, or copies it where the file system knows no such thing.
    virtual void link(const std::filesystem::path& file, const std::filesystem::path& to) = 0;

    /// Removes a file or a folder with all that is in it; a missing one is no failure.
    virtual void remove(const std::filesystem::path& path) = 0;

    /// The bytes that may still be written below a folder.
    [[nodiscard]] virtual std::uint64_t room(const std::filesystem::path& folder) = 0;

    /// Null when another process, or another lock of this one, has the folder, or when there is no such
    /// folder.
    [[nodiscard]] virtual std::unique_ptr<FolderLock> tryLock(const std::filesystem::path& folder) = 0;
};

/// The disk of this machine.
[[nodiscard]] std::shared_ptr<Disk> LocalDisk();

/// Writes `bytes` through a temporary file beside `file`, so that a reader sees the old file or the new one.
void WriteWhole(Disk& disk, const std::filesystem::path& file, std::string_view bytes);

} // namespace ZRSmartDB
