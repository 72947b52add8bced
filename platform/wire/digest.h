// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace wire
{

/// A SHA-256 digest (FIPS 180-4): the name of a piece, a file or a revision.
struct Digest {
    std::array<std::uint8_t, 32> bytes{};

    friend bool operator==(const Digest&, const Digest&) = default;
    friend auto operator<=>(const Digest&, const Digest&) = default;
};

/// 64 lower-case hexadecimal digits.
[[nodiscard]] std::string ToHex(const Digest& digest);

/// Reads what ToHex prints; anything else is no digest.
[[nodiscard]] std::optional<Digest> DigestFromHex(std::string_view text);

[[nodiscard]] Digest DigestOf(std::span<const std::byte> data);
[[nodiscard]] Digest DigestOf(std::string_view data);

/// A digest over data that comes in pieces. Not for several threads at once.
class Digester
{
public:
    Digester();
    ~Digester();
    Digester(Digester&&) noexcept;
    Digester& operator=(Digester&&) noexcept;

    void add(std::span<const std::byte> data);
    void add(std::string_view data);

    /// The digest of all that was added; starts anew afterwards.
    [[nodiscard]] Digest finish();

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

} // namespace wire

template<>
struct std::hash<wire::Digest> {
    std::size_t operator()(const wire::Digest& digest) const noexcept;
};
