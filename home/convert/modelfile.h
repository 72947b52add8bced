// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace TorvoEditor
{

/// The absolute path of a file that a screen has chosen. Screens hand over a path where a URL is wanted, so
/// that what has a meaning in a URL may be a plain part of the file's name.
[[nodiscard]] QString ModelFilePath(const QUrl& file);

} // namespace TorvoEditor
