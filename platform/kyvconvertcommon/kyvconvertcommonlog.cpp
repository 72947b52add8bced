// SPDX-License-Identifier: MIT
#include "kyvconvertcommon/kyvconvertcommonlog.h"

namespace KYVConvertCommon
{

Q_LOGGING_CATEGORY(kyvConvertCommonLog, "torvo.kyvconvertcommon")

} // namespace KYVConvertCommon
