// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

namespace EditorCommon
{

/// The texts of the JSON object in a file; values of other kinds are left out. A missing file has none. A
/// file that cannot be read, is larger than 1 MiB or holds no object has none either, and the log says why.
[[nodiscard]] QHash<QString, QString> ReadSettingsFile(const QString& path);

} // namespace EditorCommon
