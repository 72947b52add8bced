// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace EditorCommon
{

/// Zip archives. Both operations stream, keep no state and may run on any thread, on several at once.
class CZip
{
public:
    CZip() = delete;

    /// Unpacks `archive` into `folder`, which is made when it is missing; files of the same names are
    /// replaced.
    ///
    /// False when the archive is damaged, locked by a password or beyond the limits on entries, bytes and
    /// ratio, and when an entry leads outside the folder, is a link or a device, comes twice, shares bytes
    /// with another or has another size than the archive says. What was unpacked of it is then removed again.
    /// An archive without entries unpacks to nothing and is true.
    [[nodiscard]] static bool unZip(const QString& archive, const QString& folder);

    /// Packs the files below `folder`, links left out, into `archive`, on all processors; files that are
    /// packed already are stored as they are. An older archive is replaced by the whole new one. False leaves
    /// no new archive; a folder without files gives false.
    [[nodiscard]] static bool zip(const QString& folder, const QString& archive);
};

} // namespace EditorCommon
