// SPDX-License-Identifier: MIT
#pragma once

#include "smartdb/disk/disk.h"
#include "wire/manifest.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace ZRSmartDB
{

/// Writes the files of a revision one after the other from the bytes of all of them in order. The bytes have
/// been checked, piece by piece. Operations throw Failure.
class RevisionWriter
{
public:
    /// `folder` must exist and be empty; disk and manifest must outlive the writer.
    RevisionWriter(Disk& disk, const wire::Manifest& manifest, std::filesystem::path folder);

    /// The next bytes of the revision; they may reach over the borders of files.
    void write(std::span<const std::byte> bytes);

    /// To be called when all bytes have been written: makes the empty files at the end, and refuses a
    /// revision that is not complete.
    void finish();

private:
    void begin();
    void end();
    void endWholeFiles();

    Disk& m_disk;
    const wire::Manifest& m_manifest;
    const std::filesystem::path m_folder;
    std::size_t m_index = 0;     ///< of the file that comes next or is being written
    std::uint64_t m_written = 0; ///< of that file
    std::unique_ptr<OutputFile> m_output;
};

} // namespace ZRSmartDB
