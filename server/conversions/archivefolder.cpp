// SPDX-License-Identifier: MIT
#include "server/conversions/archivefolder.h"

#include "server/conversions/portions.h"

#include <array>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <vector>

#include <openssl/evp.h>

namespace server
{

namespace
{

constexpr std::size_t portion = 1U << 20U;

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
    WritePortion(file(id), offset, bytes, Keeping::always);
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
