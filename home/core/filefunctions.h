// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace TorvoEditor
{

// Whole files, read and written at once. No state; any thread. Every failure is one warning in the log.

/// Reads a JSON file into `object`. False when it cannot be opened or parsed; `object` is then untouched. A
/// file with an array at the top gives an empty object and true.
[[nodiscard]] bool ReadJsonFile(const QString& path, QJsonObject& object);

/// Reads a UTF-8 file into `text`. False when it cannot be opened; `text` is then untouched.
[[nodiscard]] bool ReadTextFile(const QString& path, QString& text);

/// Replaces a file's contents. False when it cannot be opened for writing.
bool WriteBytesFile(const QString& path, const QByteArray& data);

/// The folder of the project data: "data" in the application's folder, absolute.
[[nodiscard]] QString DataDir();

} // namespace TorvoEditor
