// SPDX-License-Identifier: MIT
#include "tabs/frames.h"

#include <QDataStream>
#include <QtEndian>

namespace TorvoEditor
{

namespace
{

constexpr quint32 headerSize = 4;

} // namespace

QByteArray MakeFrame(const QByteArray& payload)
{
    QByteArray frame;
    QDataStream header(&frame, QIODevice::WriteOnly);
    header << static_cast<quint32>(payload.size());
    return frame + payload;
}

QList<QByteArray> CutFrames(const QByteArray& bytes)
{
    QList<QByteArray> frames;
    const auto size = static_cast<quint32>(bytes.size());
    quint32 consumed = 0;
    while (consumed + headerSize < size) {
        const auto length = qFromBigEndian<quint32>(bytes.constData() + consumed);
        const quint32 left = size - consumed;
        // The second comparison catches lengths that wrap around when the header is added.
        if (length == 0 || length + headerSize > left || length > left)
            break;
        frames.append(bytes.mid(static_cast<int>(consumed + headerSize), static_cast<int>(length)));
        consumed += length + headerSize;
    }
    return frames;
}

} // namespace TorvoEditor
