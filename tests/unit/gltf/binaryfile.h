// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QtEndian>

/// A binary glTF file from its two chunks, whatever they hold.
[[nodiscard]] inline QByteArray BinaryFile(QByteArray json, QByteArray data)
{
    const auto number = [](int value) {
        QByteArray bytes(4, '\0');
        qToLittleEndian(static_cast<quint32>(value), bytes.data());
        return bytes;
    };
    json.append((4 - json.size() % 4) % 4, ' ');
    data.append((4 - data.size() % 4) % 4, '\0');
    const int size = 12 + 8 + json.size() + 8 + data.size();
    return "glTF" + number(2) + number(size) + number(json.size()) + "JSON" + json + number(data.size()) +
           QByteArray("BIN\0", 4) + data;
}

/// The bytes of numbers, one after the other.
template<class Number>
[[nodiscard]] QByteArray BytesOf(std::initializer_list<Number> numbers)
{
    return {reinterpret_cast<const char*>(numbers.begin()),
            static_cast<int>(numbers.size() * sizeof(Number))};
}

inline bool WriteBytes(const QString& file, const QByteArray& bytes)
{
    // A file that is written over reaches the disk at once on some systems; thousands of new ones do not.
    QFile::remove(file);
    QFile target(file);
    return target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size();
}
