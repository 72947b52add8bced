// SPDX-License-Identifier: MIT
#include "kyvconvert/ziparchive.h"

#include <algorithm>

#include <sys/stat.h>
#include <zip.h>

namespace kyvconvert
{

namespace
{

constexpr std::int64_t mostEntries = 100'000;
constexpr std::uint64_t mostBytes = 16ULL << 30U;
constexpr std::uint64_t mostBytesOfAPart = 1ULL << 30U;
constexpr std::uint64_t mostRatio = 1000;
constexpr std::uint64_t harmless = 1U << 20U; ///< below which the ratio does not matter
constexpr unsigned upperHalf = 16;            ///< of the attributes, where Unix keeps the kind of a file

/// Whether a path stays below the folder it is unpacked into, on any system.
bool Climbs(std::string_view name)
{
    if (name.empty() || name.front() == '/' || name.find('\\') != std::string_view::npos ||
        name.find(':') != std::string_view::npos || name.find('\0') != std::string_view::npos)
        return true;
    while (!name.empty()) {
        const auto end = std::min(name.find('/'), name.size());
        if (name.substr(0, end) == "..")
            return true;
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return false;
}

/// Programs that write no UTF-8 flag write names of a code that says nothing here; they are taken as they
/// are.
constexpr zip_flags_t rawNames = ZIP_FL_ENC_RAW;

} // namespace

void ZipReader::Closer::operator()(zip* archive) const
{
    zip_discard(archive);
}

ZipReader::ZipReader(const std::filesystem::path& file)
{
    int code = 0;
    m_archive.reset(zip_open(file.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (!m_archive)
        throw BadArchive("it is no archive, or it is damaged");
    const auto count = zip_get_num_entries(m_archive.get(), 0);
    if (count > mostEntries)
        throw BadArchive("it holds more files than can be meant");
    for (std::int64_t i = 0; i < count; ++i)
        look(static_cast<std::uint64_t>(i));
}

void ZipReader::look(std::uint64_t index)
{
    zip_stat_t stat;
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    constexpr auto needed = ZIP_STAT_NAME | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
    if (zip_stat_index(m_archive.get(), index, rawNames, &stat) != 0 || (stat.valid & needed) != needed)
        throw BadArchive("it is damaged");
    if (Climbs(stat.name))
        throw BadArchive("a file of it would lie outside of it");
    if (zip_file_get_external_attributes(m_archive.get(), index, 0, &system, &attributes) == 0 &&
        system == ZIP_OPSYS_UNIX && S_ISLNK(attributes >> upperHalf))
        throw BadArchive("a file of it is a link");
    if ((stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE)
        throw BadArchive("it is locked with a password");
    m_size += std::min(stat.size, mostBytes + 1);
    if (m_size > mostBytes || (stat.size > harmless && stat.size / mostRatio > stat.comp_size))
        throw BadArchive("it would be larger than can be meant");
    const std::string name = stat.name;
    if (name.back() != '/' && !m_files.emplace(name, index).second)
        throw BadArchive("it holds two files of one name");
}

ZipReader::~ZipReader() = default;

std::vector<std::string> ZipReader::namesEndingWith(std::string_view ending) const
{
    std::vector<std::string> found;
    for (const auto& [name, index] : m_files) {
        if (name.ends_with(ending))
            found.push_back(name);
    }
    return found;
}

std::vector<unsigned char> ZipReader::read(const std::string& name) const
{
    zip_stat_t stat;
    const auto entry = m_files.find(name);
    if (entry == m_files.end() || zip_stat_index(m_archive.get(), entry->second, 0, &stat) != 0)
        throw BadArchive("it has no part " + name);
    if (stat.size > mostBytesOfAPart)
        throw BadArchive("its part " + name + " is larger than 1 GiB");
    const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(
        zip_fopen_index(m_archive.get(), entry->second, 0), zip_fclose);
    std::vector<unsigned char> bytes(stat.size);
    std::uint64_t count = 0;
    while (file && count < bytes.size()) {
        const auto portion = zip_fread(file.get(), bytes.data() + count, bytes.size() - count);
        if (portion <= 0)
            break;
        count += static_cast<std::uint64_t>(portion);
    }
    // The checksum is looked at when the end is reached, which has to be where the archive says it is.
    unsigned char more = 0;
    if (!file || count < bytes.size() || zip_fread(file.get(), &more, 1) != 0)
        throw BadArchive("its part " + name + " is damaged");
    return bytes;
}

ZipWriter::ZipWriter(const std::filesystem::path& file)
{
    int code = 0;
    m_archive = zip_open(file.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (m_archive == nullptr)
        throw BadArchive("the archive " + file.string() + " cannot be made");
}

ZipWriter::~ZipWriter()
{
    if (m_archive != nullptr)
        zip_discard(m_archive);
}

void ZipWriter::add(const std::string& name, std::string_view bytes)
{
    auto* source = zip_source_buffer(m_archive, bytes.data(), bytes.size(), 0);
    if (source == nullptr)
        throw BadArchive("there is no memory for the archive");
    if (zip_file_add(m_archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
        zip_source_free(source);
        throw BadArchive("the archive cannot be written");
    }
}

void ZipWriter::finish()
{
    if (zip_close(m_archive) != 0)
        throw BadArchive("the archive cannot be written");
    m_archive = nullptr;
}

} // namespace kyvconvert
