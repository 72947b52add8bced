// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonDocument>
#include <QString>

namespace BIZCOMMON
{

/// What became of a JSON file that comes from other people's machines.
struct JsonFile {
    enum class State { missing, unreadable, read };

    State state = State::missing;
    QJsonDocument document;
    QString reason; ///< why it is unreadable
};

/// Reads a file of at most `maximumBytes`. What is no plain file, larger, or no JSON is unreadable.
[[nodiscard]] JsonFile ReadJson(const QString& path, qint64 maximumBytes);

} // namespace BIZCOMMON
