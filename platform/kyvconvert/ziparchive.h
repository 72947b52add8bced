// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct zip;

namespace kyvconvert
{

/// Why an archive is not read.
class BadArchive : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A zip file that others have made: its entries are looked at when it is opened, all of them, and the
/// archive is refused when one of them climbs out of the folder, is a link or is locked, or when it would be
/// more than can be meant.
class ZipReader
{
public:
    explicit ZipReader(const std::filesystem::path& file);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// Names of the files whose names end so, in the order of the names.
    [[nodiscard]] std::vector<std::string> namesEndingWith(std::string_view ending) const;

    /// The bytes of a file: exactly as many as the archive says, with its checksum.
    [[nodiscard]] std::vector<unsigned char> read(const std::string& name) const;

private:
    struct Closer {
        void operator()(zip* archive) const;
    };

    void look(std::uint64_t index);

    std::unique_ptr<zip, Closer> m_archive;
    std::map<std::string, std::uint64_t> m_files; ///< numbers of the entries by name
    std::uint64_t m_size = 0;                     ///< of all files, unpacked
};

/// Puts a zip file together.
class ZipWriter
{
public:
    explicit ZipWriter(const std::filesystem::path& file);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    /// The bytes must live until the archive is finished.
    void add(const std::string& name, std::string_view bytes);

    /// Writes all of it.
    void finish();

private:
    zip* m_archive = nullptr;
};

} // namespace kyvconvert
