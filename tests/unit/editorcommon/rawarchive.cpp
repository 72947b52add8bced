// SPDX-License-Identifier: MIT
#include "rawarchive.h"

#include <QtEndian>

#include <zlib.h>

namespace
{

template<class Number>
QByteArray Le(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

const Bytef* Raw(const QByteArray& bytes)
{
    return reinterpret_cast<const Bytef*>(bytes.constData());
}

/// Sizes, or the mark that they stand elsewhere.
QByteArray Sizes(const RawEntry& entry)
{
    if (entry.hasLargeNumbers)
        return Le<quint32>(0xFFFFFFFF) + Le<quint32>(0xFFFFFFFF);
    return Le<quint32>(static_cast<quint32>(entry.packed.size())) +
           Le<quint32>(static_cast<quint32>(entry.size));
}

QByteArray Extra(const RawEntry& entry, const QByteArray& offset)
{
    if (!entry.hasLargeNumbers)
        return {};
    const auto numbers =
        Le<quint64>(entry.size) + Le<quint64>(static_cast<quint64>(entry.packed.size())) + offset;
    return Le<quint16>(1) + Le<quint16>(static_cast<quint16>(numbers.size())) + numbers;
}

QByteArray LocalHeader(const RawEntry& entry)
{
    const auto name = entry.localName.isEmpty() ? entry.name : entry.localName;
    const auto extra = Extra(entry, {});
    return Le<quint32>(0x04034b50) + Le<quint16>(45) + Le<quint16>(entry.flags) + Le<quint16>(entry.method) +
           Le<quint32>(0x5a210000) + Le<quint32>(entry.crc) + Sizes(entry) +
           Le<quint16>(static_cast<quint16>(name.size())) + Le<quint16>(static_cast<quint16>(extra.size())) +
           name + extra;
}

QByteArray DirectoryEntry(const RawEntry& entry, quint64 offset)
{
    const auto extra = Extra(entry, Le<quint64>(offset));
    const auto place = entry.hasLargeNumbers ? 0xFFFFFFFF : static_cast<quint32>(offset);
    return Le<quint32>(0x02014b50) + Le<quint16>(entry.madeBy) + Le<quint16>(45) + Le<quint16>(entry.flags) +
           Le<quint16>(entry.method) + Le<quint32>(0x5a210000) + Le<quint32>(entry.crc) + Sizes(entry) +
           Le<quint16>(static_cast<quint16>(entry.name.size())) +
           Le<quint16>(static_cast<quint16>(extra.size())) + Le<quint16>(0) + Le<quint16>(0) +
           Le<quint16>(0) + Le<quint32>(entry.attributes) + Le<quint32>(place) + entry.name + extra;
}

QByteArray LargeEnd(quint64 count, quint64 size, quint64 begin)
{
    return Le<quint32>(0x06064b50) + Le<quint64>(44) + Le<quint16>(45) + Le<quint16>(45) + Le<quint32>(0) +
           Le<quint32>(0) + Le<quint64>(count) + Le<quint64>(count) + Le<quint64>(size) + Le<quint64>(begin) +
           Le<quint32>(0x07064b50) + Le<quint32>(0) + Le<quint64>(begin + size) + Le<quint32>(1);
}

} // namespace

RawEntry Stored(const QByteArray& name, const QByteArray& data)
{
    RawEntry entry;
    entry.name = name;
    entry.packed = data;
    entry.size = static_cast<quint64>(data.size());
    entry.crc = static_cast<quint32>(crc32(0, Raw(data), static_cast<uInt>(data.size())));
    return entry;
}

RawEntry Deflated(const QByteArray& name, const QByteArray& data)
{
    auto entry = Stored(name, data);
    entry.method = 8;
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    QByteArray packed(static_cast<int>(deflateBound(&stream, static_cast<uLong>(data.size()))), '\0');
    stream.next_in = const_cast<Bytef*>(Raw(data));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.truncate(packed.size() - static_cast<int>(stream.avail_out));
    deflateEnd(&stream);
    entry.packed = packed;
    return entry;
}

RawEntry Zeros(const QByteArray& name, quint64 size)
{
    constexpr int step = 1 << 20;
    const QByteArray zeros(step, '\0');
    QByteArray once(step, '\0');
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
    stream.next_in = const_cast<Bytef*>(Raw(zeros));
    stream.avail_in = step;
    stream.next_out = reinterpret_cast<Bytef*>(once.data());
    stream.avail_out = static_cast<uInt>(once.size());
    deflate(&stream, Z_FULL_FLUSH); // refers to nothing before it, so it may stand any number of times
    once.truncate(once.size() - static_cast<int>(stream.avail_out));
    deflateEnd(&stream);

    RawEntry entry;
    entry.name = name;
    entry.method = 8;
    entry.size = size;
    const auto zerosCrc = crc32(0, Raw(zeros), step);
    uLong crc = 0;
    for (quint64 done = 0; done < size; done += step)
        crc = crc32_combine(crc, zerosCrc, step);
    constexpr char emptyLastBlock[] = "\3";
    entry.packed = once.repeated(static_cast<int>(size / step)) + QByteArray(emptyLastBlock, 2);
    entry.crc = static_cast<quint32>(crc);
    return entry;
}

QByteArray RawArchive(const std::vector<RawEntry>& entries, const RawEnd& end)
{
    QByteArray archive;
    std::vector<quint64> offsets;
    for (const auto& entry : entries) {
        if (entry.sharesWith >= 0) {
            offsets.push_back(offsets[static_cast<std::size_t>(entry.sharesWith)]);
            continue;
        }
        offsets.push_back(static_cast<quint64>(archive.size()));
        archive += LocalHeader(entry) + entry.packed;
    }
    const auto begin = static_cast<quint64>(archive.size());
    for (std::size_t index = 0; index < entries.size(); ++index)
        archive += DirectoryEntry(entries[index], offsets[index]);
    const auto size = static_cast<quint64>(archive.size()) - begin;
    const auto count =
        end.toldEntries < 0 ? static_cast<quint64>(entries.size()) : static_cast<quint64>(end.toldEntries);
    if (end.isLarge)
        archive += LargeEnd(count, size, begin);
    const auto shortCount = end.isLarge ? quint16(0xFFFF) : static_cast<quint16>(count);
    archive += Le<quint32>(0x06054b50) + Le<quint16>(end.disk) + Le<quint16>(0) + Le<quint16>(shortCount) +
               Le<quint16>(shortCount) + Le<quint32>(end.isLarge ? 0xFFFFFFFF : static_cast<quint32>(size)) +
               Le<quint32>(end.isLarge ? 0xFFFFFFFF : static_cast<quint32>(begin)) +
               Le<quint16>(static_cast<quint16>(end.comment.size())) + end.comment;
    return archive;
}
