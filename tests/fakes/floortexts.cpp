// SPDX-License-Identifier: MIT
#include "fakes/floortexts.h"

namespace Fakes
{

QString TextOf(const BIZCOMMON::FLOORINFO::TFloorRec& floor)
{
    auto text = floor.floorName;
    for (auto model = floor.mapping.begin(); model != floor.mapping.end(); ++model)
        text += QStringLiteral(" %1:%2").arg(model.key(), model->join(QLatin1Char(',')));
    return text;
}

QStringList TextsOf(const QList<BIZCOMMON::FLOORINFO::TFloorRec>& floors)
{
    QStringList texts;
    for (const auto& floor : floors)
        texts.append(TextOf(floor));
    return texts;
}

} // namespace Fakes
