// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace EditorCommon::Zip
{

/// Packs all files below a folder, links left out, into an archive, on all processors. What does not become
/// smaller is stored as it is. The archive takes the place of an older one when it is whole. Throws
/// BadArchive, also when there is no file; no new archive is there then.
void Pack(const QString& folder, const QString& archive);

} // namespace EditorCommon::Zip
