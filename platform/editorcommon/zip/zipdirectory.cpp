// SPDX-License-Identifier: MIT
#include "zip/zipdirectory.h"

#include "zip/badarchive.h"

#include <algorithm>
#include <numeric>

#include <QByteArray>
#include <QFile>
#include <QtEndian>

namespace EditorCommon::Zip
{

namespace
{

constexpr std::uint32_t endMark = 0x06054b50;
constexpr std::uint32_t largeEndMark = 0x06064b50;
constexpr std::uint32_t largeLocatorMark = 0x07064b50;
constexpr std::uint32_t entryMark = 0x02014b50;
constexpr std::uint32_t headerMark = 0x04034b50;

constexpr int endSize = 22;
constexpr int largeEndSize = 56;
constexpr int largeLocatorSize = 20;
constexpr int entrySize = 46;
constexpr int headerSize = 30;
constexpr int longestComment = 0xFFFF;
constexpr std::uint64_t largestDirectory = 64U << 20U;

constexpr std::uint16_t largeExtra = 0x0001;
constexpr std::uint16_t elsewhere16 = 0xFFFF; ///< the number stands in the record for large archives
constexpr std::uint32_t elsewhere32 = 0xFFFFFFFF;

template<class Number>
Number At(const QByteArray& bytes, int position)
{
    if (position < 0 || position > bytes.size() - static_cast<int>(sizeof(Number)))
        throw BadArchive("the archive's directory is cut off");
    return qFromLittleEndian<Number>(bytes.constData() + position);
}

QByteArray Read(QFile& archive, std::uint64_t position, std::uint64_t count)
{
    const auto size = static_cast<std::uint64_t>(archive.size());
    if (position > size || count > size - position || !archive.seek(static_cast<qint64>(position)))
        throw BadArchive("the archive points behind its end");
    auto bytes = archive.read(static_cast<qint64>(count));
    if (static_cast<std::uint64_t>(bytes.size()) != count)
        throw BadArchive("the archive cannot be read");
    return bytes;
}

/// Where the directory lies, and how many entries it has.
struct Span {
    std::uint64_t begin = 0;
    std::uint64_t size = 0;
    std::uint64_t end = 0; ///< what follows the directory starts here
    std::uint64_t entries = 0;
};

Span LargeSpan(QFile& archive, std::uint64_t endPosition)
{
    if (endPosition < largeLocatorSize)
        throw BadArchive("the archive has no directory");
    const auto locator = Read(archive, endPosition - largeLocatorSize, largeLocatorSize);
    if (At<std::uint32_t>(locator, 0) != largeLocatorMark)
        throw BadArchive("the archive has no directory");
    const auto position = At<std::uint64_t>(locator, 8);
    const auto record = Read(archive, position, largeEndSize);
    if (At<std::uint32_t>(record, 0) != largeEndMark || At<std::uint32_t>(record, 16) != 0 ||
        At<std::uint32_t>(record, 20) != 0 || At<std::uint64_t>(record, 24) != At<std::uint64_t>(record, 32))
        throw BadArchive("the archive has no directory, or is one of several parts");
    return {At<std::uint64_t>(record, 48), At<std::uint64_t>(record, 40), position,
            At<std::uint64_t>(record, 32)};
}

/// The record that ends an archive stands behind everything but a comment of its own.
Span FindDirectory(QFile& archive)
{
    const auto size = static_cast<std::uint64_t>(archive.size());
    const auto tailSize = std::min<std::uint64_t>(size, endSize + longestComment);
    const auto tail = Read(archive, size - tailSize, tailSize);
    for (int at = static_cast<int>(tailSize) - endSize; at >= 0; --at) {
        if (At<std::uint32_t>(tail, at) != endMark ||
            At<std::uint16_t>(tail, at + 20) != tail.size() - at - endSize)
            continue;
        const auto position = size - tailSize + static_cast<std::uint64_t>(at);
        const Span span{At<std::uint32_t>(tail, at + 16), At<std::uint32_t>(tail, at + 12), position,
                        At<std::uint16_t>(tail, at + 10)};
        if (span.entries == elsewhere16 || span.size == elsewhere32 || span.begin == elsewhere32)
            return LargeSpan(archive, position);
        if (At<std::uint16_t>(tail, at + 4) != 0 || At<std::uint16_t>(tail, at + 8) != span.entries)
            throw BadArchive("the archive is one of several parts");
        return span;
    }
    throw BadArchive("this is no zip archive, or its end is missing");
}

/// Numbers too large for their fields stand in an extra field, in this order.
void TakeLargeNumbers(Entry& entry, const QByteArray& extra)
{
    for (int at = 0; at + 4 <= extra.size();) {
        const auto id = At<std::uint16_t>(extra, at);
        const auto field = extra.mid(at + 4, At<std::uint16_t>(extra, at + 2));
        at += 4 + At<std::uint16_t>(extra, at + 2);
        if (id != largeExtra)
            continue;
        int next = 0;
        for (auto* number : {&entry.size, &entry.packedSize, &entry.offset}) {
            if (*number != elsewhere32)
                continue;
            *number = At<std::uint64_t>(field, next);
            next += 8;
        }
    }
}

Entry ParseEntry(const QByteArray& directory, int& at)
{
    if (At<std::uint32_t>(directory, at) != entryMark)
        throw BadArchive("the archive's directory is damaged");
    Entry entry;
    entry.madeBy = At<std::uint16_t>(directory, at + 4);
    entry.flags = At<std::uint16_t>(directory, at + 8);
    entry.method = At<std::uint16_t>(directory, at + 10);
    entry.packedSize = At<std::uint32_t>(directory, at + 20);
    entry.size = At<std::uint32_t>(directory, at + 24);
    const int nameSize = At<std::uint16_t>(directory, at + 28);
    const int extraSize = At<std::uint16_t>(directory, at + 30);
    const int commentSize = At<std::uint16_t>(directory, at + 32);
    entry.attributes = At<std::uint32_t>(directory, at + 38);
    entry.offset = At<std::uint32_t>(directory, at + 42);
    at += entrySize;
    if (directory.size() - at < nameSize + extraSize + commentSize)
        throw BadArchive("the archive's directory is cut off");
    entry.name = directory.mid(at, nameSize).toStdString();
    TakeLargeNumbers(entry, directory.mid(at + nameSize, extraSize));
    at += nameSize + extraSize + commentSize;
    return entry;
}

/// Where the bytes of an entry end, by the header in front of them.
std::uint64_t EndOf(QFile& archive, const Entry& entry)
{
    const auto header = Read(archive, entry.offset, headerSize);
    if (At<std::uint32_t>(header, 0) != headerMark)
        throw BadArchive("an entry is not where the archive's directory says");
    const auto nameSize = At<std::uint16_t>(header, 26);
    if (Read(archive, entry.offset + headerSize, nameSize).toStdString() != entry.name)
        throw BadArchive("an entry has two names");
    const auto begin = entry.offset + headerSize + nameSize + At<std::uint16_t>(header, 28);
    if (entry.packedSize > static_cast<std::uint64_t>(archive.size()) -
                               std::min<std::uint64_t>(begin, static_cast<std::uint64_t>(archive.size())))
        throw BadArchive("an entry is larger than the archive");
    return begin + entry.packedSize;
}

void CheckThatNothingOverlaps(QFile& archive, const std::vector<Entry>& entries, std::uint64_t directory)
{
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return entries[left].offset < entries[right].offset;
    });
    std::uint64_t end = 0;
    for (const auto index : order) {
        if (entries[index].offset < end)
            throw BadArchive("two entries share bytes of the archive");
        end = EndOf(archive, entries[index]);
    }
    if (end > directory)
        throw BadArchive("an entry and the archive's directory share bytes");
}

} // namespace

std::vector<Entry> ReadDirectory(QFile& archive, std::uint64_t mostEntries)
{
    const auto span = FindDirectory(archive);
    if (span.entries > mostEntries)
        throw BadArchive("the archive has more entries than may be unpacked");
    if (span.size > largestDirectory || span.begin > span.end || span.size != span.end - span.begin)
        throw BadArchive("the archive's directory is not where the archive says");
    const auto bytes = Read(archive, span.begin, span.size);
    std::vector<Entry> entries;
    entries.reserve(static_cast<std::size_t>(span.entries));
    int at = 0;
    while (entries.size() < span.entries)
        entries.push_back(ParseEntry(bytes, at));
    if (at != bytes.size())
        throw BadArchive("the archive's directory has more entries than it says");
    CheckThatNothingOverlaps(archive, entries, span.begin);
    return entries;
}

} // namespace EditorCommon::Zip
