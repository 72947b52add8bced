// SPDX-License-Identifier: MIT
#include "server/conversions/portions.h"

#include "server/storage/packs.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

namespace server
{

namespace
{

[[noreturn]] void FailToWrite(int error)
{
    if (error == ENOSPC || error == EDQUOT || error == EFBIG)
        throw DiskFull("the disk is full");
    throw std::runtime_error("a file that arrives cannot be written");
}

} // namespace

void WritePortion(const std::filesystem::path& file, std::uint64_t offset, std::string_view bytes,
                  Keeping keeping)
{
    const OpenFile target(::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    if (target.descriptor() < 0)
        FailToWrite(errno);
    while (!bytes.empty()) {
        const auto count =
            ::pwrite(target.descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            FailToWrite(errno);
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
    if (keeping == Keeping::always && ::fdatasync(target.descriptor()) != 0)
        FailToWrite(errno);
}

std::string ReadPortion(const std::filesystem::path& file, std::uint64_t offset, std::size_t most)
{
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(most, '\0');
    if (!stream.seekg(static_cast<std::streamoff>(offset)))
        throw std::runtime_error("a file that leaves cannot be read");
    stream.read(bytes.data(), static_cast<std::streamsize>(most));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace server
