// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QString>

namespace TorvoEditor
{

// The file "ProjectConfig.json": a JSON array of objects in which no key and no text stands in clear. Each is
// the Base64 of its UTF-8 bytes, to any depth; a value that is neither object nor text becomes an empty text.

[[nodiscard]] QJsonArray EncodeProjectConfig(const QJsonArray& projects);
[[nodiscard]] QJsonArray DecodeProjectConfig(const QJsonArray& projects);

/// The array in the file as it stands, encoded. Empty when it cannot be read or parsed, with a warning.
[[nodiscard]] QJsonArray ReadProjectConfig(const QString& path);

/// Replaces the file. A failure to open it is a warning.
void WriteProjectConfig(const QString& path, const QJsonArray& projects);

} // namespace TorvoEditor
