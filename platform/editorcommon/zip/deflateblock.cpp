// SPDX-License-Identifier: MIT
#include "zip/deflateblock.h"

#include "zip/badarchive.h"

#include <algorithm>

#include <zlib.h>

namespace EditorCommon::Zip
{

namespace
{

constexpr int level = 5;
constexpr int sampleLevel = 1;
constexpr int withoutHeader = -15;
constexpr int memoryLevel = 8;
constexpr int flushMark = 16; ///< more than what ends a block that is not the last one

Bytef* Raw(const QByteArray& bytes)
{
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData())); // the library asks for it so
}

QByteArray Deflated(const QByteArray& before, const QByteArray& block, int strength, int flush)
{
    z_stream stream{};
    if (deflateInit2(&stream, strength, Z_DEFLATED, withoutHeader, memoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        throw BadArchive("no memory to pack with");
    if (!before.isEmpty()) {
        const auto tail = before.right(backReference);
        deflateSetDictionary(&stream, Raw(tail), static_cast<uInt>(tail.size()));
    }
    QByteArray packed(static_cast<int>(deflateBound(&stream, static_cast<uLong>(block.size()))) + flushMark,
                      Qt::Uninitialized);
    stream.next_in = Raw(block);
    stream.avail_in = static_cast<uInt>(block.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, flush);
    const bool isWhole = result == (flush == Z_FINISH ? Z_STREAM_END : Z_OK) && stream.avail_in == 0;
    packed.truncate(packed.size() - static_cast<int>(stream.avail_out));
    deflateEnd(&stream);
    if (!isWhole)
        throw BadArchive("a block cannot be packed");
    return packed;
}

} // namespace

PackedBlock PackBlock(const QByteArray& before, const QByteArray& block, bool isLast)
{
    PackedBlock packed;
    packed.bytes = Deflated(before, block, level, isLast ? Z_FINISH : Z_SYNC_FLUSH);
    packed.crc = static_cast<std::uint32_t>(crc32(0, Raw(block), static_cast<uInt>(block.size())));
    packed.size = block.size();
    packed.isLast = isLast;
    return packed;
}

bool IsWorthPacking(const QByteArray& sample)
{
    const auto packed = Deflated({}, sample, sampleLevel, Z_FINISH).size();
    return packed < sample.size() - sample.size() / 32;
}

} // namespace EditorCommon::Zip
