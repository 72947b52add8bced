// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/optimise.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace kyvconvert
{

/// The name of a conversion: digest of the source's bytes, of what was asked, and of the converter's version.
/// Nothing when the source cannot be read.
[[nodiscard]] std::optional<std::string> ConversionKey(const std::filesystem::path& source, Mode mode,
                                                       const std::string& only);

/// A folder of model folders by the names of their conversions. Several processes may use one at once: what
/// is in it is whole, because it came there by renaming. A cache that cannot be read or written is an empty
/// one.
class ConversionCache
{
public:
    ConversionCache(std::filesystem::path folder, std::uintmax_t limit);

    /// Copies a kept model into `folder`, which is made. False when there is none; nothing is left then.
    [[nodiscard]] bool fetch(const std::string& key, const std::filesystem::path& folder) const;

    /// Keeps a copy of a model folder, and lets go of what was not used for longest until the limit holds.
    void keep(const std::string& key, const std::filesystem::path& folder) const;

private:
    void shrink() const;

    std::filesystem::path m_folder;
    std::uintmax_t m_limit;
};

} // namespace kyvconvert
