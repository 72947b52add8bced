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

    /// Unpacks `archive` into `folder`, which is made when it is missing. False when the archive is damaged,
    /// locked by a password, larger than the limits or names an entry outside the folder; what was unpacked
    /// of it is removed again.
    [[nodiscard]] static bool unZip(const QString& archive, const QString& folder);

    /// Packs the contents of `folder` into a new `archive`. False leaves no archive; an empty folder gives
    /// false.
    [[nodiscard]] static bool zip(const QString& folder, const QString& archive);
};

} // namespace EditorCommon
