// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace BIZCOMMON::FLOORINFO
{

/// "floors.json" in the folder of a building project or of a model. Empty for a text that names no folder of
/// its own: guids of models come out of files, and files come from anywhere.
[[nodiscard]] QString FloorsPath(const QString& dataDir, const QString& guid);

} // namespace BIZCOMMON::FLOORINFO
