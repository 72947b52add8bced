// SPDX-License-Identifier: MIT
#include "kyvconvert/conversioncache.h"

#include "kyvconvert/modelfolder.h"
#include "wire/digest.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <random>
#include <vector>

namespace kyvconvert
{

namespace
{

namespace fs = std::filesystem;

/// Raised whenever the same source becomes another model.
constexpr int converterVersion = 2;

constexpr std::size_t portion = 1U << 20U;

std::uintmax_t SizeOf(const fs::path& folder)
{
    std::error_code error;
    std::uintmax_t size = 0;
    for (const auto* file : modelFiles) {
        const auto bytes = fs::file_size(folder / file, error);
        size += error ? 0 : bytes;
    }
    return size;
}

bool CopyModel(const fs::path& from, const fs::path& to)
{
    std::error_code error;
    fs::create_directories(to, error);
    for (const auto* file : modelFiles) {
        if (!fs::copy_file(from / file, to / file, error)) {
            fs::remove_all(to, error);
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::string> ConversionKey(const fs::path& source, Mode mode, const std::string& only)
{
    std::ifstream stream(source, std::ios::binary);
    wire::Digester digester;
    // The reader is chosen by the end of the name.
    digester.add(std::to_string(converterVersion) + '\n' + source.extension().string() + '\n' +
                 std::to_string(static_cast<int>(mode)) + '\n' + only + '\n');
    std::vector<char> bytes(portion);
    while (stream) {
        stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        digester.add(std::string_view(bytes.data(), static_cast<std::size_t>(stream.gcount())));
    }
    if (!stream.eof())
        return std::nullopt;
    return wire::ToHex(digester.finish());
}

ConversionCache::ConversionCache(fs::path folder, std::uintmax_t limit)
    : m_folder(std::move(folder))
    , m_limit(limit)
{
}

bool ConversionCache::fetch(const std::string& key, const fs::path& folder) const
{
    std::error_code error;
    const auto kept = m_folder / key;
    if (!fs::is_directory(kept, error) || !CopyModel(kept, folder))
        return false;
    fs::last_write_time(kept, fs::file_time_type::clock::now(), error);
    return true;
}

void ConversionCache::keep(const std::string& key, const fs::path& folder) const
{
    std::error_code error;
    const auto half = m_folder / ("half-" + std::to_string(std::random_device()()));
    if (!CopyModel(folder, half))
        return;
    fs::rename(half, m_folder / key, error);
    if (error)
        fs::remove_all(half, error);
    shrink();
}

void ConversionCache::shrink() const
{
    struct Kept {
        fs::path folder;
        fs::file_time_type used;
        std::uintmax_t size;
    };
    std::error_code error;
    std::vector<Kept> all;
    std::uintmax_t sum = 0;
    for (const auto& entry : fs::directory_iterator(m_folder, error)) {
        all.push_back({entry.path(), entry.last_write_time(error), SizeOf(entry.path())});
        sum += all.back().size;
    }
    std::sort(all.begin(), all.end(),
              [](const Kept& left, const Kept& right) { return left.used < right.used; });
    for (const auto& kept : all) {
        if (sum <= m_limit)
            return;
        fs::remove_all(kept.folder, error);
        sum -= kept.size;
    }
}

} // namespace kyvconvert
