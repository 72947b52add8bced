// SPDX-License-Identifier: MIT
#include "chosenarchive.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>

namespace chosen
{

namespace
{

namespace fs = std::filesystem;

constexpr std::uint64_t megabyte = 1'000'000;

class Content
{
public:
    Content(const fs::path& file, unsigned seed)
        : m_stream(file, std::ios::binary)
        , m_random(seed)
    {
    }

    void addNoise(std::uint64_t bytes)
    {
        std::array<std::uint64_t, 8192> words{};
        for (std::uint64_t done = 0; done < bytes; done += sizeof words) {
            for (auto& word : words)
                word = m_random();
            write(words.data(), sizeof words);
        }
    }

    /// A box with places to the millimetre: corners with normals, then triangles.
    void addWall()
    {
        const std::array<float, 3> from{millimetres(80000), millimetres(80000), millimetres(30000)};
        const std::array<float, 3> size{millimetres(9000), millimetres(400), 2.8F};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            for (unsigned side = 0; side < 2; ++side) {
                for (unsigned corner = 0; corner < 4; ++corner)
                    addCornerOfBox(from, size, axis, side, corner);
            }
        }
        for (std::uint32_t face = 0; face < 6; ++face) {
            for (const std::uint32_t corner : {0, 1, 2, 2, 1, 3})
                write(m_corners + face * 4 + corner);
        }
        m_corners += 24;
    }

    /// A pipe's bend: numbers that use all of a float.
    void addBend()
    {
        constexpr unsigned along = 24;
        constexpr unsigned around = 16;
        const float bend = 0.2F + millimetres(900);
        const float radius = 0.02F + millimetres(200);
        for (unsigned i = 0; i <= along; ++i) {
            const float u = 1.5708F * static_cast<float>(i) / along;
            for (unsigned j = 0; j < around; ++j) {
                const float v = 6.2832F * static_cast<float>(j) / around;
                const std::array<float, 3> normal{std::cos(v) * std::cos(u), std::cos(v) * std::sin(u),
                                                  std::sin(v)};
                write(std::array<float, 6>{bend * std::cos(u) + radius * normal[0],
                                           bend * std::sin(u) + radius * normal[1], radius * normal[2],
                                           normal[0], normal[1], normal[2]});
            }
        }
        for (std::uint32_t i = 0; i < along * around; ++i) {
            const auto first = m_corners + i;
            for (const std::uint32_t corner : {0U, 1U, around, around, 1U, around + 1U})
                write(first + corner);
        }
        m_corners += (along + 1) * around;
    }

    void addIndexLine(unsigned number)
    {
        m_stream << R"({"id": ")" << std::hex << m_random() << std::dec << R"(", "name": "Wall-)" << number
                 << R"(", "type": "IfcWall", "geometry": true, "properties": {"Pset_Wall": {"Width": ")"
                 << m_random() % 400 << R"( mm", "FireRating": "F90"}}},)" << '\n';
    }

    [[nodiscard]] std::uint64_t size() { return static_cast<std::uint64_t>(m_stream.tellp()); }

private:
    void addCornerOfBox(const std::array<float, 3>& from, const std::array<float, 3>& size, std::size_t axis,
                        unsigned side, unsigned corner)
    {
        std::array<float, 6> numbers{from[0], from[1], from[2], 0, 0, 0};
        numbers[axis] += side == 0 ? 0.0F : size[axis];
        numbers[(axis + 1) % 3] += (corner & 1U) == 0 ? 0.0F : size[(axis + 1) % 3];
        numbers[(axis + 2) % 3] += (corner & 2U) == 0 ? 0.0F : size[(axis + 2) % 3];
        numbers[3 + axis] = side == 0 ? -1.0F : 1.0F;
        write(numbers);
    }

    float millimetres(std::uint64_t limit) { return static_cast<float>(m_random() % limit) / 1000.0F; }

    template<class Value>
    void write(const Value& value)
    {
        write(&value, sizeof value);
    }

    void write(const void* data, std::size_t size)
    {
        m_stream.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

    std::ofstream m_stream;
    std::mt19937_64 m_random;
    std::uint32_t m_corners = 0;
};

void MakeNoise(const fs::path& file, unsigned seed, std::uint64_t bytes)
{
    Content(file, seed).addNoise(bytes);
}

void MakeGeometry(const fs::path& file, unsigned seed, std::uint64_t bytes)
{
    Content content(file, seed);
    while (content.size() < bytes) {
        for (int i = 0; i < 30; ++i)
            content.addWall();
        content.addBend();
    }
}

} // namespace

void Make(const fs::path& folder)
{
    unsigned seed = 20261121;
    for (int number = 0; number < 16; ++number)
        MakeGeometry(folder / ("part" + std::to_string(number) + ".zrg"), ++seed, 90 * megabyte);
    for (int number = 0; number < 5; ++number)
        MakeNoise(folder / ("packed" + std::to_string(number) + ".zrg"), ++seed, 45 * megabyte);
    Content index(folder / "model.zrim", ++seed);
    for (unsigned number = 0; number < 200000; ++number)
        index.addIndexLine(number);
    MakeNoise(folder / "house.rvt", ++seed, 285 * megabyte);
    for (int number = 0; number < 100; ++number)
        MakeNoise(folder / ("picture" + std::to_string(number) + ".jpg"), ++seed, megabyte / 2);
    for (int number = 0; number < 20; ++number)
        MakeGeometry(folder / ("drawing" + std::to_string(number) + ".dwg"), ++seed, 4 * megabyte);
}

} // namespace chosen
