// SPDX-License-Identifier: MIT
#include "bizcommon/floorspath.h"

#include "ZRSmartFormat/zrftguid.h"

namespace BIZCOMMON::FLOORINFO
{

QString FloorsPath(const QString& dataDir, const QString& guid)
{
    // The project database spells a guid in one way whatever the spelling that it was given in.
    const auto key = ZRSmartFormat::GuidFromText(guid.toStdWString());
    const auto name = QString::fromStdWString(ZRSmartFormat::GuidToText(key));
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return {};
    return QStringLiteral("%1/proj_%2/floors.json").arg(dataDir, name);
}

} // namespace BIZCOMMON::FLOORINFO
