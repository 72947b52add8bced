// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <QByteArray>

/// One entry as a test wants it to stand in an archive, true or not.
struct RawEntry {
    QByteArray name;
    QByteArray packed;      ///< the bytes in the archive
    quint64 size = 0;       ///< unpacked, as it is told
    quint32 crc = 0;        ///< as it is told
    quint16 method = 0;     ///< 0 stored, 8 deflated
    quint16 flags = 0x0800; ///< bit 0 locked, bit 11 name in UTF-8
    quint16 madeBy = 0x0314;
    quint32 attributes = 0x81A40000; ///< a regular file, 0644
    QByteArray localName;            ///< in front of the bytes; empty: the same
    qint64 sharesWith = -1;          ///< index of an entry that this one points to instead
    bool hasLargeNumbers = false;    ///< sizes and place in the extra field for large archives
};

[[nodiscard]] RawEntry Stored(const QByteArray& name, const QByteArray& data);
[[nodiscard]] RawEntry Deflated(const QByteArray& name, const QByteArray& data);

/// So many zero bytes, whole MiB of them, packed a thousand times smaller.
[[nodiscard]] RawEntry Zeros(const QByteArray& name, quint64 size);

/// What may be wrong about the end of an archive.
struct RawEnd {
    int toldEntries = -1; ///< below 0: as many as there are
    quint16 disk = 0;
    QByteArray comment;
    bool isLarge = false; ///< with the record for large archives
};

/// An archive, byte by byte, with whatever lies it is to tell.
[[nodiscard]] QByteArray RawArchive(const std::vector<RawEntry>& entries, const RawEnd& end = {});
