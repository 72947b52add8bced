// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace KYVConvertCommon
{

Q_DECLARE_LOGGING_CATEGORY(kyvConvertCommonLog)

} // namespace KYVConvertCommon
