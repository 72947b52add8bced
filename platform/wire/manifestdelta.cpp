// SPDX-License-Identifier: MIT
#include "wire/manifestdelta.h"

#include "wire/bytes.h"
#include "wire/syncplan.h"

#include <unordered_set>

namespace wire
{

namespace
{

constexpr std::string_view deltaMagic = "TVD1";
constexpr std::size_t pieceBytes = 36;

/// What stands in a delta; a part of the format.
enum class Entry : std::uint8_t {
    sameRun = 1,     ///< files of the base, with path and mode
    sameContent = 2, ///< a file under another path or mode than in the base
    built = 3,       ///< a file whose pieces come from the base and from the delta
};

void WriteName(ByteWriter& writer, const FileEntry& file)
{
    writer.u16(static_cast<std::uint16_t>(file.path.size()));
    writer.raw(file.path);
    writer.u32(file.mode);
}

void WriteBuilt(ByteWriter& writer, const FileEntry& file, const std::vector<PieceOrigin>& origins)
{
    writer.u8(static_cast<std::uint8_t>(Entry::built));
    WriteName(writer, file);
    writer.u64(file.size);
    writer.digest(file.content);
    writer.u8(static_cast<std::uint8_t>(file.cutting));
    writer.u32(static_cast<std::uint32_t>(origins.size()));
    std::size_t index = 0;
    for (const auto& origin : origins) {
        writer.u32(origin.file);
        writer.u32(origin.count);
        if (origin.file != PieceOrigin::elsewhere)
            writer.u32(origin.first);
        for (std::uint32_t i = 0; i < origin.count && origin.file == PieceOrigin::elsewhere; ++i) {
            writer.digest(file.pieces[index + i].name);
            writer.u32(file.pieces[index + i].size);
        }
        index += origin.count;
    }
}

/// Takes a delta apart.
class DeltaReader
{
public:
    DeltaReader(const Manifest& base, ByteReader reader)
        : m_base(base)
        , m_reader(reader)
    {
    }

    /// False for a delta that is none; `manifest` holds what was read so far.
    bool read(Manifest& manifest)
    {
        while (m_reader.good() && m_reader.left() > 0) {
            switch (static_cast<Entry>(m_reader.u8())) {
            case Entry::sameRun:
                if (!readRun(manifest))
                    return false;
                break;
            case Entry::sameContent:
                if (!readSame(manifest))
                    return false;
                break;
            case Entry::built:
                if (!readBuilt(manifest))
                    return false;
                break;
            default:
                return false;
            }
        }
        return m_reader.good();
    }

private:
    bool readRun(Manifest& manifest)
    {
        const auto first = m_reader.u32();
        const auto count = m_reader.u32();
        if (!m_reader.good() || first >= m_base.files.size() || count > m_base.files.size() - first)
            return false;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!take(m_base.files[first + i].pieces.size()))
                return false;
            manifest.files.push_back(m_base.files[first + i]);
        }
        return true;
    }

    bool readSame(Manifest& manifest)
    {
        std::string path(m_reader.text(m_reader.u16()));
        const auto mode = m_reader.u32();
        const auto file = m_reader.u32();
        if (!m_reader.good() || file >= m_base.files.size() || !take(m_base.files[file].pieces.size()))
            return false;
        manifest.files.push_back(m_base.files[file]);
        manifest.files.back().path = std::move(path);
        manifest.files.back().mode = mode;
        return true;
    }

    bool readBuilt(Manifest& manifest)
    {
        FileEntry file;
        file.path = m_reader.text(m_reader.u16());
        file.mode = m_reader.u32();
        file.size = m_reader.u64();
        file.content = m_reader.digest();
        file.cutting = static_cast<Cutting>(m_reader.u8());
        for (auto left = m_reader.u32(); left > 0; --left) {
            if (!m_reader.good() || !readOrigin(file))
                return false;
        }
        manifest.files.push_back(std::move(file));
        return m_reader.good();
    }

    bool readOrigin(FileEntry& file)
    {
        const auto origin = m_reader.u32();
        const auto count = m_reader.u32();
        if (!m_reader.good() || !take(count))
            return false;
        if (origin == PieceOrigin::elsewhere) {
            if (count > m_reader.left() / pieceBytes)
                return false;
            for (std::uint32_t i = 0; i < count; ++i) {
                const auto name = m_reader.digest();
                file.pieces.push_back({name, m_reader.u32()});
            }
            return true;
        }
        const auto first = m_reader.u32();
        if (!m_reader.good() || origin >= m_base.files.size())
            return false;
        const auto& pieces = m_base.files[origin].pieces;
        if (first > pieces.size() || count > pieces.size() - first)
            return false;
        file.pieces.insert(file.pieces.end(), pieces.begin() + first, pieces.begin() + first + count);
        return true;
    }

    /// Counts pieces: a few bytes of a delta may name the same large file again and again.
    bool take(std::size_t pieces)
    {
        if (pieces > m_left)
            return false;
        m_left -= pieces;
        return m_files++ < mostPieces;
    }

    const Manifest& m_base;
    ByteReader m_reader;
    std::size_t m_left = mostPieces;
    std::size_t m_files = 0;
};

} // namespace

std::string EncodeManifestDelta(const Manifest& base, const Manifest& manifest)
{
    ByteWriter writer;
    writer.raw(deltaMagic);
    writer.digest(RootOf(base));
    const auto plan = PlanBetween(base, manifest);
    for (std::size_t i = 0; i < plan.steps.size();) {
        const auto& file = manifest.files[i];
        const auto same = plan.steps[i].sameAs;
        if (same == PieceOrigin::elsewhere) {
            WriteBuilt(writer, file, plan.steps[i].pieces);
            ++i;
            continue;
        }
        std::uint32_t count = 0;
        while (i < plan.steps.size() && same + count < base.files.size() &&
               plan.steps[i].sameAs == same + count && base.files[same + count] == manifest.files[i]) {
            ++count;
            ++i;
        }
        if (count > 0) {
            writer.u8(static_cast<std::uint8_t>(Entry::sameRun));
            writer.u32(same);
            writer.u32(count);
            continue;
        }
        writer.u8(static_cast<std::uint8_t>(Entry::sameContent));
        WriteName(writer, file);
        writer.u32(same);
        ++i;
    }
    return writer.take();
}

std::variant<Manifest, Refusal> DecodeManifestDelta(const Manifest& base, std::string_view bytes)
{
    ByteReader reader(bytes);
    if (reader.text(deltaMagic.size()) != deltaMagic)
        return Refusal{"not a manifest delta"};
    if (reader.digest() != RootOf(base))
        return Refusal{"a manifest delta to another base"};
    Manifest manifest;
    if (!DeltaReader(base, reader).read(manifest))
        return Refusal{"a damaged manifest delta"};
    if (auto refusal = ManifestRefusal(manifest); !refusal.empty())
        return Refusal{refusal};
    return manifest;
}

std::vector<Piece> FreshPieces(const Manifest& base, const Manifest& manifest)
{
    std::unordered_set<Digest> known;
    for (const auto& file : base.files) {
        for (const auto& piece : file.pieces)
            known.insert(piece.name);
    }
    std::vector<Piece> fresh;
    for (const auto& file : manifest.files) {
        for (const auto& piece : file.pieces) {
            if (known.insert(piece.name).second)
                fresh.push_back(piece);
        }
    }
    return fresh;
}

std::string EncodePieces(std::span<const Piece> pieces)
{
    ByteWriter writer;
    for (const auto& piece : pieces) {
        writer.digest(piece.name);
        writer.u32(piece.size);
    }
    return writer.take();
}

std::variant<std::vector<Piece>, Refusal> DecodePieces(std::string_view bytes)
{
    if (bytes.size() % pieceBytes != 0)
        return Refusal{"pieces that are cut short"};
    ByteReader reader(bytes);
    std::vector<Piece> pieces(bytes.size() / pieceBytes);
    for (auto& piece : pieces) {
        piece.name = reader.digest();
        piece.size = reader.u32();
        if (piece.size == 0 || piece.size > maximumPieceSize)
            return Refusal{"a piece of an impossible size"};
    }
    return pieces;
}

std::string EncodeBits(const std::vector<bool>& bits)
{
    std::string bytes((bits.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (bits[i])
            bytes[i / 8] = static_cast<char>(static_cast<unsigned char>(bytes[i / 8]) | 1U << i % 8);
    }
    return bytes;
}

std::variant<std::vector<bool>, Refusal> DecodeBits(std::string_view bytes, std::size_t count)
{
    if (bytes.size() != (count + 7) / 8)
        return Refusal{"bits of the wrong number"};
    std::vector<bool> bits(count);
    for (std::size_t i = 0; i < count; ++i)
        bits[i] = (static_cast<unsigned char>(bytes[i / 8]) >> i % 8 & 1U) != 0;
    return bits;
}

} // namespace wire
