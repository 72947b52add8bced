// SPDX-License-Identifier: MIT
#include "server/storage/packs.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace server
{

namespace
{

constexpr std::uint64_t fullPack = 1ULL << 30U;
constexpr std::size_t writeSize = 4U << 20U;

[[noreturn]] void Fail(const char* what)
{
    const int error = errno;
    const std::string words = std::string(what) + ": " + std::generic_category().message(error);
    if (error == ENOSPC || error == EDQUOT || error == EFBIG)
        throw DiskFull(words);
    throw std::runtime_error(words);
}

void WriteAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            Fail("cannot write a pack");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Sync(int descriptor)
{
    if (::fdatasync(descriptor) != 0)
        Fail("cannot write a pack to the disk");
}

std::uint32_t NewestPack(const std::filesystem::path& folder)
{
    std::uint32_t newest = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".pack")
            newest = std::max(newest, static_cast<std::uint32_t>(std::stoul(entry.path().stem().string())));
    }
    return newest;
}

} // namespace

std::string PackName(std::uint32_t pack)
{
    char name[32];
    std::snprintf(name, sizeof name, "%08u.pack", pack);
    return name;
}

OpenFile::~OpenFile()
{
    ::close(m_descriptor);
}

std::shared_ptr<const OpenFile> PackReader::open(std::uint32_t pack)
{
    const std::lock_guard lock(m_mutex);
    auto& file = m_files[pack];
    if (!file) {
        const int descriptor = ::open((m_folder / PackName(pack)).c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor >= 0)
            file = std::make_shared<OpenFile>(descriptor);
    }
    return file;
}

PackWriter::PackWriter(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
    m_pack = std::max(1U, NewestPack(m_folder));
    openNext();
}

PackWriter::~PackWriter()
{
    close();
}

void PackWriter::close()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

void PackWriter::openNext()
{
    while (true) {
        m_descriptor = ::open((m_folder / PackName(m_pack)).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (m_descriptor < 0)
            Fail("cannot open a pack");
        const bool isMine = ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
        const auto end = ::lseek(m_descriptor, 0, SEEK_END);
        if (end < 0)
            Fail("cannot read a pack's size");
        m_size = static_cast<std::uint64_t>(end);
        if (isMine && m_size < fullPack)
            return;
        close();
        ++m_pack;
    }
}

PieceLocation PackWriter::append(std::string_view frame)
{
    if (m_size >= fullPack) {
        sync();
        close();
        ++m_pack;
        openNext();
    }
    const PieceLocation location{m_pack, m_size, static_cast<std::uint32_t>(frame.size())};
    m_buffer += frame;
    m_size += frame.size();
    if (m_buffer.size() >= writeSize)
        writeBuffer();
    return location;
}

void PackWriter::writeBuffer()
{
    WriteAll(m_descriptor, m_buffer);
#ifdef __linux__
    // The disk begins at once, so that the wait at the end is short.
    ::sync_file_range(m_descriptor, static_cast<off64_t>(m_size - m_buffer.size()),
                      static_cast<off64_t>(m_buffer.size()), SYNC_FILE_RANGE_WRITE);
#endif
    m_buffer.clear();
}

std::unique_ptr<OpenFile> PackWriter::flush()
{
    writeBuffer();
    const int descriptor = ::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        Fail("cannot open a pack once more");
    return std::make_unique<OpenFile>(descriptor);
}

void PackWriter::sync()
{
    writeBuffer();
    Sync(m_descriptor);
}

void SyncToDisk(const OpenFile& file)
{
    Sync(file.descriptor());
}

} // namespace server
