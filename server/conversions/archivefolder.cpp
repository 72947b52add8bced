// SPDX-License-Identifier: MIT
#include "server/conversions/archivefolder.h"

#include "server/storage/packs.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

namespace server
{

namespace
{

constexpr std::size_t portion = 1U << 20U;

bool IsFull(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

[[noreturn]] void FailToWrite(int error)
{
    if (IsFull(error))
        throw DiskFull("the disk is full");
    throw std::runtime_error("an archive cannot be written");
}

} // namespace

ArchiveFolder::ArchiveFolder(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
    std::filesystem::create_directories(m_folder);
}

std::filesystem::path ArchiveFolder::file(const std::string& id) const
{
    // The converter chooses its reader by the end of the name.
    return m_folder / (id + ".kyv");
}

void ArchiveFolder::write(const std::string& id, std::uint64_t offset, std::string_view bytes) const
{
    const OpenFile target(::open(file(id).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
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
    if (::fdatasync(target.descriptor()) != 0)
        FailToWrite(errno);
}

std::string ArchiveFolder::md5(const std::string& id, std::uint64_t size) const
{
    const std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    if (!context || EVP_DigestInit_ex(context.get(), EVP_md5(), nullptr) != 1)
        throw std::runtime_error("no digest can be taken");
    std::ifstream stream(file(id), std::ios::binary);
    std::vector<char> bytes(portion);
    while (size > 0) {
        const auto count = std::min<std::uint64_t>(size, bytes.size());
        if (!stream.read(bytes.data(), static_cast<std::streamsize>(count)) ||
            EVP_DigestUpdate(context.get(), bytes.data(), count) != 1)
            throw std::runtime_error("an archive cannot be read");
        size -= count;
    }
    std::array<unsigned char, 16> digest{};
    if (EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1)
        throw std::runtime_error("no digest can be taken");
    std::string text;
    for (const auto byte : digest) {
        constexpr std::string_view digits = "0123456789abcdef";
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

void ArchiveFolder::remove(const std::string& id) const
{
    std::error_code error;
    if (!id.empty())
        std::filesystem::remove(file(id), error);
}

} // namespace server
