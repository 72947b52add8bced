// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

namespace TorvoEditor
{

// The frames on the local socket: 4 bytes payload length, big-endian and without itself, then the payload.
// Pure functions.

[[nodiscard]] QByteArray MakeFrame(const QByteArray& payload);

/// The payloads of the frames at the front of `bytes`, which are what one read gave. It stops at a length of
/// 0 and at a frame that is longer than what is left, and drops the rest: nothing is carried over to the next
/// read, as both ends of this protocol have it.
[[nodiscard]] QList<QByteArray> CutFrames(const QByteArray& bytes);

} // namespace TorvoEditor
