// SPDX-License-Identifier: MIT
#include "wire/manifest.h"

#include "wire/bytes.h"
#include "wire/path.h"

#include <set>

namespace wire
{

namespace
{

constexpr std::string_view manifestMagic = "TVM1";
constexpr std::size_t digestSize = 32;
constexpr std::size_t pieceSize = digestSize + 4;

void WriteCut(ByteWriter& writer, const FileEntry& file)
{
    writer.u8(static_cast<std::uint8_t>(file.cutting));
    writer.u32(static_cast<std::uint32_t>(file.pieces.size()));
    for (const auto& piece : file.pieces) {
        writer.digest(piece.name);
        writer.u32(piece.size);
    }
}

/// The part of a file's entry that follows its path.
void WriteContent(ByteWriter& writer, const FileEntry& file)
{
    writer.u64(file.size);
    writer.u32(file.mode);
    writer.digest(file.content);
    WriteCut(writer, file);
}

void WritePath(ByteWriter& writer, const std::string& path)
{
    writer.u16(static_cast<std::uint16_t>(path.size()));
    writer.raw(path);
}

bool ReadPieces(ByteReader& reader, std::uint32_t count, FileEntry& file)
{
    if (count > reader.left() / pieceSize)
        return false;
    file.pieces.resize(count);
    for (auto& piece : file.pieces) {
        piece.name = reader.digest();
        piece.size = reader.u32();
    }
    return reader.good();
}

bool ReadEntry(ByteReader& reader, FileEntry& file)
{
    file.path = reader.text(reader.u16());
    file.size = reader.u64();
    file.mode = reader.u32();
    file.content = reader.digest();
    file.cutting = static_cast<Cutting>(reader.u8());
    return ReadPieces(reader, reader.u32(), file);
}

std::string EntryRefusal(const FileEntry& file)
{
    if (auto refusal = PathRefusal(file.path); !refusal.empty())
        return refusal;
    if (file.mode != 0644 && file.mode != 0755)
        return "a file mode other than 0644 and 0755";
    if (file.cutting != Cutting::contentDefined && file.cutting != Cutting::pages)
        return "an unknown way of cutting";
    std::uint64_t sum = 0;
    for (const auto& piece : file.pieces) {
        if (piece.size == 0 || piece.size > maximumPieceSize)
            return "a piece of an impossible size";
        sum += piece.size;
    }
    return sum == file.size ? "" : "pieces that do not add up to their file";
}

/// Files whose paths collide on a file system that folds case, or where one is a folder of the other.
std::string CollisionRefusal(const Manifest& manifest)
{
    std::set<std::string> files;
    for (const auto& file : manifest.files) {
        if (!files.insert(FoldedPath(file.path)).second)
            return "two paths that differ only in case or Unicode form";
    }
    for (const auto& path : files) {
        for (auto slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
            if (files.contains(path.substr(0, slash)))
                return "a file that is also a folder";
        }
    }
    return {};
}

} // namespace

Digest ContentOf(const FileEntry& file)
{
    ByteWriter content;
    content.raw("c");
    WriteCut(content, file);
    return DigestOf(content.bytes());
}

Digest RootOf(const Manifest& manifest)
{
    ByteWriter root;
    root.raw("r");
    for (const auto& file : manifest.files) {
        ByteWriter content;
        content.raw("f");
        WriteContent(content, file);
        WritePath(root, file.path);
        root.digest(DigestOf(content.bytes()));
    }
    return DigestOf(root.bytes());
}

std::string EncodeManifest(const Manifest& manifest)
{
    ByteWriter writer;
    writer.raw(manifestMagic);
    writer.u32(static_cast<std::uint32_t>(manifest.files.size()));
    for (const auto& file : manifest.files) {
        WritePath(writer, file.path);
        WriteContent(writer, file);
    }
    return writer.take();
}

std::string ManifestRefusal(const Manifest& manifest)
{
    const FileEntry* last = nullptr;
    for (const auto& file : manifest.files) {
        if (auto refusal = EntryRefusal(file); !refusal.empty())
            return refusal;
        if (last != nullptr && last->path >= file.path)
            return "paths out of order";
        last = &file;
    }
    return CollisionRefusal(manifest);
}

std::variant<Manifest, Refusal> DecodeManifest(std::string_view bytes)
{
    ByteReader reader(bytes);
    if (reader.text(manifestMagic.size()) != manifestMagic)
        return Refusal{"not a manifest"};
    Manifest manifest;
    for (auto left = reader.u32(); left > 0; --left) {
        FileEntry file;
        if (!ReadEntry(reader, file))
            return Refusal{"a manifest that is cut short"};
        manifest.files.push_back(std::move(file));
    }
    if (!reader.good() || reader.left() != 0)
        return Refusal{"a manifest of the wrong length"};
    if (auto refusal = ManifestRefusal(manifest); !refusal.empty())
        return Refusal{refusal};
    return manifest;
}

std::string EncodeRuns(std::span<const PieceRun> runs)
{
    ByteWriter writer;
    for (const auto& run : runs) {
        writer.u32(run.file);
        writer.u32(run.first);
        writer.u32(run.count);
    }
    return writer.take();
}

std::variant<std::vector<PieceRun>, Refusal> DecodeRuns(std::string_view bytes, const Manifest& manifest)
{
    ByteReader reader(bytes);
    std::vector<PieceRun> runs;
    while (reader.good() && reader.left() > 0) {
        PieceRun run{reader.u32(), reader.u32(), reader.u32()};
        if (!reader.good())
            return Refusal{"runs that are cut short"};
        if (run.file >= manifest.files.size() || run.count == 0)
            return Refusal{"a run of no file or of no piece"};
        const auto pieces = manifest.files[run.file].pieces.size();
        if (run.first >= pieces || run.count > pieces - run.first)
            return Refusal{"a run beyond the end of its file"};
        runs.push_back(run);
    }
    return runs;
}

} // namespace wire
