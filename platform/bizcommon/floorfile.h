// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"

#include <QList>
#include <QString>

namespace BIZCOMMON::FLOORINFO
{

/// The floors of one building project on disk: "floors.json" in the project's folder. The file is read at
/// each call, since an update of the project may have brought another one.
class FloorFile
{
public:
    FloorFile(QString bimGuid, const QString& dataDir);

    /// Empty when nothing is stored. A file that cannot be read counts as nothing, with a line in the log.
    [[nodiscard]] QList<TFloorRec> read() const;

    /// Replaces the file whole. One that could not be read stays beside it, as "floors.json.damaged", which
    /// is never sent to the server. A failure is a line in the log, and leaves the file as it was.
    void write(const QList<TFloorRec>& floors) const;

private:
    [[nodiscard]] bool keepDamaged() const;
    [[nodiscard]] bool replace(const QByteArray& bytes) const;

    QString m_bimGuid;
    QString m_path;
};

} // namespace BIZCOMMON::FLOORINFO
