// SPDX-License-Identifier: MIT
#pragma once

#include "wire/digest.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace wire
{

/// Writes numbers in little-endian order and bytes as they are.
class ByteWriter
{
public:
    void u8(std::uint8_t value) { number(value, 1); }
    void u16(std::uint16_t value) { number(value, 2); }
    void u32(std::uint32_t value) { number(value, 4); }
    void u64(std::uint64_t value) { number(value, 8); }
    void raw(std::string_view bytes) { m_bytes += bytes; }
    void digest(const Digest& digest)
    {
        m_bytes.append(reinterpret_cast<const char*>(digest.bytes.data()), digest.bytes.size());
    }

    [[nodiscard]] std::string_view bytes() const { return m_bytes; }
    [[nodiscard]] std::string take() { return std::exchange(m_bytes, {}); }

private:
    void number(std::uint64_t value, int width)
    {
        for (int i = 0; i < width; ++i)
            m_bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    }

    std::string m_bytes;
};

/// Reads what ByteWriter writes. Reading beyond the end gives zeros and makes the reader bad for good.
class ByteReader
{
public:
    explicit ByteReader(std::string_view bytes)
        : m_bytes(bytes)
    {
    }

    [[nodiscard]] bool good() const { return m_good; }
    [[nodiscard]] std::size_t left() const { return m_bytes.size(); }

    std::uint8_t u8() { return static_cast<std::uint8_t>(number(1)); }
    std::uint16_t u16() { return static_cast<std::uint16_t>(number(2)); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }
    std::uint64_t u64() { return number(8); }
    std::string_view text(std::size_t length)
    {
        if (length > m_bytes.size()) {
            m_good = false;
            m_bytes = {};
            return {};
        }
        const auto taken = m_bytes.substr(0, length);
        m_bytes.remove_prefix(length);
        return taken;
    }
    Digest digest()
    {
        Digest digest;
        const auto taken = text(digest.bytes.size());
        std::copy(taken.begin(), taken.end(), digest.bytes.begin());
        return digest;
    }

private:
    std::uint64_t number(std::size_t width)
    {
        const auto taken = text(width);
        std::uint64_t value = 0;
        for (std::size_t i = taken.size(); i > 0; --i)
            value = value << 8U | static_cast<std::uint8_t>(taken[i - 1]);
        return value;
    }

    std::string_view m_bytes;
    bool m_good = true;
};

} // namespace wire
