// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include <QString>

namespace Fakes
{

/// What the next packings and unpackings do. Set before the workers start, or between two that are waited
/// for.
struct ZipScript {
    using Step = std::function<bool(const QString& from, const QString& to)>;

    Step unZip; ///< by default: two model files and some ballast appear in the folder
    Step zip;   ///< by default: an archive appears that names what it was made of
};

/// Both operations run on whatever thread calls; the script is read under a lock.
void SetZipScript(const ZipScript& script);

/// What an unpacking does without a script.
[[nodiscard]] bool UnpackSample(const QString& archive, const QString& folder);
/// What a packing does without a script: the archive's text is the names of the files, with blanks between.
/// False for a folder without files.
[[nodiscard]] bool PackNames(const QString& folder, const QString& archive);

} // namespace Fakes
