// SPDX-License-Identifier: MIT
#pragma once

#include "zip/unpackplan.h"

#include <QString>

namespace EditorCommon::Zip
{

/// Unpacks an archive into a folder, which is made when it is missing. Files that are there already are
/// replaced. Throws BadArchive; what was unpacked by then is removed again.
void Unpack(const QString& archive, const QString& folder, const Limits& limits);

} // namespace EditorCommon::Zip
