// SPDX-License-Identifier: MIT
#include "bizcommon/bizcommonlog.h"

namespace BIZCOMMON
{

Q_LOGGING_CATEGORY(bizcommonLog, "torvo.bizcommon")

} // namespace BIZCOMMON
