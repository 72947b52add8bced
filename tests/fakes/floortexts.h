// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"

namespace Fakes
{

/// A floor on one line: its name, then each model with its floors, as "2F a:1,2 b:3".
[[nodiscard]] QString TextOf(const BIZCOMMON::FLOORINFO::TFloorRec& floor);
[[nodiscard]] QStringList TextsOf(const QList<BIZCOMMON::FLOORINFO::TFloorRec>& floors);

} // namespace Fakes
