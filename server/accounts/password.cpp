// SPDX-License-Identifier: MIT
#include "server/accounts/password.h"

#include <stdexcept>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

namespace server
{

namespace
{

constexpr std::uint64_t cost = 1U << 15U;
constexpr std::uint64_t blockSize = 8;
constexpr std::uint64_t parallelism = 1;
constexpr std::uint64_t memoryLimit = 64U << 20U;
constexpr std::size_t hashSize = 32;
constexpr std::size_t saltSize = 16;

std::string Scrypt(std::string_view password, std::string_view salt)
{
    std::string hash(hashSize, '\0');
    const int done =
        EVP_PBE_scrypt(password.data(), password.size(), reinterpret_cast<const unsigned char*>(salt.data()),
                       salt.size(), cost, blockSize, parallelism, memoryLimit,
                       reinterpret_cast<unsigned char*>(hash.data()), hash.size());
    if (done != 1)
        throw std::runtime_error("the password cannot be hashed");
    return hash;
}

} // namespace

PasswordHash HashPassword(std::string_view password)
{
    std::string salt(saltSize, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(salt.data()), static_cast<int>(salt.size())) != 1)
        throw std::runtime_error("no random numbers can be had");
    return {salt, Scrypt(password, salt)};
}

bool IsPassword(std::string_view password, const PasswordHash& known)
{
    const std::string hash = Scrypt(password, known.salt);
    return known.hash.size() == hash.size() &&
           CRYPTO_memcmp(hash.data(), known.hash.data(), hash.size()) == 0;
}

const PasswordHash& HashOfNobody()
{
    static const PasswordHash nobody{std::string(saltSize, '\0'), std::string(hashSize, '\0')};
    return nobody;
}

} // namespace server
