// SPDX-License-Identifier: MIT
#include "tabs/frames.h"

#include <QtEndian>

namespace TorvoEditor
{

namespace
{

constexpr quint32 headerSize = 4;

} // namespace

QByteArray MakeFrame(const QByteArray& payload)
{
    QByteArray frame(static_cast<int>(headerSize), Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    return frame + payload;
}

QList<QByteArray> CutFrames(const QByteArray& bytes)
{
    QList<QByteArray> frames;
    const auto size = static_cast<quint32>(bytes.size());
    quint32 consumed = 0;
    while (consumed + headerSize < size) {
        const auto length = qFromBigEndian<quint32>(bytes.constData() + consumed);
        if (length == 0 || length > size - consumed - headerSize)
            break;
        frames.append(bytes.mid(static_cast<int>(consumed + headerSize), static_cast<int>(length)));
        consumed += headerSize + length;
    }
    return frames;
}

} // namespace TorvoEditor
