// SPDX-License-Identifier: MIT
#include "wire/digest.h"

#include <cstring>
#include <new>

#include <openssl/evp.h>

namespace wire
{

struct Digester::Context {
    EVP_MD_CTX* handle = EVP_MD_CTX_new();

    Context()
    {
        if (handle == nullptr)
            throw std::bad_alloc();
        restart();
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() { EVP_MD_CTX_free(handle); }

    void restart() const { EVP_DigestInit_ex(handle, EVP_sha256(), nullptr); }
};

Digester::Digester()
    : m_context(std::make_unique<Context>())
{
}
Digester::~Digester() = default;
Digester::Digester(Digester&&) noexcept = default;
Digester& Digester::operator=(Digester&&) noexcept = default;

void Digester::add(std::span<const std::byte> data)
{
    EVP_DigestUpdate(m_context->handle, data.data(), data.size());
}

void Digester::add(std::string_view data)
{
    add(std::as_bytes(std::span(data)));
}

Digest Digester::finish()
{
    Digest digest;
    EVP_DigestFinal_ex(m_context->handle, digest.bytes.data(), nullptr);
    m_context->restart();
    return digest;
}

Digest DigestOf(std::span<const std::byte> data)
{
    Digest digest;
    EVP_Digest(data.data(), data.size(), digest.bytes.data(), nullptr, EVP_sha256(), nullptr);
    return digest;
}

Digest DigestOf(std::string_view data)
{
    return DigestOf(std::as_bytes(std::span(data)));
}

std::string ToHex(const Digest& digest)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.bytes.size());
    for (auto byte : digest.bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

std::optional<Digest> DigestFromHex(std::string_view text)
{
    Digest digest;
    if (text.size() != 2 * digest.bytes.size())
        return std::nullopt;
    const auto value = [](char character) {
        if (character >= '0' && character <= '9')
            return character - '0';
        if (character >= 'a' && character <= 'f')
            return character - 'a' + 10;
        return -1;
    };
    for (std::size_t i = 0; i < digest.bytes.size(); ++i) {
        const int high = value(text[2 * i]);
        const int low = value(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        digest.bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return digest;
}

} // namespace wire

std::size_t std::hash<wire::Digest>::operator()(const wire::Digest& digest) const noexcept
{
    std::size_t value = 0;
    std::memcpy(&value, digest.bytes.data(), sizeof value);
    return value;
}
